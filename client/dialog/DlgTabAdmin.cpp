// SPDX-License-Identifier: MIT
#include "client/dialog/DlgTabAdmin.h"

#include "client/dialog/ListPage.h"
#include "platform/window/WindowSystem.h"

namespace Repository {
namespace {

using namespace Platform;
using enum ControlClass;
using ZEBGis::Data::CCatalogMetadata;

constexpr int kIdSendGS = 103;
constexpr int kIdSendCatalogues = 104;
constexpr int kIdSendNCF = 105;
constexpr int kIdCatalogues = 106;
constexpr int kIdSendFOC = 107;
constexpr int kIdNCFKinds = 108;
constexpr int kIdFOCKinds = 109;

constexpr int kMsgGroup = 10377;
constexpr int kMsgGS = 381;
constexpr int kMsgCatalogues = 2424;
constexpr int kMsgNCF = 10379;
constexpr int kMsgFOC = 10378;

constexpr ControlTemplate kControls[] = {
    {kIdGroup, GroupBox, u"Save my settings to network repository", 7, 7, 302, 167,
     GrowWide | GrowTall},
    {kIdSendGS, PushButton, u"General settings", 17, 26, 89, 14},
    {kIdSendCatalogues, PushButton, u"Catalogues", 17, 44, 89, 14},
    {kIdCatalogues, DropDownList, nullptr, 116, 45, 185, 130, GrowWide},
    {kIdSendNCF, PushButton, u"Non configuration files", 17, 63, 89, 14},
    {kIdNCFKinds, DropDownList, nullptr, 116, 64, 185, 100, GrowWide},
    {kIdSendFOC, PushButton, u"Various configuration files", 17, 82, 89, 14},
    {kIdFOCKinds, DropDownList, nullptr, 116, 83, 185, 98, GrowWide},
};
constexpr DialogTemplate kTemplate103{nullptr, kPageWidth, kPageHeight, kControls};

template<class What>
void Fill(Platform::DropDownList list, const SendEntries<What>& entries) {
    for (const SendEntry<What>& entry : entries)
        list.Add(entry.text, entry.what);
    list.Select(0);
}

// Hands the chosen entry's data to `send`; without a choice, does nothing.
template<class What, class Send>
void SendChosen(Platform::DropDownList list, const Send& send) {
    if (list.Selected() >= 0)
        send(static_cast<const What*>(list.Data(list.Selected())));
}

} // namespace

CDlgTabAdmin::CDlgTabAdmin(CRepositoryStorageManager& manager)
    : CAcUiTabChildDialog(kTemplate103), m_sending(manager) {}

bool CDlgTabAdmin::OnInitDialog() {
    SetText(kIdGroup, MsgText(kMsgGroup));
    SetText(kIdSendGS, MsgText(kMsgGS));
    SetText(kIdSendCatalogues, MsgText(kMsgCatalogues));
    SetText(kIdSendNCF, MsgText(kMsgNCF));
    SetText(kIdSendFOC, MsgText(kMsgFOC));
    SetAccessibleName(kIdCatalogues, MsgText(kMsgCatalogues));
    SetAccessibleName(kIdNCFKinds, MsgText(kMsgNCF));
    SetAccessibleName(kIdFOCKinds, MsgText(kMsgFOC));
    Fill(DropDown(kIdCatalogues), m_sending.Catalogues());
    Fill(DropDown(kIdNCFKinds), m_sending.NCFKinds());
    Fill(DropDown(kIdFOCKinds), m_sending.FOCKinds());
    return true;
}

void CDlgTabAdmin::OnClicked(int id) {
    const WaitCursor wait;
    switch (id) {
    case kIdSendGS:
        return m_sending.SendGS();
    case kIdSendCatalogues:
        return SendChosen<CCatalogMetadata>(DropDown(kIdCatalogues), [this](const auto* catalogue) {
            m_sending.SendCatalogues(catalogue);
        });
    case kIdSendNCF:
        return SendChosen<CNCFMetadata>(DropDown(kIdNCFKinds),
                                        [this](const auto* kind) { m_sending.SendNCF(kind); });
    case kIdSendFOC:
        return SendChosen<CFOCMetadata>(DropDown(kIdFOCKinds),
                                        [this](const auto* kind) { m_sending.SendFOC(kind); });
    default:
        CAcUiTabChildDialog::OnClicked(id);
    }
}

} // namespace Repository
