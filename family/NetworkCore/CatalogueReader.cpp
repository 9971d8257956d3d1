// SPDX-License-Identifier: MIT
#include "CatalogItemContent.h"
#include "CatalogueXml.h"
#include "YesNo.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>
#include <string_view>

namespace ZEBGis::Data {
namespace {

using std::string_view;

bool IsElement(const pugi::xml_node& node, string_view name) {
    return node.type() == pugi::node_element && node.name() == name;
}

CString Attribute(const pugi::xml_node& node, const char* name) {
    return Platform::FromUtf8(node.attribute(name).value());
}

XmlAttributes OtherAttributes(const pugi::xml_node& node,
                              std::initializer_list<string_view> known) {
    XmlAttributes attributes;
    for (const pugi::xml_attribute& attribute : node.attributes())
        if (std::find(known.begin(), known.end(), attribute.name()) == known.end())
            attributes.push_back(
                {Platform::FromUtf8(attribute.name()), Platform::FromUtf8(attribute.value())});
    return attributes;
}

ItemProperty ReadProperty(const pugi::xml_node& node) {
    ItemProperty property;
    property.name = Attribute(node, "name");
    property.type = Attribute(node, "type");
    property.value = Attribute(node, "value");
    ItemProperty::Extras extras;
    extras.attributes = OtherAttributes(node, {"name", "type", "value"});
    for (const pugi::xml_node& child : NodesOf(node))
        extras.nodes.push_back(ToXmlNode(child));
    if (!extras.attributes.empty() || !extras.nodes.empty())
        property.extras = std::make_shared<const ItemProperty::Extras>(std::move(extras));
    return property;
}

bool IsAnyOf(const pugi::xml_node& node, std::initializer_list<pugi::xml_node_type> types) {
    return std::find(types.begin(), types.end(), node.type()) != types.end();
}

} // namespace

// Reads the elements of one text.
class CatalogueReader {
public:
    explicit CatalogueReader(const XmlSource& source) : m_source(source) {}

    // The item with all below it, added to `into` unless that is null.
    CatalogItemPtr Item(const pugi::xml_node& node, CatalogBranch* into, int level);
    void Catalogue(const pugi::xml_node& root, CCatalog& catalog);

private:
    [[noreturn]] void Fail(const pugi::xml_node& item, CStringView reason) const;
    [[noreturn]] void FailTooDeep(const pugi::xml_node& item) const;
    bool IsGroup(const pugi::xml_node& node) const;
    CatalogItemPtr Make(const pugi::xml_node& node);
    void CheckParent(const pugi::xml_node& node, CStringView holder) const;
    void ReadPieces(const pugi::xml_node& node, CCatalogItem::Content& content, int level);
    void Place(const CatalogItemPtr& item, const pugi::xml_node& node, CCatalog& catalog);

