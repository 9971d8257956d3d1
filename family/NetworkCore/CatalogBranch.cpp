// SPDX-License-Identifier: MIT
#include "CatalogBranch.h"

#include "CatalogItemContent.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <limits>

namespace ZEBGis::Data {

CatalogBranch::~CatalogBranch() {
    while (!m_items.empty())
        Detach(m_items.begin());
}

CatalogBranch& CatalogBranch::BranchOf(const CCatalogItem& item) {
    return item.m_content->branch;
}

std::vector<CatalogItemPtr> CatalogBranch::InOrder() const {
    std::vector<CatalogItemPtr> items;
    items.reserve(m_items.size());
    for (const auto& [key, item] : m_items)
        items.push_back(item);
    return items;
}

std::int32_t CatalogBranch::NextKey() const {
    return m_items.empty() ? 1 : m_items.rbegin()->first + 1;
}

// A copy of an item has its sub-items in the map, but they stand below the original.
bool CatalogBranch::Holds(const CCatalogItem& item) const {
    return item.m_content->place == this;
}

int CatalogBranch::Level() const {
    int level = 0;
    for (const CatalogBranch* branch = this; branch && branch->m_owner;
         branch = branch->m_owner->m_content->place)
        ++level;
    return level;
}

int CatalogBranch::HeightOf(const CCatalogItem& item) {
    int height = 0;
    for (const auto& [key, child] : BranchOf(item).m_items)
        height = std::max(height, HeightOf(*child));
    return height + 1;
}

bool CatalogBranch::IsBelow(const CCatalogItem& item) const {
    for (const CatalogBranch* branch = this; branch && branch->m_owner;
         branch = branch->m_owner->m_content->place)
        if (branch->m_owner == &item)
            return true;
    return false;
}

// Whether the GUIDs of the item and of all below it can come into this branch's catalogue.
// One that is there is no obstacle when it is the moved item's own.
bool CatalogBranch::IsFree(const CatalogItemPtr& item, bool isMoved, Guids& seen) const {
    const CString& guid = item->m_content->guid;
    const auto found = m_index->find(guid);
    if (found != m_index->end() && !(isMoved && found->second == item))
        return false;
    const CatalogBranch& branch = BranchOf(*item);
    if (!seen.insert(guid).second)
        return false;
    return std::ranges::all_of(branch.m_items, [&](const auto& entry) {
        return IsFree(entry.second, isMoved && branch.Holds(*entry.second), seen);
    });
}

// Gives a copy that comes into a tree sub-items of its own.
void CatalogBranch::OwnAll() {
    for (auto& [key, item] : m_items) {
        if (!Holds(*item)) {
            item = boost::make_shared<CCatalogItem>(*item);
            item->m_content->place = this;
            item->m_content->key = key;
        }
        BranchOf(*item).OwnAll();
    }
}

void CatalogBranch::Collect(const CatalogItemPtr& item, CatalogIndex& index) const {
    index.emplace(item->m_content->guid, item);
    for (const auto& [key, child] : BranchOf(*item).m_items)
        Collect(child, index);
}

void CatalogBranch::SetIndex(CatalogIndex* index) {
    m_index = index;
    for (const auto& [key, item] : m_items)
        BranchOf(*item).SetIndex(index);
}

// What can fail comes first: on failure nothing has changed.
bool CatalogBranch::Add(const CatalogItemPtr& item) {
    if (!item || IsBelow(*item) || Level() + HeightOf(*item) > kMostLevels)
        return false;
    const std::int32_t key = NextKey();
    if (key == std::numeric_limits<std::int32_t>::max())
        return false;
    CatalogIndex added;
    if (Guids seen; m_index && !IsFree(item, true, seen))
        return false;
    CCatalogItem::Content& content = *item->m_content;
    content.branch.OwnAll();
    if (m_index) {
        Collect(item, added);
        if (const std::size_t size = m_index->size() + added.size();
            static_cast<float>(size) >
            static_cast<float>(m_index->bucket_count()) * m_index->max_load_factor())
            m_index->reserve(2 * size);
    }
    CString parentGuid = m_owner ? m_owner->m_content->guid : CString();
    CatalogItems entry{{key, item}};

    if (content.place)
        content.place->Detach(content.place->m_items.find(content.key));
    m_items.insert(entry.extract(entry.begin()));
    content.place = this;
    content.key = key;
    content.parentGuid.swap(parentGuid);
    if (m_index)
        m_index->merge(added);
    content.branch.SetIndex(m_index);
    return true;
}

bool CatalogBranch::Remove(std::int32_t key) {
    const auto place = m_items.find(key);
    if (place == m_items.end())
        return false;
    const bool isOwn = Holds(*place->second);
    const CatalogItemPtr item = Detach(place);
    if (isOwn)
        item->m_content->parentGuid.clear();
    return true;
}

void CatalogBranch::Share(const CatalogBranch& origin) {
    m_items = origin.m_items;
    m_notes = origin.m_notes;
}

CatalogItemPtr CatalogBranch::Detach(CatalogItems::iterator place) {
    CatalogItemPtr item = std::move(place->second);
    m_items.erase(place);
    if (!Holds(*item))
        return item;
    if (m_index)
        LeaveIndex(*item);
    item->m_content->place = nullptr;
    return item;
}

void CatalogBranch::LeaveIndex(const CCatalogItem& item) {
    m_index->erase(item.m_content->guid);
    CatalogBranch& branch = BranchOf(item);
    branch.m_index = nullptr;
    for (const auto& [key, child] : branch.m_items)
        LeaveIndex(*child);
}

} // namespace ZEBGis::Data
