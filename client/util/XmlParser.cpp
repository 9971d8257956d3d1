// SPDX-License-Identifier: MIT
#include "client/util/XmlParser.h"

#include "client/util/XmlText.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"

#include <algorithm>

namespace Repository {
namespace {

CString Offset(std::size_t position) {
    return Platform::ToText(static_cast<std::int64_t>(position));
}

std::uint32_t Saturated(std::size_t length, unsigned bits) {
    return static_cast<std::uint32_t>(std::min<std::size_t>(length, (1u << bits) - 1));
}

} // namespace

XmlParser::XmlParser(CStringView text, XmlElementTable& table, bool ignoreCase)
    : m_text(text), m_table(table), m_ignoreCase(ignoreCase) {}

CString XmlParser::Parse() {
    std::size_t position = FindCharacter(m_text, u'<', 0);
    while (position < m_text.size())
        position = FindCharacter(m_text, u'<', ParseMarkup(position));
    while (m_innermost != 0)
        CloseNotEnded(m_text.size());
    m_table[0].length = static_cast<std::uint32_t>(m_text.size());
    return m_problem;
}

// The first problem is the one reported.
void XmlParser::Problem(CStringView pattern, std::initializer_list<CStringView> values) {
    if (m_problem.empty())
        m_problem = Platform::Fill(pattern, values);
}

std::size_t XmlParser::ParseMarkup(std::size_t position) {
    if (position + 1 == m_text.size())
        return SkipBehind(u">", position + 1, position, u"Element tag");
    const char16_t next = m_text[position + 1];
    if (IsXmlNameStart(next))
        return ParseStartTag(position);
    if (next == u'/')
        return ParseEndTag(position);
    if (next == u'!')
        return ParseDeclaration(position);
    if (next == u'?')
        return SkipBehind(u"?>", position + 2, position, u"Processing instruction");
    Problem(u"Incorrect %s at offset %s", {u"tag name character", Offset(position + 1)});
    return position + 1;
}

std::size_t XmlParser::SkipBehind(CStringView end, std::size_t from, std::size_t position,
                                  CStringView what) {
    const std::size_t found = m_text.find(end, from);
    if (found != m_text.npos)
        return found + end.size();
    Problem(u"%s at offset %s unterminated", {what, Offset(position)});
    return m_text.size();
}

std::size_t XmlParser::ParseDeclaration(std::size_t position) {
    const CStringView rest = m_text.substr(position + 2);
    if (rest.starts_with(u"--"))
        return SkipBehind(u"-->", position + 4, position, u"Comment");
    if (rest.starts_with(u"[CDATA["))
        return SkipBehind(u"]]>", position + 9, position, u"CDATA Section");
    if (rest.starts_with(u'D'))
        return SkipBehind(u">", position + 3, position, u"Doctype");
    const bool isComment = rest.starts_with(u'-');
    Problem(u"Incorrect %s at offset %s",
            {isComment ? u"comment tag" : u"! tag", Offset(position)});
    return position + 2;
}

// An element whose start tag does not end is not entered: a record that was cut must not
// pass for a whole one.
std::size_t XmlParser::ParseStartTag(std::size_t position) {
    const std::size_t end = XmlTagReader(m_text, position + 1).FindEnd();
    if (end == m_text.npos) {
        Problem(u"%s at offset %s unterminated", {u"Element tag", Offset(position)});
        return m_text.size();
    }
    Open(position, end + 1);
    // Also behind a value without quotes, which keeps the "/" as its own last character.
    if (m_text[end - 1] == u'/') {
        m_table[m_innermost].flags = XmlElement::kNoEndTag;
        Close(end + 1);
    }
    return end + 1;
}

std::size_t XmlParser::ParseEndTag(std::size_t position) {
    const std::size_t end = m_text.find(u'>', position + 2);
    if (end == m_text.npos) {
        Problem(u"%s at offset %s unterminated", {u"Element end tag", Offset(position)});
        return m_text.size();
    }
    const CStringView name = XmlNameAt(m_text.substr(0, end), position + 2);
    if (!IsInnermost(name)) {
        if (!IsOpen(name)) {
            Problem(u"No start tag for end tag '%s' at offset %s", {name, Offset(position)});
            return end + 1;
        }
        Problem(u"End tag '%s' at offset %s does not match start tag '%s' at offset %s",
                {name, Offset(position), NameOf(m_innermost), Offset(m_table[m_innermost].offset)});
        while (!IsInnermost(name))
            CloseNotEnded(position);
    }
    m_table[m_innermost].endTagLength = Saturated(end + 1 - position, 10);
    Close(end + 1);
    return end + 1;
}

void XmlParser::Open(std::size_t position, std::size_t end) {
    XmlElement element{};
    element.offset = static_cast<std::uint32_t>(position);
    element.startTagLength = Saturated(end - position, 22);
    element.parent = m_innermost;
    element.previousSibling = m_lastClosed;
    const std::uint32_t index = m_table.Add(element);
    if (m_lastClosed != 0)
        m_table[m_lastClosed].nextSibling = index;
    else
        m_table[m_innermost].firstChild = index;
    m_innermost = index;
    m_lastClosed = 0;
    if (m_openNames)
        ++(*m_openNames)[KeyOf(NameOf(index))];
}

void XmlParser::Close(std::size_t end) {
    if (m_openNames)
        --(*m_openNames)[KeyOf(NameOf(m_innermost))];
    XmlElement& element = m_table[m_innermost];
    element.length = static_cast<std::uint32_t>(end) - element.offset;
    m_lastClosed = m_innermost;
    m_innermost = element.parent;
}

void XmlParser::CloseNotEnded(std::size_t end) {
    XmlElement& element = m_table[m_innermost];
    Problem(u"Element '%s' at offset %s not ended", {NameOf(m_innermost), Offset(element.offset)});
    element.flags |= XmlElement::kNotEnded;
    Close(end);
}

CStringView XmlParser::NameOf(std::uint32_t element) const {
    return XmlNameAt(m_text, m_table[element].offset + std::size_t{1});
}

// Looks at no more of the start tag than `name` is long, and folds no more than the start
// tag's name is long: see IsOpen.
bool XmlParser::IsInnermost(CStringView name) const {
    const std::size_t begin = m_table[m_innermost].offset + std::size_t{1};
    if (m_innermost == 0 || !EndsXmlName(m_text[begin + name.size()]))
        return false;
    const CStringView own = m_text.substr(begin, name.size());
    if (m_ignoreCase && XmlNameAt(own, 0).size() != name.size())
        return false;
    return SameXmlName(own, name, m_ignoreCase);
}

// Looking at every open element for every end tag that matches none would take a hostile
// text hours, so the open names are counted from the first such end tag on.
bool XmlParser::IsOpen(CStringView name) {
    if (!m_openNames) {
        m_openNames.emplace();
        for (std::uint32_t open = m_innermost; open != 0; open = m_table[open].parent)
            ++(*m_openNames)[KeyOf(NameOf(open))];
    }
    const auto found = m_openNames->find(KeyOf(name));
    return found != m_openNames->end() && found->second > 0;
}

CString XmlParser::KeyOf(CStringView name) const {
    return m_ignoreCase ? Platform::FoldCase(name) : CString(name);
}

} // namespace Repository
