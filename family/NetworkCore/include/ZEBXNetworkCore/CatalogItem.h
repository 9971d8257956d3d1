// SPDX-License-Identifier: MIT
// An item of a catalogue: a group that holds other items, or a leaf.  Its XML text is
// described in docs/formats.md.
#pragma once

#include "ZEBXNetworkCore/PropertyEx.h"

#include <boost/shared_ptr.hpp>
#include <map>
#include <memory>
#include <vector>

namespace ZEBGis::Data {

class CCatalogItem;
using CatalogItemPtr = boost::shared_ptr<CCatalogItem>;

// By key.  Keys rise in the order in which the items were added, which is the catalogue's
// order; one that became free is not given again while a later one is in use.
using CatalogItems = std::map<std::int32_t, CatalogItemPtr>;

class ZEBX_EXPORT CCatalogItem {
public:
    CCatalogItem(const char16_t* guid, const char16_t* name, int isGroup);
    // A copy holds the same sub-items (the objects themselves, in a map of its own), belongs
    // to no catalogue and stands under no item.
    CCatalogItem(const CCatalogItem& origin);
    CCatalogItem& operator=(const CCatalogItem&) = delete;
    ~CCatalogItem();

    CString GetGUID() const;
    CString GetName() const;
    void SetName(const char16_t* name);
    int IsGroup() const;

    // The GUID of the item that holds this one; empty at the top level.  Setting it moves
    // nothing: AddSubItem and CCatalog::AddItem do.
    CString GetParentItemGuid() const;
    void SetParentItemGuid(const char16_t* guid);
    // Sets the parent's GUID to that of `parent`, to the empty text when it is empty.
    void SetParentItem(const CatalogItemPtr& parent);

    const CatalogItems& GetSubItems() const;
    // In the catalogue's order.
    std::vector<CatalogItemPtr> GetSortedSubItems() const;
    // Adds `item` with all below it as the last sub-item, takes it out of where it stood, and
    // makes this item its parent.  Returns 0, and changes nothing, when `item` is empty, holds
    // this item, a GUID of the added ones is already in this item's catalogue, or one of them
    // would stand deeper than 200 levels.  Sub-items that a copy shares with its original become
    // copies too.
    int AddSubItem(const CatalogItemPtr& item);
    // Takes the sub-item of that key, with all below it, out of this item and of its
    // catalogue.  0 when there is none.
    int RemoveSubItem(std::int32_t key);

    // Empty when the item has no property of that name; exact, case-sensitive.  Of several
    // with one name the first.
    boost::shared_ptr<CPropertyEx> GetProperty(const char16_t* name) const;
    // In the order of the text.
    std::vector<boost::shared_ptr<CPropertyEx>> GetProperties() const;
    // Replaces the property's value in its place, or adds the property behind the others.
    void SetProperty(const char16_t* name, const CDataBox& value);

    // Appends the item's XML text, with all sub-items that it holds now: one element, without
    // XML declaration.  What other tools put into the item is in it.
    void GetXML(WStringStream& stream) const;

    // Known to this library alone.
    struct Content;

private:
    friend class CCatalog;
    friend class CatalogBranch;
    friend class CatalogueXml;
    std::unique_ptr<Content> m_content;
};

} // namespace ZEBGis::Data
