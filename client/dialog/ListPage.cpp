// SPDX-License-Identifier: MIT
#include "client/dialog/ListPage.h"

#include "client/dialog/rules/Messages.h"

namespace Repository {
namespace {

constexpr int kMsgLoadSelected = 4411;
constexpr int kMsgLoadAll = 4004;
constexpr int kMsgSelectNone = 7368;
constexpr int kMsgSelectAll = 7369;

} // namespace

bool ListPage::OnInitDialog() {
    Platform::ListView list = Rows();
    list.SetStyle(m_listLook.style);
    const int column = list.InsertColumn(MsgText(m_listLook.msgColumn));
    list.SizeColumnToHeader(column);
    SetAccessibleName(m_listLook.listId, MsgText(m_listLook.msgName));
    SetIcon(kIdSelectNone, u"IDI_DESELALL");
    SetToolTip(kIdSelectNone, MsgText(kMsgSelectNone));
    SetIcon(kIdSelectAll, u"IDI_SELALL");
    SetToolTip(kIdSelectAll, MsgText(kMsgSelectAll));
    SetText(kIdLoadSelected, MsgText(kMsgLoadSelected));
    SetText(kIdLoadAll, MsgText(kMsgLoadAll));
    SetText(kIdGroup, MsgText(m_listLook.msgGroup));
    AddRows(list);
    list.SizeColumnToHeader(column);
    return true;
}

void ListPage::OnClicked(int id) {
    switch (id) {
    case kIdSelectAll:
        return Rows().SetAllCheckStates(1);
    case kIdSelectNone:
        return Rows().SetAllCheckStates(0);
    case kIdLoadSelected:
        return OnBnClickedBtnLoadSelected();
    case kIdLoadAll:
        return OnBnClickedBtnLoadall();
    default:
        CAcUiTabChildDialog::OnClicked(id);
    }
}

} // namespace Repository
