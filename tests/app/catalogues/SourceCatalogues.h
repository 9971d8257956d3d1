// SPDX-License-Identifier: MIT
// Published trees and lists of others (see README.md of the shared test data), made into
// catalogues: items are groups or leaves, attributes are properties, the order is that of the
// source, and a GUID is the same for the same place in the tree at each conversion.
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"

#include <filesystem>

namespace AppTest {

namespace fs = std::filesystem;

struct SourceCatalogue {
    const char16_t* reference;
    const char* englishName;
    const char* croatianName;
    // What it is made from, below the folder of the sources.
    const char* source;
    // Throws std::runtime_error when the source is missing or is not what it should be.
    void (*fill)(const fs::path& source, ZEBGis::Data::CCatalog& catalog);
};

// Map presets: groups and items four levels deep.
constexpr const char16_t* kPresets = u"PRESETS_CATALOG";
// Countries, kinds of subdivisions, subdivisions.
constexpr const char16_t* kSubdivisions = u"SUBDIVISIONS_CATALOG";
// A group for each code list of utility networks, a leaf for each code.
constexpr const char16_t* kCodeLists = u"CODELISTS_CATALOG";

const std::vector<SourceCatalogue>& SourceCatalogues();

// Writes Catalogues.xml and the catalogues into a support folder, from the folder of the
// sources, through the catalogue library, for which this process works with that support
// folder from now on.  Returns how many items there are; throws std::runtime_error.
std::size_t ConvertCatalogues(const fs::path& sources, const fs::path& support);

} // namespace AppTest
