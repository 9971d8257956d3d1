// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "TransferSteps.h"

#include "ZEBXRepositoryClient/LocalContent.h"
#include "client/records/RepositoryFileWriter.h"
#include "client/util/Border.h"
#include "platform/host/Interruption.h"
#include "platform/os/File.h"

namespace Repository {
namespace {

using ZEBGis::Workspace::MessageFailure;

// A kind with a file manager leaves its files to it altogether, labels included.
RepositoryFiles CollectConfigurationFiles(CFOCMetadata& kind, const char16_t* originId) {
    RepositoryFiles files;
    if (const auto fileManager = kind.GetFileManager()) {
        fileManager->GetFiles(files, nullptr);
        return files;
    }
    const FileLabel label{u"FOC", originId, kind.GetId(), FileTypeFOC};
    for (const CString& path : LocalPaths(kind))
        CollectFile(path, label, files);
    return files;
}

} // namespace

int CRepositoryStorageManager::LoadFOC(const char16_t* id, int loadDependents) {
    return AtBorder(0, [&] {
        const auto kind = GetFOCMetadataById(id);
        if (!kind)
            return 1; // kept: when loading, an unknown kind is not an error
        const CString folder = LocalFolder(*kind);
        Platform::CreateFolderChain(folder);
        std::vector<CString> fileIds;
        if (!Backend()->GetRepositoryFileIds(kContentFOC, id, fileIds))
            fileIds.clear();
        Platform::FolderWriter writer(folder);
        int result = 1;
        for (const CString& fileId : fileIds) {
            const auto file = Backend()->GetRepositoryFile(fileId.c_str());
            // Written before the connection is asked for, kept: LoadNCF asks first.
            const bool isWritten = file && WriteRepositoryFile(*file, writer);
            if (!IsRepositoryAccessible())
                return 0;
            if (!file) {
                LogLine(MessageFailure, u"NULL File");
                continue;
            }
            LogFetchedFile(*file, isWritten);
            if (!isWritten)
                result = 0;
        }
        if (result && loadDependents)
            for (const CString& ncfId : kind->GetDependentNCFs())
                LoadNCF(ncfId.c_str()); // its result does not count here
        return result;
    });
}

int CRepositoryStorageManager::LoadAllFOC(int) {
    return AtBorder(0, [&] {
        if (!IsRepositoryAccessible())
            return 1; // kept: LoadAllNCFs gives 0 here
        int result = 1;
        for (const auto& [key, kind] : m_focKinds) {
            if (!IsRepositoryAccessible())
                return 0;
            if (IsEnabled(*kind) && !LoadFOC(key.c_str(), 1))
                result = 0;
        }
        return result;
    });
}

int CRepositoryStorageManager::SaveFOC(const char16_t* id, int) {
    return AtBorder(0, [&] {
        const auto kind = GetFOCMetadataById(id);
        if (!kind)
            return 0;
        // A refusal does not stop here, kept: it only counts when there is nothing to send.
        const int isRegistered = Backend()->RegisterContent(kContentFOC, id, kind->GetMsgNum());
        const RepositoryFiles files = CollectConfigurationFiles(*kind, id);
        if (!IsRepositoryAccessible())
            return 0;
        if (files.empty())
            return isRegistered;
        const int result = Backend()->AddRepositoryFiles(files);
        for (const CString& ncfId : kind->GetDependentNCFs()) {
            if (!IsRepositoryAccessible())
                return 0;
            SaveNCF(ncfId.c_str()); // its result does not count here
        }
        return result;
    });
}

// Never asks for the connection, kept: each kind that cannot be sent gets its own line.
int CRepositoryStorageManager::SaveAllFOC(int unused) {
    return AtBorder(0, [&] {
        int result = 1;
        for (const auto& [key, kind] : m_focKinds) {
            if (Platform::IsInterrupted())
                return 0;
            if (!IsEnabled(*kind) || SaveFOC(key.c_str(), unused))
                continue;
            LogKindNotSent(kind->GetMsgNum());
            result = 0;
        }
        return result;
    });
}

} // namespace Repository
