// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/SettingsFile.h"
#include "app/Verbs.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <ostream>

namespace App {
namespace {

template<typename Kinds>
void AddOptional(const Kinds& kinds, std::vector<CString>& ids) {
    for (const auto& [id, kind] : kinds) {
        if (kind->IsOptional())
            ids.push_back(id);
    }
}

// The support folder first, then each kind's folder, each once.
template<typename Kinds>
void AddFolders(const Kinds& kinds, std::vector<CString>& folders) {
    const auto* configuration = ZEBGis::CModuleConfiguration::Instance();
    for (const auto& [id, kind] : kinds) {
        const bool install = kind->GetBaseFolder() == Repository::BaseFolderInstall;
        const CString base = configuration->GetPath(install ? u"install" : u"support");
        const CString folder = base + kind->GetSubfolder();
        if (std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(folder);
    }
}

void TellMade(Session& session, const CString& path) {
    PrintLine(session.out, Text(Message::Made, {ShownPath(path)}));
    session.result["made"].push_back(ShownPath(path));
}

void MakeFolder(Session& session, const CString& folder, Platform::Access access) {
    const bool wasThere = Platform::KindOfPath(folder) == Platform::PathKind::Folder;
    if (!Platform::CreateFolderChain(folder, access))
        throw AppError(ExitStatus::LocalFile, Text(Message::NotMade, {ShownPath(folder)}));
    if (!wasThere)
        TellMade(session, folder);
}

} // namespace

ExitStatus RunInit(Session& session, const Invocation&) {
    const CString file = Platform::UserSettings::Instance()->Get(Platform::Setting::Config).value;
    if (Platform::PathExists(file))
        throw AppError(ExitStatus::Conflict, Text(Message::SettingsExist, {ShownPath(file)}));

    auto& manager = *Repository::CRepositoryStorageManager::Instance();
    std::vector<CString> optionalKinds;
    AddOptional(manager.GetFOCMetadata(), optionalKinds);
    AddOptional(manager.GetNCFMetadata(), optionalKinds);
    const CString settings = NewSettingsFile(optionalKinds);

    std::vector<CString> folders = {ZEBGis::CModuleConfiguration::Instance()->GetPath(u"support")};
    AddFolders(manager.GetNCFMetadata(), folders);
    AddFolders(manager.GetFOCMetadata(), folders);
    session.result = {{"made", Json::array()}, {"settings", ShownPath(file)}};
    for (const CString& folder : folders)
        MakeFolder(session, folder, Platform::Access::Shared);
    MakeFolder(session, CString(Platform::FolderOf(file)), Platform::Access::Private);
    const std::error_code failure =
        Platform::ReplaceFile(file, Platform::ToUtf8(settings), Platform::Access::Private);
    if (failure)
        throw AppError(ExitStatus::LocalFile, Text(Message::NotMade, {ShownPath(file)}) + u"\n  " +
                                                  Platform::FromUtf8(failure.message()));
    TellMade(session, file);
    PrintLine(session.out, Text(Message::NextIsConnect));
    return ExitStatus::Done;
}

} // namespace App
