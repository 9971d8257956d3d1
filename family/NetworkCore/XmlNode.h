// SPDX-License-Identifier: MIT
// What other tools put into a catalogue's XML, kept as it is: attributes, elements, comments,
// processing instructions and text that this library has no meaning for.
#pragma once

#include "platform/text/Text.h"

#include <vector>

#include <pugixml.hpp>

namespace ZEBGis::Data {

struct XmlAttribute {
    CString name;
    CString value;
};
using XmlAttributes = std::vector<XmlAttribute>;

struct XmlNode {
    enum class Kind { Element, Text, CData, Comment, Instruction };

    Kind kind = Kind::Text;
    CString name;
    CString value;
    XmlAttributes attributes;
    std::vector<XmlNode> children;

    bool IsText() const { return kind == Kind::Text || kind == Kind::CData; }
};
using XmlNodes = std::vector<XmlNode>;

// The node with all below it; no deeper than XmlSource lets pass.
XmlNode ToXmlNode(const pugi::xml_node& node);

// Whether the node is text of nothing but blanks and line breaks.
bool IsBlankText(const pugi::xml_node& node);

// The nodes below `parent` that count: all when text stands among them, else all but the
// blanks that only lay the text out.
std::vector<pugi::xml_node> NodesOf(const pugi::xml_node& parent);

} // namespace ZEBGis::Data
