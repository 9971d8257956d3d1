// SPDX-License-Identifier: MIT
// A catalogue as the repository holds it, item by item.
#pragma once

#include "app/Storage.h"

#include <functional>

namespace App {

using StoredCatalogueItem = boost::shared_ptr<Repository::CNetCatalogueItem>;

// Shows every item below `parentId` (empty: of the whole catalogue), a group before its members,
// in the repository's order and without files; `level` counts from 0.  An item that comes a
// second time, as only a faulty storage gives it, is passed over.  Throws AppError when the
// repository cannot be read to the end.
void LookAtStoredCatalogue(
    const OpenStorage& storage, const CString& tag, const CString& parentId,
    const std::function<void(const StoredCatalogueItem& item, std::size_t level)>& look);

} // namespace App
