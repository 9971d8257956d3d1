// SPDX-License-Identifier: MIT
// What the client's module asks of this one.
#include "client/dialog/DlgNetworkRepositoryConfiguration.h"

#include "ZEBXRepositoryClient/ConfigurationDialog.h"
#include "client/util/Border.h"
#include "platform/os/UserSettings.h"
#include "platform/window/WindowSystem.h"

extern "C" ZEBX_EXPORT void ShowNetworkRepositoryConfiguration() {
    Repository::AtBorder([] {
        Repository::CDlgNetworkRepositoryConfiguration dialog(
            *Repository::CRepositoryStorageManager::Instance());
        dialog.DoModal();
    });
}

extern "C" ZEBX_EXPORT void WhyNoWindows(CString& reason) {
    Repository::AtBorder([&reason] {
        auto* const settings = Platform::UserSettings::Instance();
        reason = Platform::WhyNoWindows(settings->Get(Platform::Setting::Language).value);
    });
}
