// SPDX-License-Identifier: MIT
// One selection after the other through the manager, and what came of it.
#pragma once

#include "app/Selection.h"
#include "app/Session.h"
#include "app/Storage.h"

#include <functional>
#include <optional>
#include <vector>

namespace App {

// How one selection ended.  FailedHere: the repository did its part, this workstation's
// disk did not.
enum class Outcome { Done, Failed, FailedHere };

// What came of one selection.
struct Transferred {
    Selected selected;
    int files = 0;
    int items = 0;    // of catalogues, and definitions
    int failures = 0; // lines of the workspace log
};

struct TransferResult {
    std::vector<Transferred> selections;
    int failures = 0; // lines of failure in the log
    // The first problem of the repository that has an exit status of its own.
    std::optional<ExitStatus> problem;
    bool somethingFailed = false;     // other than on this workstation's disk
    bool somethingFailedHere = false; // on this workstation's disk

    // The repository's problem first; LocalFile only when every failure was local.
    ExitStatus Status() const;
};

// Runs `move` for each selection in turn, and shows how far it is.  Stops, and says so in the
// log, when the repository went away or the user pressed Ctrl-C.
TransferResult Transfer(Session& session, const OpenStorage& storage,
                        const std::vector<Selected>& selection,
                        const std::function<Outcome(const Selected&)>& move);

// Writes a line to the workspace log (type: ZEBGis::Workspace::enmMessageType).
void Log(std::int32_t type, const CString& text);
// The same with a text of the family's message table, by number.
void LogFamilyText(std::int32_t type, int number);

} // namespace App
