// SPDX-License-Identifier: MIT
// A configuration dialog that shows nothing: it tells a test that it was called.
#include "client/manager/ScriptedDialog.h"

#include "platform/Export.h"

namespace {

DialogScript g_script;

} // namespace

extern "C" ZEBX_EXPORT void ShowNetworkRepositoryConfiguration() {
    g_script.onShow();
}

extern "C" ZEBX_EXPORT void WhyNoWindows(CString& reason) {
    reason = g_script.whyNoWindows;
}

extern "C" ZEBX_EXPORT void SetDialogScript(const DialogScript& script) {
    g_script = script;
}
