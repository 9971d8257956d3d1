// SPDX-License-Identifier: MIT
#include "LogLines.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/File.h"
#include "platform/text/Utf8.h"

#include <new>

namespace ZEBGis::Workspace {
namespace {

CString ReasonOf(const std::error_code& error) {
    const auto* texts = CModuleConfiguration::Instance();
    if (error == std::errc::is_a_directory)
        return texts->GetMsg(12002);
    if (error == std::errc::too_many_symbolic_link_levels)
        return texts->GetMsg(12003);
    return Platform::FromUtf8(error.message());
}

} // namespace

LineKind KindOf(std::int32_t type) {
    if (type == MessageFailure)
        return LineKind::Failure;
    return type == MessageWarning ? LineKind::Warning : LineKind::Success;
}

const CWsMessage* CWsLogLines::Add(const CWsMessage& message) {
    m_lines.push_back(message);
    ++m_counts[Index(KindOf(message.type))];
    if (m_lines.size() <= kMostLines)
        return &m_lines.back();
    DropOldest();
    return nullptr;
}

void CWsLogLines::DropOldest() {
    for (std::size_t i = 0; i < kMostLines / 10; ++i) {
        --m_counts[Index(KindOf(m_lines.front().type))];
        m_lines.pop_front();
    }
    m_haveSomeGone = true;
}

std::vector<const CWsMessage*> CWsLogLines::ShownLines() const {
    std::vector<const CWsMessage*> shown;
    for (const CWsMessage& line : m_lines) {
        if (IsShown(KindOf(line.type)))
            shown.push_back(&line);
    }
    return shown;
}

CString TextOf(const std::vector<const CWsMessage*>& lines) {
    CString text;
    for (const CWsMessage* line : lines)
        text.append(LineOf(*line)).append(u"\n");
    return text;
}

CString SaveText(const CString& text, const CString& path) {
    const std::error_code error =
        Platform::ReplaceFile(path, Platform::ToUtf8(text), Platform::Access::Shared);
    return error ? ReasonOf(error) : CString();
}

} // namespace ZEBGis::Workspace
