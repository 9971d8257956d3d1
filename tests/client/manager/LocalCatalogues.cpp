// SPDX-License-Identifier: MIT
#include "client/manager/LocalCatalogues.h"

#include "platform/text/Fill.h"
#include "platform/text/Utf8.h"

#include <fstream>
#include <gtest/gtest.h>

using ZEBGis::Data::CCatalog;
using ZEBGis::Data::CCatalogManager;

void DeclareCatalogues(const Workstation& workstation,
                       const std::vector<CatalogueDeclaration>& catalogues) {
    CString xml = u"<catalogues>\n";
    for (const auto& catalogue : catalogues) {
        xml += u"<catalogue reference=\"" + catalogue.reference + u"\"";
        if (catalogue.hidden)
            xml += u" hidden=\"yes\"";
        if (!catalogue.fileManagerId.empty())
            xml += u" fileManager=\"" + catalogue.fileManagerId + u"\"";
        xml += u">";
        for (const auto& [language, name] : catalogue.names)
            xml += Platform::Fill(u"<name language=\"%s\">%s</name>", {language, name});
        xml += u"</catalogue>\n";
    }
    const std::filesystem::path folder = Platform::NativePath(workstation.Support());
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Catalogues.xml") << Platform::ToUtf8(xml + u"</catalogues>\n");
}

CString OutlineOf(const std::vector<ZEBGis::Data::CatalogItemPtr>& items) {
    CString outline;
    for (const auto& item : items) {
        outline += (outline.empty() ? u"" : u" ") + item->GetName();
        if (!item->GetSubItems().empty())
            outline += u"(" + OutlineOf(item->GetSortedSubItems()) + u")";
    }
    return outline;
}

CString OutlineOf(const CCatalog& catalogue) {
    return OutlineOf(catalogue.GetSortedRootElements());
}

void MakeCatalogue(const char16_t* reference,
                   const std::vector<ZEBGis::Data::CatalogItemPtr>& items) {
    auto* const manager = CCatalogManager::Instance();
    const auto catalogue = manager->GetCatalog(reference, 1);
    ASSERT_TRUE(catalogue) << testing::PrintToString(manager->GetProblem());
    for (const auto& item : items)
        ASSERT_TRUE(catalogue->AddItem(item));
    ASSERT_TRUE(manager->Save(reference, 0, 0));
    manager->Forget(reference);
}

CString SavedOutline(const char16_t* reference) {
    auto* const manager = CCatalogManager::Instance();
    manager->Forget(reference);
    const auto catalogue = manager->GetCatalog(reference, 1);
    return catalogue ? OutlineOf(*catalogue) : u"(no catalogue)";
}

std::filesystem::path CatalogueFile(const Workstation& workstation, const std::string& reference) {
    return std::filesystem::path(Platform::NativePath(workstation.Support())) / "Catalogues" /
           (reference + ".xml");
}
