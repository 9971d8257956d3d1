// SPDX-License-Identifier: MIT
#include "client/util/XmlText.h"

#include "platform/text/CaseFold.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Repository {
namespace {

enum Stops : unsigned { kBlank = 1, kEndsName = 2, kEndsNameToken = 4, kEndsValueToken = 8 };

constexpr auto kKinds = [] {
    std::array<std::uint8_t, 128> kinds{};
    const auto mark = [&kinds](std::string_view characters, unsigned kind) {
        for (const char character : characters)
            kinds[static_cast<unsigned char>(character)] |= static_cast<std::uint8_t>(kind);
    };
    mark(" \t\r\n", kBlank | kEndsName | kEndsNameToken | kEndsValueToken);
    mark("<>=\\/?!", kEndsName);
    mark("=>/?", kEndsNameToken);
    mark(">", kEndsValueToken);
    return kinds;
}();

bool Is(char16_t character, unsigned kinds) {
    return character < kKinds.size() && (kKinds[character] & kinds);
}

std::size_t FindKind(CStringView text, std::size_t position, unsigned kinds) {
    while (position < text.size() && !Is(text[position], kinds))
        ++position;
    return position;
}

std::size_t SkipBlanksOf(CStringView text, std::size_t position) {
    while (position < text.size() && Is(text[position], kBlank))
        ++position;
    return position;
}

struct Entity {
    CStringView text;
    char16_t character;
};
constexpr Entity kEntities[] = {
    {u"&lt;", u'<'}, {u"&amp;", u'&'}, {u"&gt;", u'>'}, {u"&apos;", u'\''}, {u"&quot;", u'"'}};

// The value of a digit in bases up to 16; 16 when it is none.
unsigned DigitOf(char16_t character) {
    const char16_t lower = character | 0x20;
    if (character >= u'0' && character <= u'9')
        return character - u'0';
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10u : 16u;
}

void AppendCharacter(std::uint32_t code, CString& text) {
    if (code > 0xFFFF) {
        text += static_cast<char16_t>(0xD7C0 + (code >> 10));
        code = 0xDC00 | (code & 0x3FF);
    }
    text += static_cast<char16_t>(code);
}

// Appends what the reference at the start of `rest` ("&#65;", "&#x41;") stands for and
// returns its length; 0 when there is none. Its ";" is one of the seven characters behind
// the "&", so no code is too large.
std::size_t TakeReference(CStringView rest, CString& text) {
    const CStringView body = rest.substr(1, 7);
    const std::size_t end = body.find(u';');
    if (end == body.npos || body[0] != u'#')
        return 0;
    const unsigned base = body[1] == u'x' ? 16 : 10;
    const CStringView digits = body.substr(0, end).substr(base == 16 ? 2 : 1);
    std::uint32_t code = 0;
    for (const char16_t digit : digits) {
        if (DigitOf(digit) >= base)
            return 0;
        code = code * base + DigitOf(digit);
    }
    if (digits.empty())
        return 0;
    AppendCharacter(code, text);
    return end + 2;
}

// The same for any entity.
std::size_t TakeEntity(CStringView rest, CString& text) {
    for (const auto& [entity, character] : kEntities)
        if (rest.starts_with(entity)) {
            text += character;
            return entity.size();
        }
    return TakeReference(rest, text);
}

} // namespace

std::size_t FindCharacter(CStringView text, char16_t character, std::size_t position) {
    constexpr std::uint64_t kOnes = 0x0001'0001'0001'0001;
    constexpr std::uint64_t kTops = 0x8000'8000'8000'8000;
    for (; position + 4 <= text.size(); position += 4) {
        std::uint64_t four;
        std::memcpy(&four, text.data() + position, sizeof four);
        four ^= kOnes * character;
        if ((four - kOnes) & ~four & kTops)
            break; // one of the four is zero now
    }
    while (position < text.size() && text[position] != character)
        ++position;
    return position;
}

bool IsXmlNameStart(char16_t character) {
    const char16_t lower = character | 0x20;
    return character >= 0x80 || (lower >= u'a' && lower <= u'z') || character == u'_' ||
           character == u':';
}

bool EndsXmlName(char16_t character) {
    return Is(character, kEndsName);
}

CStringView XmlNameAt(CStringView text, std::size_t position) {
    const std::size_t begin = SkipBlanksOf(text, position);
    std::size_t end = FindKind(text, begin, kEndsName);
    if (end == begin && end < text.size())
        ++end;
    return text.substr(begin, end - begin);
}

bool SameXmlName(CStringView left, CStringView right, bool ignoreCase) {
    if (!ignoreCase)
        return left == right;
    return left.size() == right.size() && Platform::FoldCase(left) == Platform::FoldCase(right);
}

bool XmlNameMatches(CStringView name, CStringView asked, bool ignoreCase) {
    if (asked.size() < name.size() || !SameXmlName(name, asked.substr(0, name.size()), ignoreCase))
        return false;
    return asked.size() == name.size() ||
           CStringView(u" =/[]").find(asked[name.size()]) != CStringView::npos;
}

XmlTagReader::XmlTagReader(CStringView text, std::size_t position)
    : m_text(text), m_position(position) {
    SkipBlanks();
    TakeToken(kEndsNameToken);
}

void XmlTagReader::SkipBlanks() {
    m_position = SkipBlanksOf(m_text, m_position);
}

CStringView XmlTagReader::TakeToken(unsigned stops) {
    if (AtEnd())
        return {};
    std::size_t begin = m_position;
    const char16_t first = m_text[begin];
    std::size_t end;
    if (first == u'"' || first == u'\'') {
        end = FindCharacter(m_text, first, ++begin);
        m_position = std::min(end + 1, m_text.size());
    } else {
        end = FindKind(m_text, begin, stops);
        if (end == begin)
            ++end; // an empty token counts as one character: kept
        m_position = end;
    }
    return m_text.substr(begin, end - begin);
}

bool XmlTagReader::Next(XmlAttribute& attribute) {
    SkipBlanks();
    if (AtEnd() || m_text[m_position] == u'/' || m_text[m_position] == u'>' ||
        m_text[m_position] == u'?')
        return false;
    attribute = {TakeToken(kEndsNameToken), {}};
    SkipBlanks();
    if (AtEnd() || m_text[m_position] != u'=')
        return true;
    ++m_position;
    SkipBlanks();
    if (!AtEnd() && m_text[m_position] != u'>')
        attribute.value = TakeToken(kEndsValueToken);
    return true;
}

std::size_t XmlTagReader::FindEnd() {
    for (XmlAttribute skipped;; ++m_position) {
        while (Next(skipped)) {
        }
        if (AtEnd())
            return CStringView::npos;
        if (m_text[m_position] == u'>')
            return m_position;
    }
}

CString DecodeXmlText(CStringView value) {
    CString text;
    text.reserve(value.size());
    for (;;) {
        const std::size_t ampersand = value.find(u'&');
        text.append(value.substr(0, ampersand));
        if (ampersand == value.npos)
            return text;
        value.remove_prefix(ampersand);
        std::size_t taken = TakeEntity(value, text);
        if (taken == 0) {
            text += u'&';
            taken = 1;
        }
        value.remove_prefix(taken);
    }
}

} // namespace Repository
