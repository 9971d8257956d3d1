// SPDX-License-Identifier: MIT
#include "client/dialog/DlgTabGS.h"

#include "client/dialog/ListPage.h"
#include "client/dialog/rules/GsLoading.h"
#include "client/dialog/rules/Messages.h"

namespace Repository {
namespace {

using namespace Platform;

constexpr int kMsgGroup = 381;
constexpr int kMsgLoadAll = 4004;

constexpr ControlTemplate kControls[] = {
    {kIdGroup, ControlClass::GroupBox, u"General settings", 7, 7, 302, 167, GrowWide | GrowTall},
    {kIdLoadAll, ControlClass::PushButton, u"Load all", 221, 154, 62, 15, MoveRight | MoveDown},
};
constexpr DialogTemplate kTemplate104{nullptr, kPageWidth, kPageHeight, kControls};

} // namespace

CDlgTabGS::CDlgTabGS(CRepositoryStorageManager& manager)
    : CAcUiTabChildDialog(kTemplate104), m_manager(manager) {}

bool CDlgTabGS::OnInitDialog() {
    SetText(kIdGroup, MsgText(kMsgGroup));
    SetText(kIdLoadAll, MsgText(kMsgLoadAll));
    return true;
}

void CDlgTabGS::OnClicked(int id) {
    if (id == kIdLoadAll)
        OnBnClickedBtnLoadall();
    else
        CAcUiTabChildDialog::OnClicked(id);
}

void CDlgTabGS::OnBnClickedBtnLoadall() {
    LoadGeneralSettings(m_manager);
}

} // namespace Repository
