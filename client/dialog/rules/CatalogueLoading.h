// SPDX-License-Identifier: MIT
// What the page of catalogues does.
#pragma once

#include "ZEBXRepositoryClient/CatalogueTransfer.h"

namespace Repository {

// Loads the catalogues of the rows whose check state is exactly 1; nothing where the repository
// is not accessible.  What became of it is told by the transfer.
void LoadSelectedCatalogues(CRepositoryStorageManager& manager,
                            const std::vector<CatalogueRow>& rows);

// The same for every row.
void LoadAllCatalogues(CRepositoryStorageManager& manager, const std::vector<CatalogueRow>& rows);

} // namespace Repository
