// SPDX-License-Identifier: MIT
#include "app/Versions.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/FileSearch.h"
#include "platform/os/VersionRecord.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

namespace App {
namespace {

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

std::vector<InstalledPart> InstalledParts() {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install");
    std::vector<InstalledPart> parts = {{u"zebx", Platform::FromUtf8(ZEBX_VERSION)}};
    for (const CString& file : Platform::FindFiles(folder + u"*.arx"))
        parts.push_back({file, VersionOf(folder + file)});
    return parts;
}

} // namespace App
