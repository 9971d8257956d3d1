// SPDX-License-Identifier: MIT
#include "TransferSteps.h"

#include "client/records/RepositoryFileWriter.h"
#include "client/util/Border.h"
#include "platform/text/Fill.h"

#include <boost/make_shared.hpp>

namespace Repository {
namespace {

using ZEBGis::CModuleConfiguration;
using ZEBGis::Workspace::MessageFailure;
using ZEBGis::Workspace::MessageSuccess;

constexpr int kMsgKindNotSent = 10332;
constexpr int kMsgFileNotWritten = 10334;

void LogFailure(int msgNum, const CString& what) {
    const CString text = CModuleConfiguration::Instance()->GetMsg(msgNum);
    LogLine(MessageFailure, Platform::Fill(u"%s - %s", {text, what}));
}

} // namespace

CString BaseFolderPath(enmBaseFolder baseFolder) {
    return CModuleConfiguration::Instance()->GetPath(baseFolder == BaseFolderInstall ? u"install"
                                                                                     : u"support");
}

void CollectFile(const CString& path, const FileLabel& label, RepositoryFiles& files) {
    const auto file = boost::make_shared<CRepositoryFile>();
    if (!file->LoadFile(path.c_str()))
        return;
    file->SetFileManagerId(label.fileManagerId);
    file->SetOriginId(label.originId);
    file->SetCustomParameter(label.kindId.c_str());
    file->SetFileType(label.type);
    files.push_back(file);
}

bool WriteFetchedFile(const CRepositoryFile& file, const CString& folder) {
    // A file that memory does not suffice for must not stop those after it.
    return AtBorder(false, [&] { return WriteRepositoryFile(file, folder.c_str(), nullptr); });
}

void LogFetchedFile(const CRepositoryFile& file, bool isWritten) {
    if (isWritten)
        LogLine(MessageSuccess, file.GetFileName());
    else
        LogFailure(kMsgFileNotWritten, file.GetFileName());
}

void LogLine(ZEBGis::Workspace::enmMessageType type, const CString& text) {
    ZEBGis::Workspace::CWsManager::Instance()->LogMessage(type, text.c_str(), 0, nullptr, nullptr,
                                                          0);
}

void LogKindNotSent(int kindMsgNum) {
    LogFailure(kMsgKindNotSent, CModuleConfiguration::Instance()->GetMsg(kindMsgNum));
}

} // namespace Repository
