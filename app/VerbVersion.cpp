// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Verbs.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/FileSearch.h"
#include "platform/os/VersionRecord.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {
namespace {

// Empty when the file has no version record.
CString VersionOf(const CString& path) {
    const auto version = Platform::ReadFileVersion(path);
    if (!version)
        return {};
    CString text;
    for (const std::uint16_t part : *version)
        text += (text.empty() ? u"" : u".") + Platform::ToText(part);
    return text;
}

} // namespace

ExitStatus RunVersion(Session& session, const Invocation&) {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install");
    std::vector<std::pair<CString, CString>> versions = {
        {u"zebx", Platform::FromUtf8(ZEBX_VERSION)}};
    for (const CString& name : Platform::FindFiles(folder + u"*.arx"))
        versions.emplace_back(name, VersionOf(folder + name));
    std::size_t width = 0;
    for (const auto& [name, version] : versions)
        width = std::max(width, WidthOf(name));
    Json parts = Json::array();
    for (const auto& [name, version] : versions) {
        PrintLine(session.out, PadRight(name, width + 2) +
                                   (version.empty() ? Text(Message::NoVersion) : version));
        parts.push_back({{"name", name}, {"version", OrNull(version)}});
    }
    session.result = {{"parts", std::move(parts)}};
    return ExitStatus::Done;
}

} // namespace App
