// SPDX-License-Identifier: MIT
// Values of XML attributes written and read in the plainest way.
#pragma once

#include "platform/text/Text.h"

#include <algorithm>
#include <string>

namespace XmlTwin {

inline bool IsDigit(char16_t character, bool hexadecimal) {
    const CStringView digits = hexadecimal ? u"0123456789abcdefABCDEF" : u"0123456789";
    return digits.find(character) != digits.npos;
}

// What the text between "&" and ";" stands for; empty when it stands for nothing.
inline CString MeaningOf(const CString& body) {
    if (body == u"lt")
        return u"<";
    if (body == u"gt")
        return u">";
    if (body == u"amp")
        return u"&";
    if (body == u"apos")
        return u"'";
    if (body == u"quot")
        return u"\"";
    const bool hexadecimal = body.starts_with(u"#x");
    const CString digits = body.substr(hexadecimal ? 2 : std::min<std::size_t>(1, body.size()));
    if (!body.starts_with(u'#') || digits.empty())
        return {};
    for (const char16_t digit : digits)
        if (!IsDigit(digit, hexadecimal))
            return {};
    const unsigned long code =
        std::stoul(std::string(digits.begin(), digits.end()), nullptr, hexadecimal ? 16 : 10);
    if (code <= 0xFFFF)
        return CString(1, static_cast<char16_t>(code));
    return {static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)),
            static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF))};
}

// A reference's ";" is one of the seven characters behind its "&"; any other "&" stays.
inline CString Decode(CStringView value) {
    CString text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const std::size_t end = value[i] == u'&' ? value.substr(i + 1, 7).find(u';') : value.npos;
        const CString meaning =
            end == value.npos ? CString() : MeaningOf(CString(value.substr(i + 1, end)));
        text += meaning.empty() ? CString(1, value[i]) : meaning;
        i += meaning.empty() ? 0 : end + 1;
    }
    return text;
}

// `text` as it may stand between either quotes.
inline CString Escape(CStringView text) {
    CString value;
    for (const char16_t character : text)
        switch (character) {
        case u'<':
            value += u"&lt;";
            break;
        case u'&':
            value += u"&amp;";
            break;
        case u'>':
            value += u"&gt;";
            break;
        case u'\'':
            value += u"&apos;";
            break;
        case u'"':
            value += u"&quot;";
            break;
        default:
            value += character;
        }
    return value;
}

} // namespace XmlTwin
