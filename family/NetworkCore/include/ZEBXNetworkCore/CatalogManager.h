// SPDX-License-Identifier: MIT
// The library's single catalogue manager: the registry of catalogues, the catalogues in
// memory, and their files.
//
// The registry is what Catalogues.xml declares, in the installation folder and then in the
// support folder; a reference that is declared twice keeps its first declaration.  A
// catalogue lies in the support folder as Catalogues\<reference>.xml.  docs/formats.md
// describes both.  When the folders change, everything is read anew.
#pragma once

#include "ZEBXNetworkCore/Catalog.h"
#include "ZEBXNetworkCore/CatalogMetadata.h"

namespace ZEBGis::Data {

using CatalogPtr = boost::shared_ptr<CCatalog>;
using CatalogMetadataPtr = boost::shared_ptr<CCatalogMetadata>;

// One thread.  Nothing throws; integer results are non-zero for success.
class ZEBX_EXPORT CCatalogManager {
public:
    static CCatalogManager* Instance();

    // In the order of declaration; valid until the folders change.
    const std::vector<CatalogMetadataPtr>& GetCatalogRegistry();
    // Empty when the reference is unknown.
    CatalogMetadataPtr GetCatalogMetadata(const char16_t* reference);
    // What was wrong with the declarations, in the user's language: file, place and reason
    // each.  The entries that were understood are in the registry.
    const std::vector<CString>& GetRegistryProblems();

    // The catalogue of that reference.  `load` non-zero: read from its file when it is not in
    // memory; a registered catalogue without a file is an empty one.  0: only what is in
    // memory.  Empty when the reference is unknown or the file cannot be read as a catalogue,
    // and then GetProblem says why; the file is left alone.
    CatalogPtr GetCatalog(const char16_t* reference, int load);

    // Writes the catalogue to its file, whole or not at all.  `keepPrevious` non-zero: what
    // the file held before is kept beside it as <reference>.previous.xml.  `reserved` has no
    // effect.  Text that is in the file already is not written again, and for a catalogue without
    // items no file is made.  0 when there is no such
    // catalogue in memory or it could not be written, and then the file stands as it was and
    // GetProblem says why.
    int Save(const char16_t* reference, int keepPrevious, int reserved);

    // Forgets what is in memory of the catalogue; the next GetCatalog reads its file.
    void Forget(const char16_t* reference);

    // Why the last GetCatalog, Save or ParseCatalogItem gave nothing: file, item and reason,
    // in the user's language.  Empty after a success.
    CString GetProblem() const;

    // Builds an item, with what it holds, from its XML text.  The item belongs to nothing yet:
    // CCatalog::AddItem and CCatalogItem::AddSubItem give it its place; `parent`, when there is
    // one, becomes its parent by GUID.  Empty when the text is not an item.  `catalog` is the
    // catalogue that the item is meant for.
    CatalogItemPtr ParseCatalogItem(const char16_t* xml, const CatalogPtr& catalog,
                                    const CatalogItemPtr& parent);

private:
    CCatalogManager();
    struct Content;
    std::unique_ptr<Content> m_content;
};

} // namespace ZEBGis::Data
