// SPDX-License-Identifier: MIT
// The items below one item, or on the top level of a catalogue, and what has to stay right
// when they move: an item stands in one place, and a catalogue's index knows all of its items.
#pragma once

#include "ZEBXNetworkCore/CatalogItem.h"

#include "XmlNode.h"

#include <unordered_map>
#include <unordered_set>

namespace ZEBGis::Data {

// So deep may items stand; what walks over a tree may call itself.
constexpr int kMostLevels = 200;

// A catalogue's items of all levels, by GUID.
using CatalogIndex = std::unordered_map<CString, CatalogItemPtr>;

class CatalogBranch {
public:
    // What other tools put between items: written before the first item of that key or a
    // later one.
    struct Note {
        std::int32_t key;
        XmlNode node;
    };

    // Below `owner`, which holds this branch.
    explicit CatalogBranch(CCatalogItem& owner) : m_owner(&owner) {}
    // The top level of the catalogue whose index that is.
    explicit CatalogBranch(CatalogIndex& index) : m_index(&index) {}
    // Items that somebody else holds stand nowhere then.
    ~CatalogBranch();
    CatalogBranch(const CatalogBranch&) = delete;
    CatalogBranch& operator=(const CatalogBranch&) = delete;

    const CatalogItems& Items() const { return m_items; }
    std::vector<CatalogItemPtr> InOrder() const;
    // The key that the next item gets.
    std::int32_t NextKey() const;

    std::vector<Note>& Notes() { return m_notes; }
    const std::vector<Note>& Notes() const { return m_notes; }

    // As CCatalogItem::AddSubItem.
    bool Add(const CatalogItemPtr& item);
    // As CCatalogItem::RemoveSubItem.
    bool Remove(std::int32_t key);
    // Whether this branch stands somewhere below the item.
    bool IsBelow(const CCatalogItem& item) const;
    // Holds the same items as `origin`, where they stay.
    void Share(const CatalogBranch& origin);

private:
    using Guids = std::unordered_set<CString>;

    static CatalogBranch& BranchOf(const CCatalogItem& item);
    static int HeightOf(const CCatalogItem& item);
    bool Holds(const CCatalogItem& item) const;
    int Level() const;
    bool IsFree(const CatalogItemPtr& item, bool isMoved, Guids& seen) const;
    void OwnAll();
    void Collect(const CatalogItemPtr& item, CatalogIndex& index) const;
    void SetIndex(CatalogIndex* index);
    CatalogItemPtr Detach(CatalogItems::iterator place);
    void LeaveIndex(const CCatalogItem& item);

    CCatalogItem* m_owner = nullptr; // null: the top level
    CatalogIndex* m_index = nullptr; // null: belongs to no catalogue
    CatalogItems m_items;
    std::vector<Note> m_notes;
};

} // namespace ZEBGis::Data
