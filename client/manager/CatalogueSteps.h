// SPDX-License-Identifier: MIT
// The workspace log's lines of failure that both directions of a catalogue's transfer share.
#pragma once

#include "ZEBXNetworkCore/CatalogMetadata.h"

namespace Repository {

// The line for a local catalogue that the catalogue library has just failed to read.
void LogCatalogueNotRead(const ZEBGis::Data::CCatalogMetadata& metadata);

// A message about the catalogue, and `reason` where it has a gap for one.
void LogCatalogueFailure(int msgNum, const ZEBGis::Data::CCatalogMetadata& metadata,
                         const CString& reason);

} // namespace Repository
