// SPDX-License-Identifier: MIT
#include "client/util/XmlDocument.h"

#include "client/util/XmlParser.h"
#include "client/util/XmlText.h"

#include <limits>

namespace Repository {

void XmlDocument::SetText(const char16_t* text) {
    m_text = Platform::TextOf(text);
    if (m_text.size() > std::numeric_limits<std::uint32_t>::max())
        m_text.clear();
    m_current = 0;
    m_elements.Reset(m_text.size() / 64 + 8);
    m_resultText = XmlParser(m_text, m_elements, IgnoresCase()).Parse();
    if (!m_resultText.empty())
        return; // the first problem is the one reported
    const std::uint32_t root = m_elements[0].firstChild;
    if (m_text.empty())
        m_resultText = u"Empty document";
    else if (root == 0)
        m_resultText = u"No root element";
    else if (m_elements[root].nextSibling != 0)
        m_resultText = u"Root element has sibling";
}

int XmlDocument::FindElement(const char16_t* name) {
    const CStringView asked = Platform::TextOf(name);
    std::uint32_t candidate =
        m_current != 0 ? m_elements[m_current].nextSibling : m_elements[0].firstChild;
    for (; candidate != 0; candidate = m_elements[candidate].nextSibling) {
        const XmlElement& element = m_elements[candidate];
        if (!asked.empty() && !XmlNameMatches(XmlNameAt(m_text, element.offset + std::size_t{1}),
                                              asked, IgnoresCase()))
            continue;
        m_current = candidate;
        return 1;
    }
    return 0;
}

CString XmlDocument::GetAttribute(const char16_t* name) const {
    if (m_current == 0)
        return {};
    const CStringView asked = Platform::TextOf(name);
    XmlTagReader tag(m_text, m_elements[m_current].offset + std::size_t{1});
    for (XmlAttribute attribute; tag.Next(attribute);)
        if (XmlNameMatches(attribute.name, asked, IgnoresCase()))
            return DecodeXmlText(attribute.value);
    return {};
}

} // namespace Repository
