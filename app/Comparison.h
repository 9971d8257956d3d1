// SPDX-License-Identifier: MIT
// This workstation's content beside the repository's, file by file, by hash.
#pragma once

#include "app/Selection.h"
#include "app/Storage.h"

#include <cstdint>
#include <vector>

namespace App {

enum class Difference {
    OnlyHere,
    OnlyThere, // in the repository
    Changed,   // in both, with different contents
    Same,
    Unusable // in the repository under a name that no workstation may be given
};

struct ComparedFile {
    CString name; // the repository's where it has one; an item's; empty for a GS text
    Difference difference = Difference::Same;
    std::int64_t bytesHere = 0;
    std::int64_t bytesThere = 0;
};

struct ComparedKind {
    Group group = Group::FOC;
    CString name;                    // the kind's identifier, the general settings' name or the tag
    std::vector<ComparedFile> files; // the repository's in its order, then those only here
};

// What the comparison is for, and so what counts as a kind's content on this workstation.
enum class Purpose {
    Diff, // what would be sent and, beside it, what stands where the rest would be fetched to
    Pull, // what stands where the stored files would be fetched to
    Push  // what would be sent
};

struct Comparison {
    std::vector<ComparedKind> kinds; // in the order foc, ncf, gs, catalogues, items
    // That of the first problem: something here or there could not be read, was told in the
    // workspace log and counts as not being there.
    ExitStatus status = ExitStatus::Done;
};

// Compares the kinds that a transfer of the selection moves, the drawings that travel along
// with configuration files included.  Reads one file at a time; without the storage's
// administration every stored file is fetched.  Changes nothing.  Throws AppError when the
// repository cannot be used.
Comparison Compare(const OpenStorage& storage, const std::vector<Selected>& selection,
                   Purpose purpose);

// Throws AppError (SomeFailed) with a line for each file of the selection that the repository
// would refuse by its name or size.  Sends nothing.  Without an administration nothing is
// checked: the backend then refuses by itself.
void CheckWhatWouldBeSent(const OpenStorage& storage, const std::vector<Selected>& selection);

} // namespace App
