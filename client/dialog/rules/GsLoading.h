// SPDX-License-Identifier: MIT
// What the page of general settings (GS) does.
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

namespace Repository {

// Makes the repository's general settings the local ones and says in the workspace log whether
// that was done; nothing where the repository is not accessible.
void LoadGeneralSettings(CRepositoryStorageManager& manager);

} // namespace Repository
