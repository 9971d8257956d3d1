// SPDX-License-Identifier: MIT
// The page of catalogues.
#pragma once

#include "client/dialog/ListPage.h"

#include "ZEBXRepositoryClient/CatalogueTransfer.h"

namespace Repository {

class CDlgTabCatalogs : public ListPage {
public:
    explicit CDlgTabCatalogs(CRepositoryStorageManager& manager);

    void OnBnClickedBtnLoadSelected() override;
    void OnBnClickedBtnLoadall() override;

private:
    void AddRows(Platform::ListView list) override;
    // With the ticks that they have now.
    const std::vector<CatalogueRow>& ShownRows();

    CRepositoryStorageManager& m_manager;
    std::vector<CatalogueRow> m_rows; // of the list
};

} // namespace Repository
