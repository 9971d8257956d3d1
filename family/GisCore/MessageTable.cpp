// SPDX-License-Identifier: MIT
#include "MessageTable.h"

#include "platform/os/File.h"
#include "platform/text/Numbers.h"
#include "platform/text/Trim.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace ZEBGis {
namespace {

bool IsNumber(CStringView text) {
    return !text.empty() && text.size() <= 9 &&
           std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

void AddLine(CStringView line, std::map<int, CString>& messages) {
    const auto equals = line.find(u'=');
    if (equals == CStringView::npos)
        return;
    const CStringView number = Platform::Trim(line.substr(0, equals));
    const CStringView text = Platform::Trim(line.substr(equals + 1));
    if (IsNumber(number) && !text.empty())
        messages.emplace(Platform::ToInteger(number), text);
}

} // namespace

std::map<int, CString> ReadMessageTable(CStringView path) {
    std::map<int, CString> messages;
    std::string bytes;
    if (Platform::ReadFile(path, bytes))
        return messages;
    const CString text = Platform::FromUtf8(bytes);
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(u'\n', start), text.size());
        AddLine(CStringView(text).substr(start, end - start), messages);
        start = end + 1;
    }
    return messages;
}

CString TextForUnknownMessage(CStringView language, int number) {
    return (language == u"hr" ? u"poruka " : u"message ") + Platform::ToText(number);
}

} // namespace ZEBGis
