// SPDX-License-Identifier: MIT
// What a catalogue holds.
#pragma once

#include "ZEBXNetworkCore/Catalog.h"

#include "CatalogBranch.h"

namespace ZEBGis::Data {

struct CCatalog::Content {
    CatalogIndex index;          // outlives the branch, whose items leave it
    CatalogBranch branch{index}; // the top level
    // What other tools put into the file: into the outermost element, before and behind it.
    XmlAttributes attributes;
    XmlNodes before;
    XmlNodes behind;
};

} // namespace ZEBGis::Data
