// SPDX-License-Identifier: MIT
// A configuration dialog that shows nothing: it tells a test that it was called.
#include "client/manager/ScriptedDialog.h"

#include "platform/Export.h"

namespace {

std::function<void()> g_onShow;

} // namespace

extern "C" ZEBX_EXPORT void ShowNetworkRepositoryConfiguration() {
    if (g_onShow)
        g_onShow();
}

extern "C" ZEBX_EXPORT void SetDialogScript(const std::function<void()>& onShow) {
    g_onShow = onShow;
}
