// SPDX-License-Identifier: MIT
// A catalogue's file: what is read of it is written so that it is read again as it was, as a
// file and as the texts of its items.
#include "Target.h"

#include "ZEBXGisCore/XmlFile.h"
#include "family/NetworkCore/CatalogueXml.h"

using namespace Fuzz;
using namespace ZEBGis::Data;

namespace {

constexpr CStringView kReference = u"C";

void Read(const CString& text, CCatalog& catalog) {
    CatalogueXml::ReadCatalogue(XmlSource(u"fuzz", Platform::ToUtf8(text)), kReference, catalog);
}

// Counts the items on the way, each of which knows its holder.
std::size_t CountOf(const CCatalog& catalog, const CatalogItems& items, const CString& holder) {
    std::size_t count = items.size();
    for (const auto& [key, item] : items) {
        Require(item->GetParentItemGuid() == holder, "an item names the one that holds it");
        Require(catalog.GetItembyGuid(item->GetGUID().c_str()) == item, "every item is found");
        count += CountOf(catalog, item->GetSubItems(), item->GetGUID());
    }
    return count;
}

void TravelAsText(const CatalogItemPtr& item) {
    const CString text = CatalogueXml::TextOf(*item);
    const CatalogItemPtr read = CatalogueXml::ReadItem(XmlSource(u"item", Platform::ToUtf8(text)));
    Require(CatalogueXml::TextOf(*read) == text, "an item's text is read as it was written");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString text = TextOf(data, size);
    if (!ZEBGis::TextProblem(text).empty())
        return 0; // is refused before it is XML
    CCatalog catalog;
    try {
        Read(text, catalog);
    } catch (const CatalogueError& error) {
        Require(!error.text.empty(), "a refusal has a reason");
        return 0;
    }
    Require(CountOf(catalog, catalog.GetRootElementsMap(), {}) == catalog.GetItemCount(),
            "the index knows the items of the tree and no others");
    const CString written = CatalogueXml::TextOf(catalog, kReference);
    Require(ZEBGis::TextProblem(written).empty(), "what was read can be written");
    CCatalog again;
    Read(written, again);
    Require(again.GetItemCount() == catalog.GetItemCount(), "no item is lost");
    Require(CatalogueXml::TextOf(again, kReference) == written, "a written file stays as it is");
    for (const CatalogItemPtr& item : catalog.GetSortedRootElements())
        TravelAsText(item);
    return 0;
}
