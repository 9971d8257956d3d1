// SPDX-License-Identifier: MIT
#include "app/StoredCatalogue.h"

#include "app/Texts.h"

#include <set>
#include <utility>
#include <vector>

namespace App {
namespace {

using Items = std::vector<StoredCatalogueItem>;

Items ChildrenOf(const OpenStorage& storage, const CString& tag, const CString& parentId) {
    auto* administration = storage.plugin.administration;
    if (administration)
        administration->TakeLastProblem(); // older ones are none of ours
    Items items;
    if (storage.manager.GetChildCatalogItems(tag.c_str(), parentId.c_str(), items, /*files*/ 0))
        return items;
    const auto problem =
        administration ? administration->TakeLastProblem() : Storage::Problem::None;
    const bool isAccessible = storage.manager.IsRepositoryAccessible() != 0;
    throw AppError(isAccessible ? StatusOf(problem) : ExitStatus::NotReachable,
                   Text(Message::NotListed));
}

} // namespace

void LookAtStoredCatalogue(
    const OpenStorage& storage, const CString& tag, const CString& parentId,
    const std::function<void(const StoredCatalogueItem&, std::size_t)>& look) {
    // On the heap, not the stack: how deep it goes is the repository's to say.
    std::vector<std::pair<Items, std::size_t>> levels; // with the place of the next item
    std::set<CString> seen{parentId};
    levels.emplace_back(ChildrenOf(storage, tag, parentId), 0);
    while (!levels.empty()) {
        auto& [items, next] = levels.back();
        if (next == items.size()) {
            levels.pop_back();
            continue;
        }
        const StoredCatalogueItem item = std::exchange(items[next++], {});
        if (!seen.insert(item->GetCatalogueId()).second)
            continue;
        look(item, levels.size() - 1);
        if (item->GetIsGroup())
            levels.emplace_back(ChildrenOf(storage, tag, item->GetCatalogueId()), 0);
    }
}

} // namespace App
