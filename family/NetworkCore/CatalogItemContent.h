// SPDX-License-Identifier: MIT
// What an item holds.
#pragma once

#include "CatalogBranch.h"
#include "ItemProperty.h"

#include <variant>

namespace ZEBGis::Data {

struct CCatalogItem::Content {
    explicit Content(CCatalogItem& owner) : branch(owner) {}

    CString guid;
    CString name;
    CString parentGuid;
    bool isGroup = false;
    XmlAttributes attributes;                                // of other tools
    std::vector<std::variant<ItemProperty, XmlNode>> pieces; // before the sub-items, in order
    CatalogBranch branch;

    CatalogBranch* place = nullptr; // where the item stands; null: nowhere
    std::int32_t key = 0;           // there
};

} // namespace ZEBGis::Data
