// SPDX-License-Identifier: MIT
// The items of catalogues, and definitions, beside the repository's, item by item.
#pragma once

#include "app/Comparison.h"

namespace App {

// Compares the catalogue of that reference, or every one that is not hidden: each item by its
// identifier, with its place in the tree, its text and its files; not its place among its
// siblings.  A local catalogue that cannot be read is told and counts as empty; `isWhole`
// becomes false then.  Throws AppError when the repository cannot be read.
std::vector<ComparedKind> CompareCatalogues(const OpenStorage& storage,
                                            const std::optional<CString>& reference, bool& isWhole);

// The same for the definitions of a tag, or of every tag that is declared here.
std::vector<ComparedKind> CompareDefinitions(const OpenStorage& storage,
                                             const std::optional<CString>& tag, bool& isWhole);

} // namespace App
