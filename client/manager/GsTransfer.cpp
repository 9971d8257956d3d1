// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "client/util/Border.h"

namespace Repository {
namespace {

constexpr const char16_t* kGsFileManager = u"GS";

} // namespace

int CRepositoryStorageManager::SaveGS(const char16_t* xml, const char16_t* name) {
    return AtBorder(0, [&] {
        if (!m_storage)
            return 0;
        RepositoryFiles files;
        if (const auto fileManager = GetFileManagerById(kGsFileManager))
            fileManager->GetFiles(files, nullptr);
        return Backend()->SaveGS(xml, files, name) > 0 ? 1 : 0;
    });
}

int CRepositoryStorageManager::LoadGS(CString& xml, const char16_t* name) {
    return AtBorder(0, [&] {
        if (!m_storage)
            return 0;
        const auto fileManager = GetFileManagerById(kGsFileManager);
        std::vector<CString> fileIds;
        if (!Backend()->LoadGS(xml, fileIds, name))
            return 0;
        RepositoryFiles files;
        for (const CString& fileId : fileIds) {
            if (const auto file = Backend()->GetRepositoryFile(fileId.c_str()))
                files.push_back(file);
            if (!IsRepositoryAccessible())
                return 0;
        }
        if (fileManager)
            fileManager->PutFiles(files, 0);
        return 1;
    });
}

int CRepositoryStorageManager::SaveGSLocally() {
    return AtBorder(0, [&] {
        CString xml;
        if (!LoadGS(xml, u""))
            return 0;
        return ZEBGis::CModuleConfiguration::Instance()->ForceSaveGSLocal(xml.c_str(), nullptr);
    });
}

int CRepositoryStorageManager::GetAvailableGS(std::vector<CString>& names) {
    return AtBorder(0, [&] { return m_storage ? Backend()->GetAvailableGS(names) : 0; });
}

int CRepositoryStorageManager::IsMultipleGSSupported() const {
    return AtBorder(0, [&] { return m_storage ? Backend()->IsMultipleGSSupported() : 0; });
}

} // namespace Repository
