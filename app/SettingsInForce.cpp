// SPDX-License-Identifier: MIT
#include "app/SettingsInForce.h"

#include "app/Print.h"
#include "app/Texts.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>

namespace App {
namespace {

using Platform::Setting;
using Platform::SettingOrigin;

struct Named {
    const char* name;
    Setting setting;
};

constexpr std::array kSettings = {
    Named{"config", Setting::Config},
    Named{"install", Setting::Install},
    Named{"support", Setting::Support},
    Named{"language", Setting::Language},
    Named{"enabled", Setting::EnabledKinds},
    Named{"schema", Setting::Schema},
    Named{"trace", Setting::Trace},
    Named{"trace_file", Setting::TraceFile},
    Named{"workspace_log", Setting::WorkspaceLog},
};

CString OptionFor(Setting setting) {
    const auto found = std::ranges::find(CommonOptions(), setting, &Option::setting);
    return found == CommonOptions().end() ? CString() : Platform::FromUtf8(found->name);
}

} // namespace

std::vector<SettingInForce> SettingsInForce() {
    std::vector<SettingInForce> settings;
    for (const Named& each : kSettings) {
        const auto value = Platform::UserSettings::Instance()->Get(each.setting);
        const CString place = value.origin == SettingOrigin::Option ? OptionFor(each.setting)
                                                                    : ShownPath(value.place);
        settings.push_back({each.name, ShownPath(value.value), value.origin, place, value.line});
    }
    return settings;
}

CString OriginText(const SettingInForce& setting) {
    if (setting.origin == SettingOrigin::Default)
        return Text(Message::OriginDefault);
    return setting.line > 0 ? setting.place + u":" + Platform::ToText(setting.line) : setting.place;
}

} // namespace App
