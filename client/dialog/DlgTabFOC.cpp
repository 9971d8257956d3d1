// SPDX-License-Identifier: MIT
#include "client/dialog/DlgTabFOC.h"

#include "platform/window/WindowSystem.h"

namespace Repository {
namespace {

constexpr int kMsgName = 249;

constexpr auto kControls = ListPageControls(u"File oriented stuff", 113);
constexpr Platform::DialogTemplate kTemplate107{nullptr, kPageWidth, kPageHeight, kControls};

} // namespace

CDlgTabFOC::CDlgTabFOC(CRepositoryStorageManager& manager)
    : KindPage(kTemplate107, kMsgName, manager) {}

void CDlgTabFOC::OnBnClickedBtnLoadSelected() {
    const Platform::WaitCursor wait; // on this page alone, kept
    KindPage::OnBnClickedBtnLoadSelected();
}

} // namespace Repository
