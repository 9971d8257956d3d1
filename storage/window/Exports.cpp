// SPDX-License-Identifier: MIT
// The connection window's module; see ConnectionWindow.h.
#include "platform/os/UserSettings.h"
#include "platform/window/WindowSystem.h"
#include "storage/window/ConnectionDialog.h"

extern "C" ZEBX_EXPORT int EditRepositoryConnection(Storage::IConnectionParameters& parameters,
                                                    Storage::Connection& edited) try {
    Storage::ConnectionDialog dialog(parameters);
    if (dialog.DoModal() != Platform::kIdOk)
        return 0;
    edited = dialog.Edited();
    return 1;
} catch (...) {
    return 0;
}

extern "C" ZEBX_EXPORT void WhyNoWindows(CString& reason) try {
    using Platform::UserSettings;
    const CString language = UserSettings::Instance()->Get(Platform::Setting::Language).value;
    reason = Platform::WhyNoWindows(language);
} catch (...) {
    reason = u"?";
}
