// SPDX-License-Identifier: MIT
// An XML text that was read: well-formed as far as it matters, without what could be lost
// silently, and each part with its place for messages.
#pragma once

#include "CatalogueMessages.h"

#include <string>

#include <pugixml.hpp>

namespace ZEBGis::Data {

class XmlSource {
public:
    // `name` is what messages call the text, a path for instance; empty: the text of an item,
    // which comes by the thousand and needs its name only where something is wrong.  Throws
    // CatalogueError: a text that is no XML or ends in the middle, a document type declaration, an
    // attribute twice in one element, a "<" in one (a quote is missing, mostly), a reference to
    // what is no character of XML, anything but comments and instructions beside the one outermost
    // element, elements nested very deep.
    XmlSource(CString name, std::string utf8);

    // The outermost element; throws CatalogueError when its name is another.
    pugi::xml_node Root(const char* name) const;
    // Everything on the top level, the outermost element among it.
    const pugi::xml_document& Document() const { return m_document; }

    std::int64_t LineOf(const pugi::xml_node& node) const;
    // "source, line, reason".
    CString ProblemAt(const pugi::xml_node& node, CStringView reason) const;
    // "source, line, item, GUID, reason".
    CString ProblemAtItem(const pugi::xml_node& item, CStringView reason) const;

private:
    friend struct SourceCheck;
    [[noreturn]] void FailAt(std::size_t offset, CStringView reason) const;
    void CheckText();
    void Parse();
    void CheckTopLevel() const;

    CString Name() const;

    CString m_name;
    std::string m_utf8;
    bool m_hasForeign = false; // a reference to what is no character of XML
    pugi::xml_document m_document;
};

} // namespace ZEBGis::Data
