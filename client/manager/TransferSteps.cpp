// SPDX-License-Identifier: MIT
#include "TransferSteps.h"

#include "platform/host/FileSteps.h"
#include "platform/host/Interruption.h"
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

void CollectFile(const CString& path, const FileLabel& label, RepositoryFiles& files) {
    if (Platform::IsInterrupted())
        return; // the kind is not sent then, see IsRepositoryAccessible
    const auto file = boost::make_shared<CRepositoryFile>();
    if (!file->LoadFile(path.c_str()))
        return;
    Platform::TellFileStep(Platform::FileStep::Read);
    file->SetFileManagerId(label.fileManagerId);
    file->SetOriginId(label.originId);
    file->SetCustomParameter(label.kindId.c_str());
    file->SetFileType(label.type);
    files.push_back(file);
}

void LogFetchedFile(const CRepositoryFile& file, bool isWritten) {
    if (isWritten)
        Platform::TellFileStep(Platform::FileStep::Written);
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
