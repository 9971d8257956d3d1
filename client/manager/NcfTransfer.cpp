// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "TransferSteps.h"

#include "ZEBXRepositoryClient/LocalContent.h"
#include "client/records/RepositoryFileWriter.h"
#include "client/util/Border.h"
#include "platform/os/File.h"
#include "platform/text/Fill.h"

namespace Repository {
namespace {

using ZEBGis::Workspace::MessageFailure;
using ZEBGis::Workspace::MessageWarning;

constexpr int kMsgPatternMatchesNothing = 10384;

// Every path is tried: folders, "." and ".." simply do not load.
RepositoryFiles CollectDrawings(const CNCFMetadata& kind, const char16_t* originId) {
    const FileLabel label{u"NCF", originId, kind.GetId(), FileTypeNCF};
    const std::vector<CString> paths = LocalPaths(kind);
    if (paths.empty()) {
        const CString text =
            ZEBGis::CModuleConfiguration::Instance()->GetMsg(kMsgPatternMatchesNothing);
        const CString pattern = LocalFolder(kind) + kind.GetFile();
        LogLine(MessageWarning, Platform::Fill(u"%s (%s)", {text, pattern}));
    }
    RepositoryFiles files;
    for (const CString& path : paths)
        CollectFile(path, label, files);
    return files;
}

// One stored drawing to its folder.  False when it could not be written; one that the
// repository lists and does not have is told of and is not that kind of failure.
bool WriteDrawing(const boost::shared_ptr<CRepositoryFile>& file, Platform::FolderWriter& writer,
                  const char16_t* kindId) {
    if (!file) {
        LogLine(MessageFailure, kindId);
        return true;
    }
    const bool isWritten = WriteRepositoryFile(*file, writer);
    LogFetchedFile(*file, isWritten);
    return isWritten;
}

} // namespace

int CRepositoryStorageManager::LoadNCF(const char16_t* id) {
    return AtBorder(0, [&] {
        const auto kind = GetNCFMetadataById(id);
        if (!kind)
            return 1; // kept: when loading, an unknown kind is not an error
        const CString folder = LocalFolder(*kind);
        Platform::CreateFolderChain(folder);
        std::vector<CString> fileIds;
        if (!Backend()->GetRepositoryFileIds(kContentNCF, id, fileIds))
            return 1;
        Platform::FolderWriter writer(folder);
        int result = 1;
        for (const CString& fileId : fileIds) {
            const auto file = Backend()->GetRepositoryFile(fileId.c_str());
            if (!IsRepositoryAccessible())
                return 0; // before the write, kept: LoadFOC writes first
            if (!WriteDrawing(file, writer, id))
                result = 0;
        }
        return result;
    });
}

int CRepositoryStorageManager::LoadAllNCFs() {
    return AtBorder(0, [&] {
        if (!IsRepositoryAccessible())
            return 0;
        int result = 1;
        for (const auto& [key, kind] : m_ncfKinds) {
            if (!IsEnabled(*kind))
                continue;
            if (!LoadNCF(key.c_str()))
                result = 0;
            if (!IsRepositoryAccessible())
                return 0;
        }
        return result;
    });
}

int CRepositoryStorageManager::SaveNCF(const char16_t* id) {
    return AtBorder(0, [&] {
        const auto kind = GetNCFMetadataById(id);
        if (!kind || !IsRepositoryAccessible())
            return 0;
        if (!Backend()->RegisterContent(kContentNCF, id, kind->GetMsgNum()))
            return 0;
        const RepositoryFiles files = CollectDrawings(*kind, id);
        if (files.empty() || !IsRepositoryAccessible())
            return 0;
        return Backend()->AddRepositoryFiles(files);
    });
}

int CRepositoryStorageManager::SaveAllNCFs() {
    return AtBorder(0, [&] {
        if (!IsRepositoryAccessible())
            return 0;
        int result = 1;
        for (const auto& [key, kind] : m_ncfKinds) {
            if (!IsEnabled(*kind))
                continue;
            if (!SaveNCF(key.c_str())) {
                LogKindNotSent(kind->GetMsgNum());
                result = 0;
            }
            if (!IsRepositoryAccessible())
                return 0;
        }
        return result;
    });
}

} // namespace Repository
