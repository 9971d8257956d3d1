// SPDX-License-Identifier: MIT
#include "XmlSource.h"

#include "Texts.h"
#include "ZEBXGisCore/XmlFile.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <utility>

namespace ZEBGis {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::size_t Behind(std::string_view text, std::string_view mark, std::size_t from) {
    const auto found = text.find(mark, from);
    return found == std::string_view::npos ? text.size() : found + mark.size();
}

// Behind the ">" of the tag that begins at `begin`; one in a value does not end it.
std::size_t EndOfTag(std::string_view text, std::size_t begin) {
    for (std::size_t i = begin; i < text.size(); ++i) {
        if (text[i] == '>')
            return i + 1;
        if (text[i] == '"' || text[i] == '\'')
            i = Behind(text, text.substr(i, 1), i + 1) - 1;
    }
    return text.size();
}

// Behind what begins at `begin` and is no tag; `begin` itself for a tag.
std::size_t EndOfNoTag(std::string_view text, std::size_t begin) {
    const std::string_view rest = text.substr(begin);
    if (rest.starts_with("<!--"))
        return Behind(text, "-->", begin + 4);
    if (rest.starts_with("<![CDATA["))
        return Behind(text, "]]>", begin);
    return rest.starts_with("<?") ? Behind(text, "?>", begin) : begin;
}

std::size_t EndOfElement(std::string_view text, std::size_t begin) {
    int depth = 0;
    for (std::size_t i = begin; i < text.size(); i = text.find('<', i)) {
        const std::size_t behind = EndOfNoTag(text, i);
        if (behind != i) {
            i = behind;
            continue;
        }
        const std::size_t end = EndOfTag(text, i);
        if (text[i + 1] == '/')
            --depth;
        else if (text[end - 2] != '/')
            ++depth;
        i = end;
        if (depth == 0)
            return i;
    }
    return text.size();
}

std::string Escaped(CStringView value) {
    std::string escaped;
    for (const char c : Platform::ToUtf8(value)) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        // Readers turn these into blanks where they stand as they are.
        case '\t':
            escaped += "&#9;";
            break;
        case '\n':
            escaped += "&#10;";
            break;
        case '\r':
            escaped += "&#13;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

// Where the attribute's value stands in the start tag, its quotes included; first and second
// are equal, behind the element's name, when there is none.
std::pair<std::size_t, std::size_t> FindValue(std::string_view element, std::string_view name) {
    const std::size_t behindName = std::min(element.find_first_of(" \t\r\n/>"), element.size());
    for (std::size_t i = behindName;;) {
        i = element.find_first_not_of(kBlanks, i);
        if (i == std::string_view::npos || element[i] == '>' || element[i] == '/')
            return {behindName, behindName};
        const std::size_t nameEnd = element.find_first_of(" \t\r\n=", i);
        const std::size_t open = element.find_first_of("\"'", nameEnd);
        if (open == std::string_view::npos)
            return {behindName, behindName};
        const std::size_t close = Behind(element, element.substr(open, 1), open + 1);
        if (element.substr(i, nameEnd - i) == name)
            return {open, close};
        i = close;
    }
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

Message ReasonOf(pugi::xml_parse_status status) {
    switch (status) {
    case pugi::status_no_document_element:
        return Message::NoElement;
    case pugi::status_end_element_mismatch:
    case pugi::status_bad_end_element:
        return Message::TagsDoNotMatch;
    default:
        return Message::NotXml;
    }
}

} // namespace

XmlSource::XmlSource(std::string utf8) : m_utf8(std::move(utf8)) {
    const CString problem = TextProblem(Platform::FromUtf8(m_utf8));
    if (!problem.empty())
        throw XmlFault{0, {}, problem};
    if (const auto fault = FindXmlTextFault(m_utf8))
        throw XmlFault{LineAt(fault->offset), {}, fault->reason};
    // Texts outside the root are read so that they are found, not passed over.
    const auto result =
        m_document.load_buffer(m_utf8.data(), m_utf8.size(),
                               pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
    if (!result)
        throw XmlFault{
            LineAt(static_cast<std::size_t>(result.offset)), {}, Text(ReasonOf(result.status))};
    CheckAroundRoot();
}

void XmlSource::CheckAroundRoot() const {
    const pugi::xml_node root = Root();
    if (!root)
        throw XmlFault{0, {}, Text(Message::NoElement)};
    for (const pugi::xml_node node : m_document.children()) {
        const bool isText = node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
        if ((isText && !IsBlank(node.value())) ||
            (node.type() == pugi::node_element && node != root))
            throw XmlFault{0, {}, Text(Message::MoreThanOneElement)};
    }
}

std::size_t XmlSource::BeginOf(pugi::xml_node element) const {
    return static_cast<std::size_t>(element.offset_debug()) - 1; // it tells where the name begins
}

std::size_t XmlSource::EndOf(pugi::xml_node element) const {
    return EndOfElement(m_utf8, BeginOf(element));
}

int XmlSource::LineAt(std::size_t offset) const {
    return static_cast<int>(XmlLineAt(m_utf8, offset));
}

CString TextOf(pugi::xml_node element, const char* attribute) {
    return Platform::FromUtf8(element.attribute(attribute).value());
}

void SetAttribute(std::string& element, std::string_view name, CStringView value) {
    const std::string quoted = '"' + Escaped(value) + '"';
    const auto [begin, end] = FindValue(element, name);
    if (begin == end)
        element.insert(begin, ' ' + std::string(name) + '=' + quoted);
    else
        element.replace(begin, end - begin, quoted);
}

} // namespace ZEBGis
