// SPDX-License-Identifier: MIT
// A comparison as people read it: a line for each kind and state, sums, and on wish the names.
#pragma once

#include "app/Comparison.h"
#include "app/Session.h"

namespace App {

struct FilesAndBytes {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
};

// The state's word from the user's point of view: what is only in the repository is new to
// pull.
CString WordFor(Difference difference, Purpose purpose);

// The size that counts: what a transfer would move, and for what it would not move, the size
// where the file is.
std::int64_t BytesOf(const ComparedFile& file, Purpose purpose);

// The files of one state.
FilesAndBytes Sum(const ComparedKind& kind, Difference difference, Purpose purpose);
FilesAndBytes Sum(const std::vector<ComparedKind>& kinds, Difference difference, Purpose purpose);

// A line for each kind and state that has files, and the sums when there are several kinds;
// nothing at all when there are no files.
void PrintStates(std::ostream& out, const std::vector<ComparedKind>& kinds, Purpose purpose);

// A line for each file that is not the same; nothing when all are.
void PrintFiles(std::ostream& out, const std::vector<ComparedKind>& kinds, Purpose purpose);

// The comparison as docs/schemas/comparison.json describes it: sums by kind and state, and the
// files that are not the same.
Json JsonOf(const std::vector<ComparedKind>& kinds, Purpose purpose);

// The result of "pull --dry-run" and "push --dry-run": the states, and how much would be moved;
// gives the status.
ExitStatus GivePlan(Session& session, const Comparison& comparison, Purpose purpose);

} // namespace App
