// SPDX-License-Identifier: MIT
// Catalogues through the module's transfer, as verbs move them.
#pragma once

#include "app/Transfer.h"

#include "ZEBXNetworkCore/CatalogManager.h"

namespace App {

// The catalogue of that reference, which must be declared, or every one that is not hidden.
std::vector<ZEBGis::Data::CatalogMetadataPtr> CataloguesOf(const std::optional<CString>& reference);

// Shows every item of a local catalogue, a group before its members.
void LookAtItems(const ZEBGis::Data::CCatalog& catalogue,
                 const std::function<void(const ZEBGis::Data::CCatalogItem&)>& look);

// Sends the catalogue of that reference, or every one that is not hidden.  A local catalogue
// that cannot be read is told and the next follows; stops where the repository became
// inaccessible.
Outcome PushCatalogues(Session& session, const OpenStorage& storage,
                       const std::optional<CString>& reference);

// Replaces the local catalogue, or every one that is not hidden, by what the repository holds.
Outcome PullCatalogues(Session& session, const OpenStorage& storage,
                       const std::optional<CString>& reference);

} // namespace App
