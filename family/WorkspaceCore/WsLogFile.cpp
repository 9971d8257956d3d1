// SPDX-License-Identifier: MIT
#include "ZEBXWorkspaceCore/WsManager.h"

#include "platform/os/AppendedFile.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace ZEBGis::Workspace {
namespace {

CString WordFor(std::int32_t type) {
    switch (type) {
    case MessageSuccess:
        return u"success";
    case MessageWarning:
        return u"warning";
    case MessageFailure:
        return u"failure";
    default:
        return Platform::ToText(type);
    }
}

} // namespace

CString LineOf(const CWsMessage& message) {
    CString text = message.text;
    std::replace_if(
        text.begin(), text.end(), [](char16_t c) { return c == u'\n' || c == u'\r'; }, u' ');
    return message.time + u"\t" + WordFor(message.type) + u"\t" + text;
}

CWsLogFile::CWsLogFile(CStringView path) : m_path(path), m_file(new Platform::AppendedFile(path)) {}

CWsLogFile::~CWsLogFile() = default;

void CWsLogFile::Write(const CWsMessage& message) try {
    const std::string bytes = Platform::ToUtf8(LineOf(message)) + '\n';
    if (m_file->Append(bytes) != std::errc::no_such_file_or_directory)
        return;
    Platform::CreateFolderChain(Platform::FolderOf(m_path), Platform::Access::Private);
    m_file->Append(bytes);
} catch (...) { // the log must not stop the work
}

} // namespace ZEBGis::Workspace
