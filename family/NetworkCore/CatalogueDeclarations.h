// SPDX-License-Identifier: MIT
// Which catalogues there are: what Catalogues.xml declares (docs/formats.md).
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"

namespace ZEBGis::Data {

struct CatalogueFolders {
    CString install;
    CString support;

    bool operator==(const CatalogueFolders&) const = default;
};

struct CatalogueDeclarations {
    std::vector<CatalogMetadataPtr> catalogues;
    std::vector<CString> problems;
};

// Those of the installation folder, then those of the support folder.
CatalogueDeclarations ReadDeclarations(const CatalogueFolders& folders);

} // namespace ZEBGis::Data