    const XmlSource& m_source;
    CatalogIndex m_items;                                   // of the whole text
    std::unordered_set<const CCatalogItem*> m_withoutGroup; // the attribute is missing
};

void CatalogueReader::Fail(const pugi::xml_node& item, CStringView reason) const {
    throw CatalogueError{m_source.ProblemAtItem(item, reason)};
}

void CatalogueReader::FailTooDeep(const pugi::xml_node& item) const {
    Fail(item, CatalogueText(CatalogueMessage::TooDeep, {Platform::ToText(kMostLevels)}));
}

void CatalogueReader::CheckParent(const pugi::xml_node& node, CStringView holder) const {
    const CString parent = Attribute(node, "parent");
    if (!parent.empty() && parent != holder)
        Fail(node, CatalogueText(CatalogueMessage::OtherParent, {parent}));
}

bool CatalogueReader::IsGroup(const pugi::xml_node& node) const {
    const pugi::xml_attribute attribute = node.attribute("group");
    if (!attribute)
        return !node.child("item").empty();
    const CString value = Platform::FromUtf8(attribute.value());
    const std::optional<bool> isGroup = YesOrNo(value);
    if (!isGroup)
        Fail(node, CatalogueText(CatalogueMessage::NeitherYesNorNo, {u"group", value}));
    return *isGroup;
}

CatalogItemPtr CatalogueReader::Make(const pugi::xml_node& node) {
    const CString guid = Attribute(node, "guid");
    if (guid.empty())
        Fail(node, CatalogueText(CatalogueMessage::NoGuid));
    auto item = boost::make_shared<CCatalogItem>(guid.c_str(), Attribute(node, "name").c_str(),
                                                 IsGroup(node));
    if (!m_items.emplace(guid, item).second)
        Fail(node, CatalogueText(CatalogueMessage::GuidTwice));
    if (!node.attribute("group"))
        m_withoutGroup.insert(item.get());
    CCatalogItem::Content& content = CatalogueXml::ContentOf(item);
    content.parentGuid = Attribute(node, "parent");
    content.attributes = OtherAttributes(node, {"guid", "name", "group", "parent"});
    return item;
}

CatalogItemPtr CatalogueReader::Item(const pugi::xml_node& node, CatalogBranch* into, int level) {
    if (level > kMostLevels)
        FailTooDeep(node);
    const CatalogItemPtr item = Make(node);
    // Before what it holds comes in, so that nothing is walked twice.
    if (into)
        into->Add(item);
    ReadPieces(node, CatalogueXml::ContentOf(item), level);
    return item;
}

// What other tools put before a property or an item stays before it.
void CatalogueReader::ReadPieces(const pugi::xml_node& node, CCatalogItem::Content& content,
                                 int level) {
    XmlNodes others;
    const auto flushToPieces = [&] {
        for (XmlNode& other : others)
            content.pieces.emplace_back(std::move(other));
        others.clear();
    };
    const auto flushToBranch = [&] {
        for (XmlNode& other : others)
            content.branch.Notes().push_back({content.branch.NextKey(), std::move(other)});
        others.clear();
    };
    for (const pugi::xml_node& child : NodesOf(node)) {
        if (IsElement(child, "property")) {
            flushToPieces();
            content.pieces.emplace_back(ReadProperty(child));
        } else if (IsElement(child, "item")) {
            flushToBranch();
            CheckParent(child, content.guid);
            Item(child, &content.branch, level + 1);
        } else {
            others.push_back(ToXmlNode(child));
        }
    }
    if (content.branch.Items().empty())
        flushToPieces();
    else
        flushToBranch();
}

// Under the item that it names as its parent, wherever that one stands in the text.
void CatalogueReader::Place(const CatalogItemPtr& item, const pugi::xml_node& node,
                            CCatalog& catalog) {
    const CString parent = item->GetParentItemGuid();
    if (parent.empty()) {
        CatalogueXml::ContentOf(catalog).branch.Add(item);
        return;
    }
    const auto holder = m_items.find(parent);
    if (holder == m_items.end())
        Fail(node, CatalogueText(CatalogueMessage::ParentMissing, {parent}));
    CCatalogItem::Content& content = CatalogueXml::ContentOf(holder->second);
    if (content.branch.IsBelow(*item))
        Fail(node, CatalogueText(CatalogueMessage::ParentsLoop, {parent}));
    if (!content.branch.Add(item))
        FailTooDeep(node);
    if (m_withoutGroup.contains(holder->second.get()))
        content.isGroup = true;
}

void CatalogueReader::Catalogue(const pugi::xml_node& root, CCatalog& catalog) {
    CCatalog::Content& content = CatalogueXml::ContentOf(catalog);
    content.attributes = OtherAttributes(root, {"reference"});
    std::vector<CatalogItemPtr> items;
    const std::vector<pugi::xml_node> nodes = NodesOf(root);
    for (const pugi::xml_node& node : nodes)
        if (IsElement(node, "item"))
            items.push_back(Item(node, nullptr, 1));
    auto next = items.begin();
    for (const pugi::xml_node& node : nodes) {
        if (IsElement(node, "item")) {
            Place(*next, node, catalog);
            ++next;
        } else {
            content.branch.Notes().push_back({content.branch.NextKey(), ToXmlNode(node)});
        }
    }
}

CatalogItemPtr CatalogueXml::ReadItem(const XmlSource& source) {
    return CatalogueReader(source).Item(source.Root("item"), nullptr, 1);
}

void CatalogueXml::ReadCatalogue(const XmlSource& source, CStringView reference,
                                 CCatalog& catalog) {
    const pugi::xml_node root = source.Root("catalogue");
    const CString named = Attribute(root, "reference");
    if (!named.empty() && named != reference)
        throw CatalogueError{
            source.ProblemAt(root, CatalogueText(CatalogueMessage::OtherCatalogue, {named}))};
    CatalogueReader(source).Catalogue(root, catalog);
    CCatalog::Content& content = ContentOf(catalog);
    bool isBefore = true;
    for (const pugi::xml_node& node : source.Document()) {
        if (IsAnyOf(node, {pugi::node_comment, pugi::node_pi}))
            (isBefore ? content.before : content.behind).push_back(ToXmlNode(node));
        isBefore = isBefore && node != root;
    }
}

} // namespace ZEBGis::Data
