// SPDX-License-Identifier: MIT
#include "client/dialog/rules/GsLoading.h"

#include "client/dialog/rules/Messages.h"
#include "client/util/Trace.h"

namespace Repository {
namespace {

constexpr int kMsgLoaded = 10369;
constexpr int kMsgNotLoaded = 10371;

} // namespace

void LoadGeneralSettings(CRepositoryStorageManager& manager) {
    const TraceScope trace(".\\DlgTabGS", __LINE__, "CDlgTabGS::OnBnClickedBtnLoadall");
    if (manager.IsRepositoryAccessible())
        LogOutcome(manager.SaveGSLocally() != 0, kMsgLoaded, kMsgNotLoaded);
}

} // namespace Repository
