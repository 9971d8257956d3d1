// SPDX-License-Identifier: MIT
#include "client/dialog/DlgNetworkRepositoryConfiguration.h"

#include "client/dialog/rules/Messages.h"
#include "client/util/Trace.h"
#include "platform/window/WindowSystem.h"

namespace Repository {
namespace {

using namespace Platform;

constexpr int kIdConnection = 100;
constexpr int kIdTabs = 101;
constexpr int kIdLoadEverything = 111;

constexpr int kMsgGS = 381;
constexpr int kMsgCatalogues = 350;
constexpr int kMsgFOC = 249;
constexpr int kMsgNCF = 10379;
constexpr int kMsgAdmin = 10380;
constexpr int kMsgConnection = 10381;
constexpr int kMsgClose = 235;
constexpr int kMsgLoadEverything = 10382;
constexpr int kMsgTitle = 10383;

constexpr ControlTemplate kControls[] = {
    {kIdLoadEverything, ControlClass::PushButton, u"Load all from network repository", 7, 7, 152,
     14},
    {kIdTabs, ControlClass::TabControl, nullptr, 7, 24, 329, 211, GrowWide | GrowTall},
    {kIdConnection, ControlClass::PushButton, u"Connection parameters", 7, 240, 151, 14, MoveDown},
    {kIdOk, ControlClass::DefaultPushButton, u"Close", 286, 240, 50, 14, MoveRight | MoveDown},
};
constexpr DialogTemplate kTemplate{u"Network repository configuration", 343, 261, kControls};

} // namespace

CDlgNetworkRepositoryConfiguration::CDlgNetworkRepositoryConfiguration(
    CRepositoryStorageManager& manager)
    : CAcUiTabMainDialog(kTemplate, kIdTabs), m_configuration(manager), m_gs(manager),
      m_catalogues(manager), m_foc(manager), m_ncf(manager), m_admin(manager) {}

bool CDlgNetworkRepositoryConfiguration::OnInitDialog() {
    CAcUiTabMainDialog::OnInitDialog();
    TraceScope trace(kMainDialogSource, __LINE__,
                     "CDlgNetworkRepositoryConfiguration::OnInitDialog");
    if (!m_configuration.HasConnectionParameters())
        Enable(kIdConnection, false);
    AddTab(0, m_gs, MsgText(kMsgGS));
    AddTab(1, m_catalogues, MsgText(kMsgCatalogues));
    AddTab(2, m_foc, MsgText(kMsgFOC));
    AddTab(3, m_ncf, MsgText(kMsgNCF));
    SetText(kIdConnection, MsgText(kMsgConnection));
    SetText(kIdOk, MsgText(kMsgClose));
    SetText(kIdLoadEverything, MsgText(kMsgLoadEverything));
    SetTitle(MsgText(kMsgTitle));
    FollowAdminMode(trace);
    return true;
}

void CDlgNetworkRepositoryConfiguration::OnClicked(int id) {
    if (id == kIdLoadEverything)
        OnBnClickedButtonLoadall();
    else if (id == kIdConnection)
        OnBnClickedButtonConnection();
    else
        CAcUiTabMainDialog::OnClicked(id);
}

void CDlgNetworkRepositoryConfiguration::OnBnClickedButtonLoadall() {
    const WaitCursor wait;
    Configuration::LoadAll({[this] { m_foc.OnBnClickedBtnLoadall(); },
                            [this] { m_ncf.OnBnClickedBtnLoadall(); },
                            [this] { m_gs.OnBnClickedBtnLoadall(); },
                            [this] { m_catalogues.OnBnClickedBtnLoadall(); }});
}

// Another connection may come with other rights.
void CDlgNetworkRepositoryConfiguration::OnBnClickedButtonConnection() {
    TraceScope trace(kMainDialogSource, __LINE__,
                     "CDlgNetworkRepositoryConfiguration::OnBnClickedButtonConnection");
    m_configuration.EditConnection();
    FollowAdminMode(trace);
}

void CDlgNetworkRepositoryConfiguration::FollowAdminMode(TraceScope& trace) {
    if (m_configuration.IsAdmin(trace))
        AddTab(4, m_admin, MsgText(kMsgAdmin));
    else
        RemoveTab(m_admin);
}

} // namespace Repository
