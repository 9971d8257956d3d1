// SPDX-License-Identifier: MIT
#include "XmlSource.h"

#include "CatalogBranch.h"
#include "XmlNode.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <new>

namespace ZEBGis::Data {
namespace {

// Items stand at most kMostLevels deep; this much more is for what they hold.
constexpr int kMostDepth = 2 * kMostLevels;

// Everything is kept, also blanks: they count inside the elements of other tools.
constexpr unsigned kParse = pugi::parse_full | pugi::parse_ws_pcdata | pugi::parse_fragment;

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

CString TextProblemOf(const pugi::xml_node& node) {
    CString problem = TextProblem(Platform::FromUtf8(node.value()));
    for (const pugi::xml_attribute& attribute : node.attributes())
        if (problem.empty())
            problem = TextProblem(Platform::FromUtf8(attribute.value()));
    return problem;
}

bool HasAttributeTwice(const pugi::xml_node& node, std::string& name) {
    std::vector<std::string_view> names;
    for (const pugi::xml_attribute& attribute : node.attributes())
        names.emplace_back(attribute.name());
    std::ranges::sort(names);
    const auto found = std::ranges::adjacent_find(names);
    if (found == names.end())
        return false;
    name = *found;
    return true;
}

} // namespace

struct SourceCheck : pugi::xml_tree_walker {
    explicit SourceCheck(const XmlSource& of) : source(of) {}

    bool for_each(pugi::xml_node& node) override {
        if (depth() > kMostDepth)
            Fail(node, CatalogueText(CatalogueMessage::TooDeep, {Platform::ToText(kMostLevels)}));
        if (node.type() == pugi::node_declaration && node.previous_sibling())
            Fail(node, CatalogueText(CatalogueMessage::NotWellFormed));
        // Characters can come in by references alone: the text itself was read as text.
        if (source.m_hasForeign)
            if (const CString problem = TextProblemOf(node); !problem.empty())
                Fail(node, problem);
        std::string name;
        if (HasAttributeTwice(node, name))
            Fail(node, CatalogueText(CatalogueMessage::AttributeTwice, {Platform::FromUtf8(name)}));
        return true;
    }
    [[noreturn]] void Fail(const pugi::xml_node& node, CStringView reason) const {
        for (pugi::xml_node item = node; item; item = item.parent())
            if (std::string_view(item.name()) == "item")
                throw CatalogueError{source.ProblemAtItem(item, reason)};
        throw CatalogueError{source.ProblemAt(node, reason)};
    }

