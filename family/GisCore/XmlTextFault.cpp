// SPDX-License-Identifier: MIT
#include "XmlMessages.h"
#include "ZEBXGisCore/XmlFile.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace ZEBGis {
namespace {

// Good: a character of XML, or no reference at all but text.  Foreign: a character that XML does
// not have.  Unreadable: what the parser would take for the end of the text, or for nothing.
enum class Reference { Good, Foreign, Unreadable };

// What the reference stands for, from its "&#" to before its ";".
Reference Classify(std::string_view digits) {
    const int base = digits.starts_with('x') ? 16 : 10;
    if (base == 16)
        digits.remove_prefix(1);
    std::uint32_t codePoint = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), codePoint, base);
    if (end == digits.data() || end != digits.data() + digits.size())
        return Reference::Good;
    const bool isHalf = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (error != std::errc() || codePoint == 0 || isHalf || codePoint > 0x10FFFF)
        return Reference::Unreadable;
    CString character;
    if (codePoint < 0x10000)
        character = static_cast<char16_t>(codePoint);
    return TextProblem(character).empty() ? Reference::Good : Reference::Foreign;
}

// Finds what is wrong, the worse before the earlier.
class FaultFinder {
public:
    explicit FaultFinder(std::string_view utf8) : m_utf8(utf8) {}

    std::optional<XmlTextFault> Find() {
        LookAtReferences();
        if (!m_fault || m_fault->kind != XmlTextFault::Kind::Unreadable)
            LookAtMarkup();
        return std::move(m_fault);
    }

private:
    using Kind = XmlTextFault::Kind;

    void Note(Kind kind, std::size_t offset, CString reason) {
        const bool isWorse = m_fault && m_fault->kind == Kind::ForeignCharacter;
        if (!m_fault || (isWorse && kind == Kind::Unreadable))
            m_fault = XmlTextFault{kind, offset, std::move(reason)};
    }

    // It is not asked whether a reference stands in a comment, where it means nothing.
    void LookAtReferences();
    // The parser takes everything up to the next quote for a value, also whole elements.
    void LookAtMarkup();
    // Behind what begins with the "<" at `start`; the end of the text where its own is
    // missing, which the parser tells.
    std::size_t EndOfMarkup(std::size_t start);
    std::size_t EndOfTag(std::size_t start);

    std::string_view m_utf8;
    std::optional<XmlTextFault> m_fault;
};

void FaultFinder::LookAtReferences() {
    for (std::size_t at = m_utf8.find("&#"); at != std::string_view::npos;
         at = m_utf8.find("&#", at + 2)) {
        const std::size_t end = m_utf8.find_first_of(";&<\"'", at + 2);
        if (end == std::string_view::npos || m_utf8[end] != ';')
            continue;
        const std::string_view text = m_utf8.substr(at, end + 1 - at);
        const Reference reference = Classify(text.substr(2, text.size() - 3));
        if (reference != Reference::Good)
            Note(reference == Reference::Foreign ? Kind::ForeignCharacter : Kind::Unreadable, at,
                 XmlText(XmlMessage::BadReference, {Platform::FromUtf8(text)}));
    }
}

void FaultFinder::LookAtMarkup() {
    for (std::size_t at = m_utf8.find('<'); at != std::string_view::npos;
         at = m_utf8.find('<', at)) {
        at = EndOfMarkup(at);
        if (m_fault && m_fault->kind == Kind::Unreadable)
            return;
    }
}

std::size_t FaultFinder::EndOfMarkup(std::size_t start) {
    constexpr std::pair<std::string_view, std::string_view> kKinds[] = {
        {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    const std::string_view markup = m_utf8.substr(start);
    for (const auto& [begin, end] : kKinds)
        if (markup.starts_with(begin))
            return std::min(m_utf8.find(end, start + begin.size()), m_utf8.size());
    if (markup.starts_with("<!DOCTYPE"))
        Note(Kind::Unreadable, start, XmlText(XmlMessage::HasDoctype));
    return EndOfTag(start);
}

std::size_t FaultFinder::EndOfTag(std::size_t start) {
    std::size_t at = start + 1;
    while ((at = std::min(m_utf8.find_first_of("<>\"'", at), m_utf8.size())) < m_utf8.size()) {
        const char mark = m_utf8[at];
        if (mark == '>')
            return at;
        const char stops[] = {mark, '<'};
        const std::size_t end =
            mark == '<' ? at : m_utf8.find_first_of(std::string_view(stops, 2), at + 1);
        if (end == std::string_view::npos)
            return m_utf8.size();
        if (m_utf8[end] == '<') {
            Note(Kind::Unreadable, end, XmlText(XmlMessage::NotWellFormed));
            return m_utf8.size();
        }
        at = end + 1;
    }
    return at;
}

} // namespace

std::optional<XmlTextFault> FindXmlTextFault(std::string_view utf8) {
    return FaultFinder(utf8).Find();
}

std::int64_t XmlLineAt(std::string_view utf8, std::size_t offset) {
    const auto end = utf8.begin() + static_cast<std::ptrdiff_t>(std::min(offset, utf8.size()));
    return std::count(utf8.begin(), end, '\n') + 1;
}

} // namespace ZEBGis
