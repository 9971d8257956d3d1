// SPDX-License-Identifier: MIT
// What the repository holds, from the plug-in's administration or, where it has none, from
// the backend's operations.
#pragma once

#include "app/Selection.h"
#include "app/Storage.h"

#include <cstdint>
#include <vector>

namespace App {

struct StoredEntry {
    Group group = Group::FOC;
    CString kind;       // the kind's identifier, the general settings' name, or the tag
    bool isFile = true; // false: a kind without files
    CString file;       // or the item's name; empty for general settings
    std::int64_t sizeBytes = 0;
    std::int64_t revision = 0; // 0: not known
    CString time;              // UTC; empty: not known
    CString itemId = {};       // of an item
};

// By group in the order foc, ncf, gs, catalogues, items; in each as the storage gives them: by
// kind or tag, then by file, or in the order in which items arrived.  Throws AppError when it
// cannot be listed.  Without an administration every file is fetched, since the backend tells
// nothing of a file but the file.
std::vector<StoredEntry> ListRepository(const OpenStorage& storage);

// Whether the selection takes the entry in.
bool Covers(const Selected& selected, const StoredEntry& entry);

} // namespace App