    const XmlSource& source;
};

XmlSource::XmlSource(CString name, std::string utf8)
    : m_name(std::move(name)), m_utf8(std::move(utf8)) {
    CheckReferences();
    CheckMarkup();
    Parse();
    SourceCheck check(*this);
    m_document.traverse(check);
    CheckTopLevel();
}

// It is not asked whether a reference stands in a comment, where it means nothing.
void XmlSource::CheckReferences() {
    for (std::size_t at = m_utf8.find("&#"); at != std::string::npos;
         at = m_utf8.find("&#", at + 2)) {
        const std::size_t end = m_utf8.find_first_of(";&<\"'", at + 2);
        if (end == std::string::npos || m_utf8[end] != ';')
            continue;
        const std::string_view text = std::string_view(m_utf8).substr(at, end + 1 - at);
        const Reference reference = Classify(text.substr(2, text.size() - 3));
        m_hasForeign = m_hasForeign || reference == Reference::Foreign;
        if (reference == Reference::Unreadable)
            FailAt(at, CatalogueText(CatalogueMessage::BadReference, {Platform::FromUtf8(text)}));
    }
}

// The parser takes everything up to the next quote for a value, also whole elements.
void XmlSource::CheckMarkup() const {
    for (std::size_t at = m_utf8.find('<'); at != std::string::npos; at = m_utf8.find('<', at))
        at = EndOfMarkup(at);
}

// Behind what begins with the "<" at `start`; the end of the text where its own is missing,
// which the parser tells.
std::size_t XmlSource::EndOfMarkup(std::size_t start) const {
    constexpr std::pair<std::string_view, std::string_view> kKinds[] = {
        {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    const std::string_view markup = std::string_view(m_utf8).substr(start);
    for (const auto& [begin, end] : kKinds)
        if (markup.starts_with(begin))
            return std::min(m_utf8.find(end, start + begin.size()), m_utf8.size());
    if (markup.starts_with("<!DOCTYPE"))
        FailAt(start, CatalogueText(CatalogueMessage::HasDoctype));
    return EndOfTag(start);
}

std::size_t XmlSource::EndOfTag(std::size_t start) const {
    std::size_t at = start + 1;
    while ((at = std::min(m_utf8.find_first_of("<>\"'", at), m_utf8.size())) < m_utf8.size()) {
        const char mark = m_utf8[at];
        if (mark == '>')
            return at;
        const std::size_t end = mark == '<' ? at : m_utf8.find_first_of({mark, '<'}, at + 1);
        if (end == std::string::npos)
            return m_utf8.size();
        if (m_utf8[end] == '<')
            FailAt(end, CatalogueText(CatalogueMessage::NotWellFormed));
        at = end + 1;
    }
    return at;
}

void XmlSource::Parse() {
    const pugi::xml_parse_result result =
        m_document.load_buffer(m_utf8.data(), m_utf8.size(), kParse, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc();
    if (result)
        return;
    const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
    const bool isAtEnd = offset + 1 >= m_utf8.size();
    FailAt(offset,
           CatalogueText(isAtEnd ? CatalogueMessage::EndsEarly : CatalogueMessage::NotWellFormed));
}

void XmlSource::CheckTopLevel() const {
    bool hasRoot = false;
    for (const pugi::xml_node& node : m_document) {
        const bool isElement = node.type() == pugi::node_element;
        const bool isText = node.type() == pugi::node_cdata || node.type() == pugi::node_pcdata;
        if ((isElement && hasRoot) || (isText && !IsBlankText(node)))
            throw CatalogueError{ProblemAt(node, CatalogueText(CatalogueMessage::BesideRoot))};
        hasRoot = hasRoot || isElement;
    }
    if (!hasRoot)
        FailAt(0, CatalogueText(CatalogueMessage::NotWellFormed));
}

pugi::xml_node XmlSource::Root(const char* name) const {
    const pugi::xml_node root = m_document.document_element();
    if (std::string_view(root.name()) != name)
        throw CatalogueError{ProblemAt(
            root, CatalogueText(CatalogueMessage::WrongRoot,
                                {Platform::FromUtf8(root.name()), Platform::FromUtf8(name)}))};
    return root;
}

std::int64_t XmlSource::LineOf(const pugi::xml_node& node) const {
    return LineAt(static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0)));
}

CString XmlSource::ProblemAt(const pugi::xml_node& node, CStringView reason) const {
    return CatalogueText(CatalogueMessage::AtLine,
                         {m_name, Platform::ToText(LineOf(node)), reason});
}

CString XmlSource::ProblemAtItem(const pugi::xml_node& item, CStringView reason) const {
    return CatalogueText(CatalogueMessage::AtItem,
                         {m_name, Platform::ToText(LineOf(item)),
                          Platform::FromUtf8(item.attribute("name").value()),
                          Platform::FromUtf8(item.attribute("guid").value()), reason});
}

void XmlSource::FailAt(std::size_t offset, CStringView reason) const {
    throw CatalogueError{CatalogueText(CatalogueMessage::AtLine,
                                       {m_name, Platform::ToText(LineAt(offset)), reason})};
}

std::int64_t XmlSource::LineAt(std::size_t offset) const {
    const auto end = m_utf8.begin() + static_cast<std::ptrdiff_t>(std::min(offset, m_utf8.size()));
    return std::count(m_utf8.begin(), end, '\n') + 1;
}

} // namespace ZEBGis::Data
