// SPDX-License-Identifier: MIT
#include "app/CatalogueFiles.h"

#include "app/Print.h"
#include "app/Texts.h"
#include "app/Transfer.h"

#include "ZEBXNetworkCore/CatalogManager.h"
#include "ZEBXRepositoryClient/LocalContent.h"
#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/host/FileSteps.h"
#include "platform/os/File.h"
#include "platform/os/FileName.h"
#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>
#include <set>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Repository::CRepositoryFile;
using ZEBGis::Data::CCatalogItem;
using ZEBGis::Data::CCatalogManager;
using ZEBGis::Data::CCatalogMetadata;

// The file as it travels; empty, and told, when there is none to send.
boost::shared_ptr<CRepositoryFile> Collect(const CCatalogMetadata& metadata,
                                           const CCatalogItem& item, const CString& name) {
    if (Platform::FaultOfFileName(name)) {
        Log(MessageFailure, Text(Message::ItemFileName, {item.GetName(), name}));
        return {};
    }
    const CString path = metadata.GetFilesFolder() + name;
    CString sentName;
    std::string bytes;
    if (!Repository::ReadLocalFile(path, sentName, bytes)) {
        // One that is there and cannot be read is told by the transfer, with the reason.
        if (Platform::KindOfPath(path) != Platform::PathKind::File)
            Log(MessageWarning, Text(Message::ItemFileMissing, {item.GetName(), ShownPath(path)}));
        return {};
    }
    Platform::TellFileStep(Platform::FileStep::Read);
    const auto file = boost::make_shared<CRepositoryFile>();
    file->SetFileName(sentName.c_str());
    file->SetFileBytes(std::move(bytes));
    return file;
}

void CollectAll(const CCatalogMetadata& metadata, const CCatalogItem& item, const CString& id,
                Repository::RepositoryFiles& files) {
    LookAtFileNames(metadata, item, [&](const CString& name, const CString& property) {
        const auto file = Collect(metadata, item, name);
        if (!file)
            return;
        file->SetFileManagerId(id.c_str());
        file->SetOriginId(item.GetGUID().c_str());
        file->SetCustomParameter(property.c_str());
        files.push_back(file);
    });
}

bool Holds(const CString& path, std::string_view bytes) {
    std::string current;
    return Platform::FileSize(path) == bytes.size() && !Platform::ReadFile(path, current) &&
           current == bytes;
}

void Put(const CString& folder, const CRepositoryFile& file) {
    const CString name = file.GetFileName();
    if (Platform::FaultOfFileName(name)) {
        Log(MessageFailure, Text(Message::ItemFileRefused, {name, ShownPath(folder)}));
        return;
    }
    std::string buffer;
    const std::string_view bytes = file.GetFileBytes(buffer);
    const CString path = folder + name;
    if (Holds(path, bytes))
        return;
    Platform::CreateFolderChain(folder);
    if (const std::error_code error = Platform::WriteFile(path, bytes)) {
        Log(MessageFailure, Text(Message::ItemFileNotWritten,
                                 {ShownPath(path), Platform::FromUtf8(error.message())}));
        return;
    }
    Platform::TellFileStep(Platform::FileStep::Written);
}

} // namespace

void LookAtFileNames(const CCatalogMetadata& metadata, const CCatalogItem& item,
                     const std::function<void(const CString&, const CString&)>& look) {
    std::set<CString> names;
    for (const CString& name : metadata.GetFileProperties()) {
        const auto property = item.GetProperty(name.c_str());
        const CString file = property ? property->GetValue().ToText() : CString();
        if (!file.empty() && names.insert(file).second)
            look(file, name);
    }
}

void CatalogueFileManager::GetFiles(Repository::RepositoryFiles& files, const char16_t* itemId) {
    auto& catalogues = *CCatalogManager::Instance();
    for (const auto& metadata : catalogues.GetCatalogRegistry()) {
        if (metadata->GetFileManager() != m_id)
            continue;
        const auto catalogue =
            catalogues.GetCatalog(metadata->GetCatalogReference().c_str(), /*load*/ 0);
        if (const auto item = catalogue ? catalogue->GetItembyGuid(itemId) : nullptr)
            CollectAll(*metadata, *item, m_id, files);
    }
}

void CatalogueFileManager::PutFiles(Repository::RepositoryFiles& files, int, const void*) {
    const auto metadata = CCatalogManager::Instance()->GetCatalogMetadata(m_id.c_str());
    if (!metadata || metadata->GetFilesFolder().empty())
        return;
    for (const auto& file : files)
        Put(metadata->GetFilesFolder(), *file);
}

void RegisterCatalogueFileManagers(Repository::CRepositoryStorageManager& manager) {
    for (const auto& metadata : CCatalogManager::Instance()->GetCatalogRegistry()) {
        for (const CString& id : {metadata->GetFileManager(), metadata->GetCatalogReference()}) {
            if (!metadata->GetFileManager().empty())
                manager.RegisterFileManager(boost::make_shared<CatalogueFileManager>(id));
        }
    }
}

} // namespace App
