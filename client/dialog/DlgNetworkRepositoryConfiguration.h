// SPDX-License-Identifier: MIT
// The window through which a user works with the shared repository: a tab for each kind of
// content, and buttons that load everything, edit the connection and close it.
#pragma once

#include "client/dialog/DlgTabAdmin.h"
#include "client/dialog/DlgTabCatalogs.h"
#include "client/dialog/DlgTabFOC.h"
#include "client/dialog/DlgTabGS.h"
#include "client/dialog/DlgTabNCF.h"
#include "client/dialog/ProgressWindow.h"
#include "client/dialog/rules/Configuration.h"

namespace Repository {

class CDlgNetworkRepositoryConfiguration : public CAcUiTabMainDialog {
public:
    // The manager must hold a backend and outlive the dialog.
    explicit CDlgNetworkRepositoryConfiguration(CRepositoryStorageManager& manager);

private:
    bool OnInitDialog() override;
    void OnClicked(int id) override;
    void OnBnClickedButtonLoadall();
    void OnBnClickedButtonConnection();
    // The administration page is there for administrators alone.
    void FollowAdminMode(TraceScope& trace);

    Configuration m_configuration;
    CDlgTabGS m_gs;
    CDlgTabCatalogs m_catalogues;
    CDlgTabFOC m_foc;
    CDlgTabNCF m_ncf;
    CDlgTabAdmin m_admin;
    ProgressWindow m_progress;
};

} // namespace Repository
