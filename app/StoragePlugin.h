// SPDX-License-Identifier: MIT
// The storage plug-in as a program sees it beside the manager: its file, its administration,
// and why there is none.
#pragma once

#include "ZEBXRepositoryStorage/RepositoryAdministration.h"

#include <vector>

namespace App {

struct StoragePlugin {
    // A file that matches and is of no use.
    struct Useless {
        CString file;
        CString reason;
    };

    CString folder;  // where it was looked for
    CString pattern; // what was looked for
    CString file;    // empty: none
    std::vector<Useless> useless;
    // Null for a plug-in that offers none.
    Storage::RepositoryAdministration* administration = nullptr;
};

// What the program is about to do ("zebx 1.2.3 push"), for the server's list of sessions; told to
// each plug-in that is found from then on.
void NameApplication(const CString& name);

// Searches as the manager does, in the same order: the last one wins.  Loads modules that
// are loaded already, so it is cheap behind the manager's first call.
StoragePlugin FindStoragePlugin();

// What is missing, in the user's language, and what to do.
CString WhyNoPlugin(const StoragePlugin& plugin);

} // namespace App
