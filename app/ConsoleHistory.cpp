// SPDX-License-Identifier: MIT
#include "app/ConsoleHistory.h"

#include "platform/os/AppendedFile.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/os/UserFolders.h"
#include "platform/text/Trim.h"
#include "platform/text/Utf8.h"

#include <sstream>

namespace App {
namespace {

std::vector<CString> ReadLines(const CString& path) {
    std::string bytes;
    Platform::ReadFile(path, bytes);
    std::vector<CString> lines;
    std::istringstream stream(bytes);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(Platform::FromUtf8(line));
    return lines;
}

} // namespace

CString ConsoleHistory::DefaultPath() {
    const CString folder = Platform::StateFolder();
    return folder.empty() ? CString() : folder + u"StudioZEB\\console-history";
}

ConsoleHistory::ConsoleHistory(const CString& path) : m_path(path), m_lines(ReadLines(path)) {
    if (m_lines.size() > kMostLines)
        Shorten();
}

void ConsoleHistory::Shorten() {
    m_lines.erase(m_lines.begin(), m_lines.end() - static_cast<std::ptrdiff_t>(kMostLines));
    std::string bytes;
    for (const CString& line : m_lines)
        bytes += Platform::ToUtf8(line) + '\n';
    Platform::ReplaceFile(m_path, bytes, Platform::Access::Private);
}

bool ConsoleHistory::Add(const CString& line) {
    const std::string bytes = Platform::ToUtf8(line);
    if (Platform::Trim(line).empty() || bytes.size() > kLongestLine ||
        (!m_lines.empty() && m_lines.back() == line))
        return false;
    m_lines.push_back(line);
    if (m_path.empty())
        return true;
    Platform::CreateFolderChain(Platform::FolderOf(m_path), Platform::Access::Private);
    // At once, so that what several consoles keep at a time all stays.
    Platform::AppendFile(m_path, bytes + '\n');
    return true;
}

} // namespace App
