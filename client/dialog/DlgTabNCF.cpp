// SPDX-License-Identifier: MIT
#include "client/dialog/DlgTabNCF.h"

namespace Repository {
namespace {

constexpr int kMsgName = 10379;

constexpr auto kControls = ListPageControls(u"Non-configuration files", 113);
constexpr Platform::DialogTemplate kTemplate106{nullptr, kPageWidth, kPageHeight, kControls};

} // namespace

CDlgTabNCF::CDlgTabNCF(CRepositoryStorageManager& manager)
    : KindPage(kTemplate106, kMsgName, manager) {}

} // namespace Repository
