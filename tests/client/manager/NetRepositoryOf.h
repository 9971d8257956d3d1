// SPDX-License-Identifier: MIT
// The manager's picture of the shared repository's definitions.  Nothing hands it out; tests
// look at it, change it and put it back here.
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

boost::shared_ptr<Repository::CNetRepository>&
NetRepositoryOf(Repository::CRepositoryStorageManager& manager);
