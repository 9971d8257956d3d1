// SPDX-License-Identifier: MIT
// The manager's registry of file managers.  Nothing hands it out and what is registered
// stays, "GS" from the start; tests exchange entries here and put them back.
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

Repository::CRepositoryStorageManager::FileManagers&
FileManagersOf(Repository::CRepositoryStorageManager& manager);
