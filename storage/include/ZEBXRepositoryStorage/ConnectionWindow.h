// SPDX-License-Identifier: MIT
// What the storage plug-in and its connection window say to each other.  The window is a module
// of its own, ZEBXRepositoryConnectionWindow.arx, loaded when it is first shown, so that the
// plug-in itself needs no window system.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <vector>

namespace Storage {

enum class StepResult {
    Worked,
    Warning, // worked, and the user should know something about it
    Failed
};

// One step of a test of a connection, in the order in which they were tried.
struct ConnectionStep {
    StepResult result = StepResult::Failed;
    CString text; // what was tried and what came of it, in the user's language
};

// What a connection window edits.
struct Connection {
    CString address;     // as for RepositoryAdministration::Connect; empty: the default place
    bool create = false; // makes an empty repository where there is none
};

// The plug-in, as the window sees it.  Nothing throws.
class ZEBX_EXPORT IConnectionParameters {
public:
    // The connection in use; its address is empty only when there is none: settings that are
    // not understood, or a user without a data folder.
    virtual Connection Current() = 0;
    // The address of the user's own repository; empty when the user has no data folder.
    virtual CString DefaultAddress() = 0;
    // Tries a connection and leaves the one in use as it is; makes nothing, but says what
    // would be made.  Stops at the first step that fails, which is then the last.  Never
    // without a step, unless there is no memory.
    virtual std::vector<ConnectionStep> Test(const Connection& connection) = 0;

protected:
    ~IConnectionParameters() = default;
};

// The module's exports: "EditRepositoryConnection" shows the window until the user is done;
// non-zero: `edited` is what to use from now on.  "WhyNoWindows" fills in why no window can be
// shown, in the system's words; left empty when one can.
using EditRepositoryConnectionFunction = int (*)(IConnectionParameters& parameters,
                                                 Connection& edited);
using WhyNoWindowsFunction = void (*)(CString& reason);

} // namespace Storage
