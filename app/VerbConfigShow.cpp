// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/SettingsInForce.h"
#include "app/Verbs.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {
namespace {

const char* WordFor(Platform::SettingOrigin origin) {
    switch (origin) {
    case Platform::SettingOrigin::Option:
        return "option";
    case Platform::SettingOrigin::Environment:
        return "environment";
    case Platform::SettingOrigin::File:
        return "file";
    case Platform::SettingOrigin::Default:
        break;
    }
    return "default";
}

Json JsonOf(const SettingInForce& setting) {
    return {{"name", setting.name},
            {"value", setting.value},
            {"origin", WordFor(setting.origin)},
            {"place", OrNull(setting.place)},
            {"line", setting.line > 0 ? Json(setting.line) : Json()}};
}

// Paths stay whole, so that they can be copied; a list of kinds is broken at its blanks.
void Show(std::ostream& out, const SettingInForce& setting, std::size_t width, bool withOrigin) {
    const CString lead = PadRight(Platform::FromUtf8(setting.name), width + 2);
    if (setting.name == "enabled" && !setting.value.empty())
        PrintWrapped(out, lead, setting.value);
    else
        PrintLine(out, lead + (setting.value.empty() ? CString(u"-") : setting.value));
    if (withOrigin)
        PrintLine(out, CString(width + 2, u' ') + u"<- " + OriginText(setting));
}

} // namespace

ExitStatus RunConfigShow(Session& session, const Invocation& invocation) {
    const std::vector<SettingInForce> settings = SettingsInForce();
    std::size_t width = 0;
    for (const SettingInForce& setting : settings)
        width = std::max(width, setting.name.size());
    Json list = Json::array();
    for (const SettingInForce& setting : settings) {
        Show(session.out, setting, width, invocation.Has("--origin"));
        list.push_back(JsonOf(setting));
    }
    session.result = {{"settings", std::move(list)}};
    return ExitStatus::Done;
}

} // namespace App
