// SPDX-License-Identifier: MIT
// A catalogue's file in the support folder.
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"

namespace ZEBGis::Data {

// The catalogue of that reference; an empty one when there is no file.  Throws
// CatalogueError.
CatalogPtr ReadCatalogueFile(CStringView support, CStringView reference);

// Throws CatalogueError, and then the file stands as it was.
void WriteCatalogueFile(CStringView support, CStringView reference, const CCatalog& catalog,
                        bool keepPrevious);

// Whether the files of a catalogue can be called by the reference.
bool IsFileReference(CStringView reference);

} // namespace ZEBGis::Data
