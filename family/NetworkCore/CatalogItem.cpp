// SPDX-License-Identifier: MIT
#include "CatalogItemContent.h"
#include "CatalogueXml.h"

#include <boost/make_shared.hpp>

namespace ZEBGis::Data {

CCatalogItem::CCatalogItem(const char16_t* guid, const char16_t* name, int isGroup)
    : m_content(std::make_unique<Content>(*this)) {
    m_content->guid = Platform::TextOf(guid);
    m_content->name = Platform::TextOf(name);
    m_content->isGroup = isGroup != 0;
}

CCatalogItem::CCatalogItem(const CCatalogItem& origin)
    : m_content(std::make_unique<Content>(*this)) {
    const Content& content = *origin.m_content;
    m_content->guid = content.guid;
    m_content->name = content.name;
    m_content->parentGuid = content.parentGuid;
    m_content->isGroup = content.isGroup;
    m_content->attributes = content.attributes;
    m_content->pieces = content.pieces;
    m_content->branch.Share(content.branch);
}

CCatalogItem::~CCatalogItem() = default;

CString CCatalogItem::GetGUID() const try { return m_content->guid; } catch (...) {
    return {};
}

CString CCatalogItem::GetName() const try { return m_content->name; } catch (...) {
    return {};
}

void CCatalogItem::SetName(const char16_t* name) try {
    m_content->name = Platform::TextOf(name);
} catch (...) {
}

int CCatalogItem::IsGroup() const {
    return m_content->isGroup ? 1 : 0;
}

CString CCatalogItem::GetParentItemGuid() const try { return m_content->parentGuid; } catch (...) {
    return {};
}

void CCatalogItem::SetParentItemGuid(const char16_t* guid) try {
    m_content->parentGuid = Platform::TextOf(guid);
} catch (...) {
}

void CCatalogItem::SetParentItem(const CatalogItemPtr& parent) {
    SetParentItemGuid(parent ? parent->m_content->guid.c_str() : nullptr);
}

const CatalogItems& CCatalogItem::GetSubItems() const {
    return m_content->branch.Items();
}

std::vector<CatalogItemPtr> CCatalogItem::GetSortedSubItems() const try {
    return m_content->branch.InOrder();
} catch (...) {
    return {};
}

int CCatalogItem::AddSubItem(const CatalogItemPtr& item) try {
    return m_content->branch.Add(item) ? 1 : 0;
} catch (...) {
    return 0;
}

int CCatalogItem::RemoveSubItem(std::int32_t key) {
    return m_content->branch.Remove(key) ? 1 : 0;
}

boost::shared_ptr<CPropertyEx> CCatalogItem::GetProperty(const char16_t* name) const try {
    for (const auto& piece : m_content->pieces)
        if (const auto* property = std::get_if<ItemProperty>(&piece))
            if (property->name == Platform::TextOf(name))
                return boost::make_shared<CPropertyEx>(name, property->GetValue());
    return {};
} catch (...) {
    return {};
}

std::vector<boost::shared_ptr<CPropertyEx>> CCatalogItem::GetProperties() const try {
    std::vector<boost::shared_ptr<CPropertyEx>> properties;
    for (const auto& piece : m_content->pieces)
        if (const auto* property = std::get_if<ItemProperty>(&piece))
            properties.push_back(
                boost::make_shared<CPropertyEx>(property->name.c_str(), property->GetValue()));
    return properties;
} catch (...) {
    return {};
}

void CCatalogItem::SetProperty(const char16_t* name, const CDataBox& value) try {
    for (auto& piece : m_content->pieces)
        if (auto* property = std::get_if<ItemProperty>(&piece))
            if (property->name == Platform::TextOf(name))
                return property->SetValue(value);
    ItemProperty property;
    property.name = Platform::TextOf(name);
    property.SetValue(value);
    m_content->pieces.emplace_back(std::move(property));
} catch (...) {
}

void CCatalogItem::GetXML(WStringStream& stream) const try {
    stream << CatalogueXml::TextOf(*this);
} catch (...) {
}

} // namespace ZEBGis::Data
