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

// What stands behind a section line that is not understood must not count as part of
// the section before, so such a line begins a section too, of a name that nobody knows.
CString SectionFrom(const CString& text) {
    return text.ends_with(u']') ? Trimmed(CStringView(text).substr(1, text.size() - 2)) : text;
}

IniLine TakeApart(const CString& text, const CString& section) {
    using enum IniLine::Kind;
    const bool isSection = text.starts_with(u'[');
    IniLine line;
    line.section = isSection ? SectionFrom(text) : section;
    line.value = text;
    const std::size_t equals = text.find(u'=');
    if (!IsWellFormed(text)) {
        line.kind = NotUtf8;
    } else if (isSection) {
        line.kind = text.ends_with(u']') ? Section : Unknown;
    } else if (equals != CString::npos && equals > 0) {
        line.kind = Value;
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
