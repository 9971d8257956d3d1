// SPDX-License-Identifier: MIT
// A catalogue in memory: a tree of items, each found by its GUID in constant time.
#pragma once

#include "ZEBXNetworkCore/CatalogItem.h"

namespace ZEBGis::Data {

class ZEBX_EXPORT CCatalog {
public:
    // Empty.
    CCatalog();
    CCatalog(const CCatalog&) = delete;
    CCatalog& operator=(const CCatalog&) = delete;
    ~CCatalog();

    // The item of that GUID on any level; empty when there is none.  Exact, case-sensitive.
    CatalogItemPtr GetItembyGuid(const char16_t* guid) const;
    // Of all levels.
    std::size_t GetItemCount() const;

    // The items of the top level.
    const CatalogItems& GetRootElementsMap() const;
    // In the catalogue's order.
    std::vector<CatalogItemPtr> GetSortedRootElements() const;

    // As CCatalogItem::AddSubItem, at the top level.
    int AddItem(const CatalogItemPtr& item);
    // Takes the item with all below it out of the catalogue.  0 when there is none.
    int DeleteItem(const char16_t* guid);

    // Known to this library alone.
    struct Content;

private:
    friend class CatalogueXml;
    std::unique_ptr<Content> m_content;
};

} // namespace ZEBGis::Data
