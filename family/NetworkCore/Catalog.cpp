// SPDX-License-Identifier: MIT
#include "CatalogContent.h"
#include "CatalogItemContent.h"

namespace ZEBGis::Data {

CCatalog::CCatalog() : m_content(std::make_unique<Content>()) {}
CCatalog::~CCatalog() = default;

CatalogItemPtr CCatalog::GetItembyGuid(const char16_t* guid) const try {
    const auto found = m_content->index.find(CString(Platform::TextOf(guid)));
    return found != m_content->index.end() ? found->second : CatalogItemPtr();
} catch (...) {
    return {};
}

std::size_t CCatalog::GetItemCount() const {
    return m_content->index.size();
}

const CatalogItems& CCatalog::GetRootElementsMap() const {
    return m_content->branch.Items();
}

std::vector<CatalogItemPtr> CCatalog::GetSortedRootElements() const try {
    return m_content->branch.InOrder();
} catch (...) {
    return {};
}

int CCatalog::AddItem(const CatalogItemPtr& item) try {
    return m_content->branch.Add(item) ? 1 : 0;
} catch (...) {
    return 0;
}

int CCatalog::DeleteItem(const char16_t* guid) {
    const CatalogItemPtr item = GetItembyGuid(guid);
    if (!item)
        return 0;
    const CCatalogItem::Content& content = *item->m_content;
    return content.place->Remove(content.key) ? 1 : 0;
}

} // namespace ZEBGis::Data
