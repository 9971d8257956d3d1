// SPDX-License-Identifier: MIT
#include "XmlEncoding.h"

#include "XmlMessages.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Surrogates.h"
#include "platform/text/Utf8.h"
#include "platform/text/Windows1250.h"

#include <algorithm>

namespace ZEBGis {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsXmlCharacter(std::int32_t codePoint) {
    if (codePoint < 0x20)
        return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
    return !Platform::IsSurrogate(codePoint) && codePoint != 0xFFFE && codePoint != 0xFFFF;
}

// Where the first character begins that XML does not have; npos when there is none.
std::size_t FirstUnfit(CStringView text) {
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        if (!IsXmlCharacter(Platform::NextCodePoint(text, position)))
            return start;
    }
    return CStringView::npos;
}

CString NameOf(std::int32_t codePoint) {
    CString digits;
    for (; codePoint > 0 || digits.size() < 4; codePoint /= 16)
        digits.insert(digits.begin(), u"0123456789ABCDEF"[codePoint % 16]);
    return u"U+" + digits;
}

struct Encoding {
    CString name;                                        // as the user reads it
    std::size_t markSize = 0;                            // bytes of the byte order mark
    CString (*decode)(std::string_view bytes) = nullptr; // null: not understood
    std::size_t (*size)(CStringView text) = nullptr;     // of the bytes that gave `text`
};

CString DecodeUtf16(std::string_view bytes, int lowByte) {
    CString text;
    text.reserve(bytes.size() / 2 + 1);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<unsigned char>(bytes[at + lowByte]);
        const auto high = static_cast<unsigned char>(bytes[at + 1 - lowByte]);
        text += static_cast<char16_t>(high << 8 | low);
    }
    // Half a code unit is no character.
    if (bytes.size() % 2 != 0)
        text += u'\xDC00';
    return text;
}

Encoding Utf8(std::size_t markSize) {
    return {u"UTF-8", markSize, Platform::FromUtf8,
            [](CStringView text) { return Platform::ToUtf8(text).size(); }};
}

Encoding Windows1250() {
    return {u"windows-1250", 0, Platform::FromAnsi, [](CStringView text) { return text.size(); }};
}

Encoding Utf16(bool isLittleEndian) {
    const auto size = [](CStringView text) { return 2 * text.size(); };
    if (isLittleEndian)
        return {u"UTF-16", 2, [](std::string_view bytes) { return DecodeUtf16(bytes, 0); }, size};
    return {u"UTF-16", 2, [](std::string_view bytes) { return DecodeUtf16(bytes, 1); }, size};
}

Encoding NotUnderstood(CString name) {
    return {std::move(name)};
}

// The value of `encoding` in the XML declaration; empty when there is none.
std::string_view DeclaredEncoding(std::string_view bytes) {
    if (!bytes.starts_with("<?xml") || bytes.size() < 6 || kBlanks.find(bytes[5]) == bytes.npos)
        return {};
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    std::size_t at = declaration.find("encoding");
    if (at == declaration.npos)
        return {};
    at = declaration.find_first_not_of(kBlanks, at + 8);
    if (at == declaration.npos || declaration[at] != '=')
        return {};
    at = declaration.find_first_not_of(kBlanks, at + 1);
    if (at == declaration.npos || (declaration[at] != '"' && declaration[at] != '\''))
        return {};
    return declaration.substr(at + 1, declaration.find(declaration[at], at + 1) - at - 1);
}

Encoding EncodingNamed(std::string_view name) {
    const CString written = Platform::FromUtf8(name);
    const CString folded = Platform::FoldCase(written);
    for (const char16_t* utf8 : {u"", u"utf-8", u"utf8", u"us-ascii"})
        if (folded == utf8)
            return Utf8(0);
    if (folded == u"windows-1250" || folded == u"cp1250")
        return Windows1250();
    return NotUnderstood(written);
}

// A byte order mark wins over what the declaration says.
Encoding EncodingOf(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return Utf8(3);
    if (bytes.starts_with("\xFF\xFE\0\0"sv) || bytes.starts_with("\0\0\xFE\xFF"sv))
        return NotUnderstood(u"UTF-32");
    if (bytes.starts_with("\xFF\xFE"))
        return Utf16(true);
    if (bytes.starts_with("\xFE\xFF"))
        return Utf16(false);
    if (bytes.starts_with("<\0"sv) || bytes.starts_with("\0<"sv))
        return NotUnderstood(XmlText(XmlMessage::Utf16WithoutMark));
    return EncodingNamed(DeclaredEncoding(bytes));
}

CString UnfitCharacter(const Encoding& encoding, CStringView text, std::size_t position) {
    const CStringView before = text.substr(0, position);
    const std::size_t byte = encoding.markSize + encoding.size(before);
    const auto line = std::count(before.begin(), before.end(), u'\n') + 1;
    const CString place = Platform::ToText(static_cast<std::int64_t>(byte) + 1);
    const std::int32_t character = Platform::NextCodePoint(text, position);
    if (Platform::IsSurrogate(character))
        return XmlText(XmlMessage::ByteUnfit, {place, Platform::ToText(line), encoding.name});
    return XmlText(XmlMessage::CharacterInFile, {place, Platform::ToText(line), NameOf(character)});
}

} // namespace

CString MakeUtf8(std::string& bytes) {
    const Encoding encoding = EncodingOf(bytes);
    if (!encoding.decode)
        return XmlText(XmlMessage::UnknownEncoding, {encoding.name});
    const CString text = encoding.decode(std::string_view(bytes).substr(encoding.markSize));
    const std::size_t unfit = FirstUnfit(text);
    if (unfit != CString::npos)
        return UnfitCharacter(encoding, text, unfit);
    if (encoding.decode == Platform::FromUtf8)
        bytes.erase(0, encoding.markSize);
    else
        bytes = Platform::ToUtf8(text);
    return {};
}

CString TextProblem(CStringView text) try {
    std::size_t position = FirstUnfit(text);
    if (position == CStringView::npos)
        return {};
    const CString place = Platform::ToText(static_cast<std::int64_t>(position) + 1);
    const std::int32_t character = Platform::NextCodePoint(text, position);
    return XmlText(Platform::IsSurrogate(character) ? XmlMessage::HalfCharacter
                                                    : XmlMessage::CharacterInText,
                   {NameOf(character), place});
} catch (...) {
    // Without memory nothing can be kept either.
    return u"?";
}

} // namespace ZEBGis
