// SPDX-License-Identifier: MIT
// The kinds of files that a transfer of a selection moves, each with its content on this
// workstation; catalogues and definitions are compared elsewhere (ItemComparison.h).
#pragma once

#include "app/LocalFiles.h"
#include "app/Selection.h"

namespace App {

struct MovedKind {
    Group group = Group::FOC;
    CString name;                 // the kind's identifier or the general settings' name
    CString folder;               // into which stored files are fetched; empty: general settings
    std::vector<LocalFile> files; // that would be sent; beside the text, for general settings
};

// Whether a set of configuration files without a file here takes its drawings along: fetching
// does, sending sends nothing of it.
enum class Dependents { Always, WithFilesOnly };

// Each kind once, in the order foc, ncf, gs and by identifier; kinds that are switched off are
// left out unless they are named or travel along.
std::vector<MovedKind> MovedKinds(Repository::CRepositoryStorageManager& manager,
                                  const std::vector<Selected>& selection, Dependents dependents);

} // namespace App
