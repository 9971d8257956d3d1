// SPDX-License-Identifier: MIT
// The definitions of one tag in memory, as its factory makes them from XML text.
#pragma once

#include "ZEBXGisCore/RepositoryItem.h"

#include <memory>
#include <vector>

namespace ZEBGis {

// In the order of the text.
class ZEBX_EXPORT CRepositoryItemList {
public:
    std::size_t GetCount() const { return m_items.size(); }
    // The first item; null when there is none.  The list owns the items.
    CRepositoryItem* GetHead() const { return m_items.empty() ? nullptr : m_items.front().get(); }
    CRepositoryItem* GetAt(std::size_t index) const { return m_items[index].get(); }
    void Add(std::unique_ptr<CRepositoryItem> item) { m_items.push_back(std::move(item)); }

private:
    std::vector<std::unique_ptr<CRepositoryItem>> m_items;
};

// Made and destroyed by a CRepositoryFactory.
class ZEBX_EXPORT CDefinitionRepository {
public:
    virtual ~CDefinitionRepository() = default;

    // The XML text of a whole repository that holds the one item whose XML is given.
    virtual CString CreateRepositoryXML(const char16_t* itemXml) const = 0;
    virtual const CRepositoryItemList& GetRepositoryItemList() const = 0;
};

} // namespace ZEBGis
