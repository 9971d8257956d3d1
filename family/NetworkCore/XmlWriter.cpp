// SPDX-License-Identifier: MIT
#include "XmlWriter.h"

#include "platform/text/Numbers.h"
#include "platform/text/Surrogates.h"
#include "platform/text/Windows1250.h"

#include <algorithm>

namespace ZEBGis::Data {
namespace {

// A reader makes blanks of tabs and line breaks in attributes, and a line feed of a carriage
// return in text.
constexpr CStringView kAttributeMarks = u"&<\"\t\n\r";
constexpr CStringView kTextMarks = u"&<>\r";

bool IsOfCodePage(CStringView text) {
    return Platform::FromAnsi(Platform::ToAnsi(text)) == text;
}

bool IsAscii(CStringView text) {
    return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
}

CStringView NamedReference(std::int32_t codePoint) {
    switch (codePoint) {
    case '&':
        return u"&amp;";
    case '<':
        return u"&lt;";
    case '>':
        return u"&gt;";
    case '"':
        return u"&quot;";
    default:
        return {};
    }
}

} // namespace

void XmlLayout::Break(XmlWriter& writer) const {
    if (hasLines)
        writer.Break(level);
}

void XmlWriter::Break(int level) {
    m_text += u'\n';
    m_text.append(2 * static_cast<std::size_t>(level), u' ');
}

void XmlWriter::Attribute(CStringView name, CStringView value) {
    m_text += u' ';
    m_text += name;
    m_text += u"=\"";
    Escaped(value, kAttributeMarks);
    m_text += u'"';
}

void XmlWriter::Attributes(const XmlAttributes& attributes) {
    for (const XmlAttribute& attribute : attributes)
        Attribute(attribute.name, attribute.value);
}

void XmlWriter::Node(const XmlNode& node) {
    switch (node.kind) {
    case XmlNode::Kind::Element:
        return Element(node);
    case XmlNode::Kind::Text:
        return Escaped(node.value, kTextMarks);
    case XmlNode::Kind::CData:
        return CData(node.value);
    case XmlNode::Kind::Comment:
        return Markup(u"<!--" + node.value + u"-->");
    case XmlNode::Kind::Instruction:
        return Markup(u"<?" + node.name + (node.value.empty() ? u"" : u" ") + node.value + u"?>");
    }
}

void XmlWriter::Element(const XmlNode& node) {
    m_text += u'<';
    m_text += node.name;
    Attributes(node.attributes);
    if (node.children.empty())
        return Markup(u"/>");
    m_text += u'>';
    for (const XmlNode& child : node.children)
        Node(child);
    Markup(u"</" + node.name + u">");
}

void XmlWriter::CData(CStringView text) {
    // There are no references in a section; the same text outside one means the same.
    if (m_letters == XmlLetters::OfCodePage && !IsAscii(text) && !IsOfCodePage(text))
        return Escaped(text, kTextMarks);
    m_text += u"<![CDATA[";
    m_text += text;
    m_text += u"]]>";
}

void XmlWriter::Escaped(CStringView text, CStringView marks) {
    const bool isPlain = m_letters == XmlLetters::All || IsAscii(text) || IsOfCodePage(text);
    if (isPlain && text.find_first_of(marks) == CStringView::npos) {
        m_text += text;
        return;
    }
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const std::int32_t codePoint = Platform::NextCodePoint(text, position);
        const CStringView character = text.substr(start, position - start);
        // Half a character stays one, so that whoever reads it refuses it.
        const bool isReference =
            marks.find(character) != CStringView::npos ||
            (!isPlain && !Platform::IsSurrogate(codePoint) && !IsOfCodePage(character));
        if (isReference)
            Reference(codePoint);
        else
            m_text += character;
    }
}

void XmlWriter::Reference(std::int32_t codePoint) {
    const CStringView named = NamedReference(codePoint);
    m_text += named.empty() ? u"&#" + Platform::ToText(codePoint) + u";" : CString(named);
}

} // namespace ZEBGis::Data
