// SPDX-License-Identifier: MIT
#include "XmlNode.h"

#include "platform/text/Utf8.h"

#include <algorithm>

namespace ZEBGis::Data {
namespace {

XmlNode::Kind KindOf(pugi::xml_node_type type) {
    switch (type) {
    case pugi::node_element:
        return XmlNode::Kind::Element;
    case pugi::node_cdata:
        return XmlNode::Kind::CData;
    case pugi::node_comment:
        return XmlNode::Kind::Comment;
    case pugi::node_pi:
        return XmlNode::Kind::Instruction;
    default:
        return XmlNode::Kind::Text;
    }
}

bool IsText(const pugi::xml_node& node) {
    return node.type() == pugi::node_cdata ||
           (node.type() == pugi::node_pcdata && !IsBlankText(node));
}

} // namespace

XmlNode ToXmlNode(const pugi::xml_node& node) {
    XmlNode result;
    result.kind = KindOf(node.type());
    result.name = Platform::FromUtf8(node.name());
    result.value = Platform::FromUtf8(node.value());
    for (const pugi::xml_attribute& attribute : node.attributes())
        result.attributes.push_back(
            {Platform::FromUtf8(attribute.name()), Platform::FromUtf8(attribute.value())});
    for (const pugi::xml_node& child : node.children())
        result.children.push_back(ToXmlNode(child));
    return result;
}

bool IsBlankText(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata &&
           std::string_view(node.value()).find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::vector<pugi::xml_node> NodesOf(const pugi::xml_node& parent) {
    std::vector<pugi::xml_node> nodes(parent.begin(), parent.end());
    if (std::ranges::none_of(nodes, IsText))
        std::erase_if(nodes, IsBlankText);
    return nodes;
}

} // namespace ZEBGis::Data
