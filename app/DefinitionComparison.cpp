// SPDX-License-Identifier: MIT
#include "app/ItemComparison.h"

#include "app/Definitions.h"

#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/text/Utf8.h"

#include <map>

namespace App {
namespace {

using Repository::CNetRepositoryItem;
using ZEBGis::CRepositoryFactory;
using ZEBGis::CRepositoryItem;
using ZEBGis::CRepositoryManager;

std::int64_t SizeOf(const CString& text) {
    return static_cast<std::int64_t>(Platform::ToUtf8(text).size());
}

std::vector<const CRepositoryItem*> ItemsOf(const LocalDefinitions& definitions) {
    std::vector<const CRepositoryItem*> items;
    const std::size_t count = definitions ? definitions->GetRepositoryItemList().GetCount() : 0;
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(definitions->GetRepositoryItemList().GetAt(i));
    return items;
}

// What cannot be read here counts as not being there, and the user is told.
LocalDefinitions ReadHere(const CString& tag, CRepositoryFactory& factory, bool& isWhole) {
    CString problem;
    LocalDefinitions here(CRepositoryManager::Instance()->ReadDefinitions(tag.c_str(), problem),
                          {&factory});
    if (!here) {
        Log(ZEBGis::Workspace::MessageFailure, problem);
        isWhole = false;
    }
    return here;
}

bool IsSame(const CRepositoryItem& here, const CNetRepositoryItem& there) {
    return here.GetName() == there.GetName() && here.GetXML() == there.GetConfigurationXML() &&
           here.GetEntityType() == there.GetEntityType() &&
           here.GetTopologyFunction() == there.GetTopologyFunction() &&
           here.GetTopologyType() == there.GetTopologyType();
}

ComparedKind Compared(const OpenStorage& storage, const CString& tag, CRepositoryFactory& factory,
                      bool& isWhole) {
    const LocalDefinitions definitions = ReadHere(tag, factory, isWhole);
    const auto here = ItemsOf(definitions);
    std::map<CString, const CRepositoryItem*> unmatched;
    for (const CRepositoryItem* item : here)
        unmatched[item->GetId()] = item;
    ComparedKind kind{Group::Items, tag, {}};
    std::vector<boost::shared_ptr<CNetRepositoryItem>> stored;
    storage.Backend().GetRepositoryItems(tag.c_str(), stored);
    for (const auto& item : stored) {
        ComparedFile file{item->GetName(), Difference::OnlyThere, 0,
                          SizeOf(item->GetConfigurationXML())};
        if (const auto node = unmatched.extract(item->GetId())) {
            file.difference =
                IsSame(*node.mapped(), *item) ? Difference::Same : Difference::Changed;
            file.bytesHere = SizeOf(node.mapped()->GetXML());
        }
        kind.files.push_back(std::move(file));
    }
    for (const CRepositoryItem* item : here) {
        if (unmatched.contains(item->GetId()))
            kind.files.push_back(
                {item->GetName(), Difference::OnlyHere, SizeOf(item->GetXML()), 0});
    }
    return kind;
}

} // namespace

std::vector<ComparedKind> CompareDefinitions(const OpenStorage& storage,
                                             const std::optional<CString>& tag, bool& isWhole) {
    std::vector<ComparedKind> kinds;
    for (const auto& [known, factory] : CRepositoryManager::Instance()->GetRepositoryFactories()) {
        if (!tag || *tag == known)
            kinds.push_back(Compared(storage, known, *factory, isWhole));
    }
    return kinds;
}

} // namespace App
