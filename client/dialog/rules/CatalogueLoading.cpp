// SPDX-License-Identifier: MIT
#include "client/dialog/rules/CatalogueLoading.h"

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

namespace Repository {
namespace {

void Load(CRepositoryStorageManager& manager, const std::vector<CatalogueRow>& rows, int all) {
    if (manager.IsRepositoryAccessible())
        CCatalogueTransfer(manager).LoadCatalogs(rows, all);
}

} // namespace

void LoadSelectedCatalogues(CRepositoryStorageManager& manager,
                            const std::vector<CatalogueRow>& rows) {
    Load(manager, rows, 0);
}

void LoadAllCatalogues(CRepositoryStorageManager& manager, const std::vector<CatalogueRow>& rows) {
    Load(manager, rows, 1);
}

} // namespace Repository
