// SPDX-License-Identifier: MIT
#include "CatalogItemContent.h"
#include "CatalogueXml.h"

#include "ZEBXGisCore/XmlFile.h"

#include <algorithm>

namespace ZEBGis::Data {
namespace {

constexpr const char16_t* kYes = u"yes";
constexpr const char16_t* kNo = u"no";

CString OfItem(CStringView name, CStringView guid, CStringView reason) {
    return CatalogueText(CatalogueMessage::OfItem, {name, guid, reason});
}

bool HasText(const XmlNodes& nodes) {
    return std::ranges::any_of(nodes, &XmlNode::IsText);
}

bool HasText(const CatalogBranch& branch) {
    return std::ranges::any_of(branch.Notes(), [](const auto& note) { return note.node.IsText(); });
}

bool HasText(const std::vector<std::variant<ItemProperty, XmlNode>>& pieces) {
    return std::ranges::any_of(pieces, [](const auto& piece) {
        const auto* node = std::get_if<XmlNode>(&piece);
        return node && node->IsText();
    });
}

void WriteProperty(XmlWriter& writer, const ItemProperty& property, const XmlLayout& layout) {
    writer.Markup(u"<property");
    writer.Attribute(u"name", property.name);
    if (!property.type.empty())
        writer.Attribute(u"type", property.type);
    if (property.type != u"null" || !property.value.empty())
        writer.Attribute(u"value", property.value);
    if (property.extras)
        writer.Attributes(property.extras->attributes);
    if (!property.extras || property.extras->nodes.empty())
        return writer.Markup(u"/>");
    writer.Markup(u">");
    const auto below = layout.Below(HasText(property.extras->nodes));
    for (const XmlNode& node : property.extras->nodes) {
        below.Break(writer);
        writer.Node(node);
    }
    if (below.hasLines)
        layout.Break(writer);
    writer.Markup(u"</property>");
}

} // namespace

void CatalogueXml::WriteItem(XmlWriter& writer, const CCatalogItem& item, CStringView parentGuid,
                             const XmlLayout& layout) {
    const CCatalogItem::Content& content = *item.m_content;
    writer.Markup(u"<item");
    writer.Attribute(u"guid", content.guid);
    writer.Attribute(u"name", content.name);
    writer.Attribute(u"group", content.isGroup ? kYes : kNo);
    if (!parentGuid.empty())
        writer.Attribute(u"parent", parentGuid);
    writer.Attributes(content.attributes);
    if (content.pieces.empty() && content.branch.Items().empty() && content.branch.Notes().empty())
        return writer.Markup(u"/>");
    writer.Markup(u">");
    const XmlLayout below = layout.Below(HasText(content.pieces) || HasText(content.branch));
    for (const auto& piece : content.pieces) {
        below.Break(writer);
        if (const auto* property = std::get_if<ItemProperty>(&piece))
            WriteProperty(writer, *property, below);
        else
            writer.Node(std::get<XmlNode>(piece));
    }
    WriteBranch(writer, content.branch, content.guid, below);
    if (below.hasLines)
        layout.Break(writer);
    writer.Markup(u"</item>");
}

void CatalogueXml::WriteBranch(XmlWriter& writer, const CatalogBranch& branch, CStringView guid,
                               const XmlLayout& layout) {
    auto note = branch.Notes().begin();
    const auto writeNote = [&] {
        layout.Break(writer);
        writer.Node(note++->node);
    };
    for (const auto& [key, item] : branch.Items()) {
        while (note != branch.Notes().end() && note->key <= key)
            writeNote();
        layout.Break(writer);
        WriteItem(writer, *item, guid, layout);
    }
    while (note != branch.Notes().end())
        writeNote();
}

CString CatalogueXml::TextOf(const CCatalogItem& item) {
    XmlWriter writer(XmlLetters::OfCodePage);
    WriteItem(writer, item, item.m_content->parentGuid, {});
    return writer.Take();
}

CString CatalogueXml::TextOf(const CCatalog& catalog, CStringView reference) {
    const CCatalog::Content& content = *catalog.m_content;
    XmlWriter writer(XmlLetters::All);
    writer.Markup(u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    for (const XmlNode& node : content.before) {
        writer.Node(node);
        writer.Markup(u"\n");
    }
    writer.Markup(u"<catalogue");
    writer.Attribute(u"reference", reference);
    writer.Attributes(content.attributes);
    writer.Markup(u">");
    const XmlLayout layout{true, 0};
    const XmlLayout below = layout.Below(HasText(content.branch));
    WriteBranch(writer, content.branch, {}, below);
    if (below.hasLines)
        layout.Break(writer);
    writer.Markup(u"</catalogue>\n");
    for (const XmlNode& node : content.behind) {
        writer.Node(node);
        writer.Markup(u"\n");
    }
    return writer.Take();
}

CString CatalogueXml::ProblemOf(const CCatalogItem& item) {
    const CCatalogItem::Content& content = *item.m_content;
    if (content.guid.empty())
        return CatalogueText(CatalogueMessage::NoGuid);
    for (const CString* text : {&content.guid, &content.name})
        if (CString problem = TextProblem(*text); !problem.empty())
            return problem;
    for (const auto& piece : content.pieces)
        if (const auto* property = std::get_if<ItemProperty>(&piece))
            for (const CString* text : {&property->name, &property->type, &property->value})
                if (CString problem = TextProblem(*text); !problem.empty())
                    return problem;
    return {};
}

CString CatalogueXml::ProblemOf(const CCatalog& catalog) {
    for (const auto& [guid, item] : catalog.m_content->index)
        if (const CString problem = ProblemOf(*item); !problem.empty())
            return OfItem(item->m_content->name, guid, problem);
    return {};
}

} // namespace ZEBGis::Data
