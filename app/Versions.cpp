// SPDX-License-Identifier: MIT
#include "app/Versions.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/FileSearch.h"
#include "platform/os/VersionRecord.h"
#include "platform/text/Utf8.h"

namespace App {

std::vector<InstalledPart> InstalledParts() {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install");
    std::vector<InstalledPart> parts = {{u"zebx", Platform::FromUtf8(ZEBX_VERSION)}};
    for (const CString& file : Platform::FindFiles(folder + u"*.arx"))
        parts.push_back({file, Platform::ReadFileVersionText(folder + file)});
    return parts;
}

} // namespace App
