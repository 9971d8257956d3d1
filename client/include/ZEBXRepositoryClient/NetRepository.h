// SPDX-License-Identifier: MIT
// The shared repository's definitions in memory: definition repositories by tag, in
// each the items by id.  Keys are compared code unit by code unit.
#pragma once

#include "ZEBXRepositoryClient/NetRepositoryItem.h"

#include <map>

namespace Repository {

class ZEBX_EXPORT CNetDefinitionRepository {
public:
    explicit CNetDefinitionRepository(const char16_t* tag) : m_tag(Platform::TextOf(tag)) {}
    virtual ~CNetDefinitionRepository() = default;
    // A copy shares the items with its origin.
    CNetDefinitionRepository(const CNetDefinitionRepository&) = default;
    CNetDefinitionRepository& operator=(const CNetDefinitionRepository&) = default;

    CString GetTag() const { return m_tag; }

    // Keeps the item under the id that it has now.  An id that is taken keeps its item
    // and the new one is dropped; neither this nor an empty handle is an error.
    void AddRepositoryItem(const boost::shared_ptr<CNetRepositoryItem>& item);

    // The item kept under `id`, shared; empty when there is none.
    boost::shared_ptr<CNetRepositoryItem> GetNetRepositoryItemById(const char16_t* id) const;

    // Both leave everything as it is when `id` is unknown.  Renaming changes the item's
    // name, never its key.
    void RenameRepositoryItem(const char16_t* id, const char16_t* name);
    void RemoveNetRepositoryItemById(const char16_t* id);

    // Appends every item, in ascending order of the keys, behind what `items` holds.
    void GetRepositoryItems(std::vector<boost::shared_ptr<CNetRepositoryItem>>& items) const;

private:
    CString m_tag;
    std::map<CString, boost::shared_ptr<CNetRepositoryItem>> m_items;
};

class ZEBX_EXPORT CNetRepository {
public:
    using Repositories = std::map<CString, boost::shared_ptr<CNetDefinitionRepository>>;

    // The definition repository of that tag, shared; empty when there is none.
    boost::shared_ptr<CNetDefinitionRepository>
    GetDefinitionRepositoryByTag(const char16_t* tag) const;

    // The map itself: callers insert, remove and iterate through it.  Never null.
    Repositories* GetRepositories() { return &m_repositories; }

private:
    Repositories m_repositories;
};

} // namespace Repository
