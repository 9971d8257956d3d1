// SPDX-License-Identifier: MIT
// An XML text that is read and can be changed in places: what is not changed keeps every byte.
#pragma once

#include "platform/text/Text.h"

#include <pugixml.hpp>
#include <string>

namespace ZEBGis {

// What is wrong with a text, and where.  Thrown inside this module only.
struct XmlFault {
    int line = 0; // counted from 1; 0: the text as a whole
    CString item; // the id of the item that is meant; may be empty
    CString reason;
};

class XmlSource {
public:
    // Throws XmlFault when the text is not one element, with at most comments and processing
    // instructions around it, or has anything that FindXmlTextFault finds.
    explicit XmlSource(std::string utf8);

    const std::string& Utf8() const { return m_utf8; }
    pugi::xml_node Root() const { return m_document.document_element(); }

    // Where an element begins, and its end: one behind its last ">".
    std::size_t BeginOf(pugi::xml_node element) const;
    std::size_t EndOf(pugi::xml_node element) const;
    int LineAt(std::size_t offset) const;
    int LineOf(pugi::xml_node element) const { return LineAt(BeginOf(element)); }

private:
    void CheckAroundRoot() const;

    std::string m_utf8;
    pugi::xml_document m_document;
};

// The value of an attribute; the empty text when the element has none of that name.
CString TextOf(pugi::xml_node element, const char* attribute);

// Gives the element that `element` is the text of an attribute, or the one that it has another
// value; the rest keeps every byte.  The text must be well-formed.
void SetAttribute(std::string& element, std::string_view name, CStringView value);

} // namespace ZEBGis
