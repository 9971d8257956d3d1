// SPDX-License-Identifier: MIT
#include "platform/os/IniFile.h"

#include "platform/text/Utf8.h"

#include <algorithm>

namespace Platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

CString Trimmed(CStringView text) {
    constexpr CStringView kBlanks = u" \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == CStringView::npos)
        return {};
    return CString(text.substr(first, text.find_last_not_of(kBlanks) + 1 - first));
}

IniLine TakeApart(const CString& text, const CString& section) {
    IniLine line;
    line.section = section;
    line.value = text;
    const std::size_t equals = text.find(u'=');
    if (!IsWellFormed(text)) {
        line.kind = IniLine::Kind::NotUtf8;
    } else if (text.starts_with(u'[')) {
        if (!text.ends_with(u']'))
            return line;
        line.kind = IniLine::Kind::Section;
        line.section = Trimmed(CStringView(text).substr(1, text.size() - 2));
    } else if (equals != CString::npos && equals > 0) {
        line.kind = IniLine::Kind::Value;
        line.key = Trimmed(CStringView(text).substr(0, equals));
        line.value = Trimmed(CStringView(text).substr(equals + 1));
    }
    return line;
}

} // namespace

std::vector<IniLine> ReadIniLines(std::string_view bytes) {
    if (bytes.starts_with(kByteOrderMark))
        bytes.remove_prefix(kByteOrderMark.size());
    std::vector<IniLine> lines;
    CString section;
    for (int number = 1; !bytes.empty(); ++number) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        const CString text = Trimmed(FromUtf8(bytes.substr(0, end)));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (text.empty() || text.front() == u';' || text.front() == u'#')
            continue;
        IniLine line = TakeApart(text, section);
        line.number = number;
        section = line.section;
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace Platform
