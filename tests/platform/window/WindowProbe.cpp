// SPDX-License-Identifier: MIT
// Writes why no window can be shown here; where one can, says "Cancel" in the user's language,
// shows it and ends with windows left over, of which some are statics.
#include "platform/text/Utf8.h"
#include "platform/window/Dialog.h"
#include "platform/window/WindowSystem.h"

#include <QCoreApplication>
#include <cstdio>

namespace {

constexpr Platform::ControlTemplate kControls[] = {
    {1, Platform::ControlClass::DefaultPushButton, u"Close", 7, 7, 50, 14},
    {2, Platform::ControlClass::ListView, nullptr, 7, 30, 50, 40},
};
constexpr Platform::DialogTemplate kLook = {u"Probe", 100, 80, kControls};

Platform::Dialog g_before(kLook);

} // namespace

int main() {
    const CString reason = Platform::WhyNoWindows(u"hr");
    std::puts(Platform::ToUtf8(reason).c_str());
    if (reason.empty())
        std::puts(qPrintable(QCoreApplication::translate("QPlatformTheme", "Cancel")));
    static Platform::Dialog after(kLook);
    g_before.Show();
    after.Show();
    Platform::Dialog inside(kLook);
    inside.Show();
    return reason.empty() ? 0 : 1;
}
