// SPDX-License-Identifier: MIT
// Items and catalogues to XML text and back; docs/formats.md describes the text.
#pragma once

#include "CatalogContent.h"
#include "XmlSource.h"
#include "XmlWriter.h"

namespace ZEBGis::Data {

class CatalogueXml {
public:
    // The item's text with all below it, for a record.
    static CString TextOf(const CCatalogItem& item);
    // The text of the catalogue's file.
    static CString TextOf(const CCatalog& catalog, CStringView reference);
    // Which text of which item, if any, XML cannot carry: what Save says.
    static CString ProblemOf(const CCatalog& catalog);

    // Both throw CatalogueError.
    static CatalogItemPtr ReadItem(const XmlSource& source);
    static void ReadCatalogue(const XmlSource& source, CStringView reference, CCatalog& catalog);

private:
    friend class CatalogueReader;
    static void WriteItem(XmlWriter& writer, const CCatalogItem& item, CStringView parentGuid,
                          const XmlLayout& layout);
    static void WriteBranch(XmlWriter& writer, const CatalogBranch& branch, CStringView guid,
                            const XmlLayout& layout);
    static CString ProblemOf(const CCatalogItem& item);

    static CCatalogItem::Content& ContentOf(const CatalogItemPtr& item) { return *item->m_content; }
    static CCatalog::Content& ContentOf(CCatalog& catalog) { return *catalog.m_content; }
};

} // namespace ZEBGis::Data
