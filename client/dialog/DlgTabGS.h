// SPDX-License-Identifier: MIT
// The page of the general settings (GS).
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "platform/window/TabDialog.h"

namespace Repository {

class CDlgTabGS : public CAcUiTabChildDialog {
public:
    explicit CDlgTabGS(CRepositoryStorageManager& manager);

    void OnBnClickedBtnLoadall();

private:
    bool OnInitDialog() override;
    void OnClicked(int id) override;

    CRepositoryStorageManager& m_manager;
};

} // namespace Repository
