// SPDX-License-Identifier: MIT
// Local catalogues of a test's own workstation, and short words for their items.
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"
#include "support/Workstation.h"

#include <boost/make_shared.hpp>

using CatalogueDeclaration = ZEBGis::Data::CCatalogMetadata::Declaration;

// With "Name of <reference>" as its English name.
inline CatalogueDeclaration Declared(const CString& reference, const CString& fileManagerId = {}) {
    CatalogueDeclaration declaration;
    declaration.reference = reference;
    declaration.names = {{u"en", u"Name of " + reference}};
    declaration.fileManagerId = fileManagerId;
    return declaration;
}

// Replaces the support folder's declarations of catalogues.
void DeclareCatalogues(const Workstation& workstation,
                       const std::vector<CatalogueDeclaration>& catalogues);

// The file of a local catalogue.
std::filesystem::path CatalogueFile(const Workstation& workstation, const std::string& reference);

inline ZEBGis::Data::CatalogItemPtr Leaf(const CString& id, const CString& name) {
    return boost::make_shared<ZEBGis::Data::CCatalogItem>(id.c_str(), name.c_str(), 0);
}

inline ZEBGis::Data::CatalogItemPtr
Group(const CString& id, const CString& name,
      const std::vector<ZEBGis::Data::CatalogItemPtr>& members = {}) {
    auto group = boost::make_shared<ZEBGis::Data::CCatalogItem>(id.c_str(), name.c_str(), 1);
    for (const auto& member : members)
        group->AddSubItem(member);
    return group;
}

inline CString XmlOf(const ZEBGis::Data::CCatalogItem& item) {
    WStringStream xml;
    item.GetXML(xml);
    return xml.str();
}

inline std::vector<CString> IdsOf(const std::vector<ZEBGis::Data::CatalogItemPtr>& items) {
    std::vector<CString> ids;
    for (const auto& item : items)
        ids.push_back(item->GetGUID());
    return ids;
}

// A catalogue as "a(b c(d)) e": the items' names, and in brackets what they hold.
CString OutlineOf(const std::vector<ZEBGis::Data::CatalogItemPtr>& items);
CString OutlineOf(const ZEBGis::Data::CCatalog& catalogue);

// Makes a catalogue with these items at the top level, saves it, and forgets it again.
void MakeCatalogue(const char16_t* reference,
                   const std::vector<ZEBGis::Data::CatalogItemPtr>& items);
// What the catalogue's file holds, read anew.
CString SavedOutline(const char16_t* reference);
