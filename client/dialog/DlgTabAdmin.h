// SPDX-License-Identifier: MIT
// The page through which an administrator sends this workstation's content to the repository.
#pragma once

#include "client/dialog/rules/Sending.h"
#include "platform/window/TabDialog.h"

namespace Repository {

class CDlgTabAdmin : public CAcUiTabChildDialog {
public:
    explicit CDlgTabAdmin(CRepositoryStorageManager& manager);

private:
    bool OnInitDialog() override;
    void OnClicked(int id) override;

    Sending m_sending;
};

} // namespace Repository
