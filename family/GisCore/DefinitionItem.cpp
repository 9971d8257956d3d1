// SPDX-License-Identifier: MIT
#include "DefinitionItem.h"

#include "XmlSource.h"

#include "platform/text/Numbers.h"
#include "platform/text/Trim.h"
#include "platform/text/Utf8.h"

namespace ZEBGis {
namespace {

constexpr const char* kEmptyElement =
    R"(<definition id="" name="" entityType="0" topologyFunction="-1" topologyType="0"/>)";

void Update(std::string& xml, const pugi::xml_node& element, const char* attribute,
            const CString& value) {
    if (TextOf(element, attribute) != value)
        SetAttribute(xml, attribute, value);
}

// A missing attribute stands for `missing`, and a number may be written in several ways.
void Update(std::string& xml, const pugi::xml_node& element, const char* attribute,
            std::int32_t missing, std::int32_t value) {
    const bool isThere = !element.attribute(attribute).empty();
    const std::int32_t written =
        isThere ? Platform::ToInteger(TextOf(element, attribute)) : missing;
    if (written != value)
        SetAttribute(xml, attribute, Platform::ToText(value));
}

CString ElementXml(const CRepositoryItem& item, std::string xml) {
    const XmlSource source(xml);
    const pugi::xml_node element = source.Root();
    Update(xml, element, "id", item.GetId());
    Update(xml, element, "name", item.GetName());
    Update(xml, element, "entityType", 0, item.GetEntityType());
    Update(xml, element, "topologyFunction", -1, item.GetTopologyFunction());
    Update(xml, element, "topologyType", 0, item.GetTopologyType());
    return Platform::FromUtf8(xml);
}

bool IsOrAny(std::string_view wanted, const char* name) {
    return wanted.empty() || wanted == name;
}

// Looks at every element below the definition and at the definition's own attributes.
struct Reference : pugi::xml_tree_walker {
    std::string what;
    CString id;
    bool found = false;

    bool IsId(const char* value) const {
        return Platform::Trim(Platform::FromUtf8(value)) == CStringView(id);
    }
    void LookAtAttributes(const pugi::xml_node& element, bool isDefinition) {
        for (const pugi::xml_attribute attribute : element.attributes()) {
            const std::string_view name = attribute.name();
            const bool isOwn = isDefinition && (name == "id" || name == "name");
            found |= !isOwn && IsOrAny(what, attribute.name()) && IsId(attribute.value());
        }
    }
    bool for_each(pugi::xml_node& node) override {
        if (node.type() == pugi::node_element) {
            LookAtAttributes(node, false);
            found |= IsOrAny(what, node.name()) && IsId(node.child_value());
        }
        return !found;
    }
};

} // namespace

CDefinitionItem::CDefinitionItem(const CRepositoryItem& item)
    : CRepositoryItem(item), m_xml(Platform::ToUtf8(item.GetXML())) {}

void CDefinitionItem::GetXML(WStringStream& stream) const {
    stream << GetXML();
}

CString CDefinitionItem::GetXML() const try {
    return ElementXml(*this, m_xml.empty() ? std::string(kEmptyElement) : m_xml);
} catch (...) {
    return {};
}

CString CDefinitionItem::GetWsDescription() const try {
    const CString name = GetName();
    const CString id = GetId();
    if (name.empty() || id.empty())
        return name + id;
    return name + u" (" + id + u")";
} catch (...) {
    return {};
}

std::int32_t CDefinitionItem::DependsOn(const char16_t* what, const CRepositoryItem* item) const
    try {
    if (!item || item->GetId().empty() || m_xml.empty())
        return 0;
    const XmlSource source(m_xml);
    Reference reference;
    reference.what = Platform::ToUtf8(Platform::TextOf(what));
    reference.id = item->GetId();
    reference.LookAtAttributes(source.Root(), true);
    source.Root().traverse(reference);
    return reference.found ? 1 : 0;
} catch (...) {
    return 0;
}

} // namespace ZEBGis
