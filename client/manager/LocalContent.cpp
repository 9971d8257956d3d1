// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/LocalContent.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "client/util/Border.h"
#include "client/util/UnreadFiles.h"
#include "platform/os/FileSearch.h"

namespace Repository {
namespace {

using ZEBGis::CModuleConfiguration;

template<class Kind>
CString FolderOf(const Kind& kind) {
    return AtBorder(CString(), [&] {
        const bool isInstall = kind.GetBaseFolder() == BaseFolderInstall;
        return CModuleConfiguration::Instance()->GetPath(isInstall ? u"install" : u"support") +
               kind.GetSubfolder();
    });
}

template<class Kind>
bool TakesPart(const Kind& kind) {
    return AtBorder(false, [&] {
        return !kind.IsOptional() ||
               CModuleConfiguration::Instance()->IsMetadataIdEnabled(kind.GetId().c_str());
    });
}

// Everything that matches, folders, "." and ".." included.
std::vector<CString> PathsOfMatches(const CString& pattern) {
    const CString folder =
        pattern.substr(0, pattern.find_last_of(u"\\/") + 1); // cut as FindFiles cuts
    std::error_code error;
    std::vector<CString> paths = Platform::FindFiles(pattern, &error);
    RememberUnread(pattern, error);
    for (CString& path : paths)
        path.insert(0, folder);
    return paths;
}

} // namespace

CString LocalFolder(const CNCFMetadata& kind) {
    return FolderOf(kind);
}

CString LocalFolder(const CFOCMetadata& kind) {
    return FolderOf(kind);
}

bool IsEnabled(const CNCFMetadata& kind) {
    return TakesPart(kind);
}

bool IsEnabled(const CFOCMetadata& kind) {
    return TakesPart(kind);
}

std::vector<CString> LocalPaths(const CNCFMetadata& kind) {
    return AtBorder(std::vector<CString>(), [&] {
        const CString path = LocalFolder(kind) + kind.GetFile();
        if (kind.GetType() == NCFTypeSingleFile)
            return std::vector<CString>{path};
        return PathsOfMatches(path);
    });
}

std::vector<CString> LocalPaths(CFOCMetadata& kind) {
    return AtBorder(std::vector<CString>(), [&] {
        std::vector<CString> paths = kind.GetFileNames();
        for (CString& path : paths)
            path.insert(0, LocalFolder(kind));
        return paths;
    });
}

} // namespace Repository
