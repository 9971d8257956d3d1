// SPDX-License-Identifier: MIT
#include "AssemblySchemesCommand.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXNetworkCore/CatalogManager.h"
#include "client/util/Border.h"
#include "platform/host/Prompt.h"
#include "platform/os/File.h"
#include "platform/text/Numbers.h"

namespace Repository {
namespace {

using ZEBGis::Data::CCatalogItem;
using ZEBGis::Data::CCatalogManager;

constexpr const char16_t* kCatalogue = u"ASSEMBLYSCHEMES_CATALOG";
constexpr int kBlocks = 6;

class DrawingsCheck {
public:
    void Visit(const CCatalogItem& item) {
        if (item.IsGroup())
            for (const auto& subItem : item.GetSortedSubItems())
                Visit(*subItem);
        else
            CheckBlocks(item);
    }

    // Of files, not of items: a file that two items name is counted twice.
    int Found() const { return m_found; }

private:
    void CheckBlocks(const CCatalogItem& item) {
        for (int n = 1; n <= kBlocks; ++n)
            if (const auto block = item.GetProperty((u"AS_BLOCK" + Platform::ToText(n)).c_str()))
                CheckFile(block->GetValue().ToText());
    }

    void CheckFile(const CString& name) {
        if (name.empty())
            return;
        const CString path = m_folder + name;
        if (Platform::KindOfPath(path) == Platform::PathKind::File)
            ++m_found;
        else
            acutPrintf(u"\nFali %s", path.c_str());
    }

    const CString m_folder =
        ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install") + u"assemblyElements\\";
    int m_found = 0;
};

} // namespace

void CheckAssemblySchemes() {
    AtBorder([] {
        const auto manager = CCatalogManager::Instance();
        const auto catalogue = manager->GetCatalog(kCatalogue, 1);
        if (!catalogue) {
            // A total of 0 would read as "nothing is missing".
            acutPrintf(u"\n%s", manager->GetProblem().c_str());
            return;
        }
        DrawingsCheck check;
        for (const auto& item : catalogue->GetSortedRootElements())
            check.Visit(*item);
        acutPrintf(u"\ntotal blocks = %d", check.Found());
    });
}

} // namespace Repository
