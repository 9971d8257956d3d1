// SPDX-License-Identifier: MIT
// Every setting with its value and where it came from, as people read them.
#pragma once

#include "platform/os/UserSettings.h"

#include <string>
#include <vector>

namespace App {

struct SettingInForce {
    std::string name; // as in zebx.ini
    CString value;    // paths as people type them
    Platform::SettingOrigin origin = Platform::SettingOrigin::Default;
    CString place; // the option's, the variable's or the file's name; else empty
    int line = 0;  // in the file; else 0
};

// In the order of docs/formats.md, the settings file first.
std::vector<SettingInForce> SettingsInForce();

// "ZEBX_SUPPORT", "/home/ana/.config/StudioZEB/zebx.ini:3", "default".
CString OriginText(const SettingInForce& setting);

} // namespace App
