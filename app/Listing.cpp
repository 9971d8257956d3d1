// SPDX-License-Identifier: MIT
#include "app/Listing.h"

#include "app/StoredCatalogue.h"
#include "app/Texts.h"

#include "ZEBXGisCore/RepositoryManager.h"
#include "ZEBXNetworkCore/CatalogManager.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <ranges>

namespace App {
namespace {

void SortByGroup(std::vector<StoredEntry>& entries) {
    std::ranges::stable_sort(entries, {}, &StoredEntry::group);
}

void AddItems(Group group, const std::vector<Storage::StoredItem>& items,
              std::vector<StoredEntry>& entries) {
    for (const auto& item : items)
        entries.push_back(
            {group, item.tag, true, item.name, item.sizeBytes, item.revision, item.time, item.id});
}

std::vector<StoredEntry> ListByAdministration(Storage::RepositoryAdministration& administration) {
    std::vector<Storage::StoredFile> files;
    std::vector<Storage::StoredGS> settings;
    CString problemText;
    std::vector<Storage::StoredItem> catalogueItems;
    std::vector<Storage::StoredItem> definitions;
    Storage::Problem problem = administration.List(files, settings, problemText);
    if (problem == Storage::Problem::None)
        problem = administration.ListItems(catalogueItems, definitions, problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    std::vector<StoredEntry> entries;
    for (const auto& file : files)
        entries.push_back({file.contentCode == Repository::kContentFOC ? Group::FOC : Group::NCF,
                           file.kind, !file.name.empty(), file.name, file.sizeBytes, file.revision,
                           file.time});
    for (const auto& gs : settings)
        entries.push_back({Group::GS, gs.name, true, {}, gs.sizeBytes, gs.revision, gs.time});
    AddItems(Group::Catalogues, catalogueItems, entries);
    AddItems(Group::Items, definitions, entries);
    return entries;
}

std::int64_t SizeOf(const CString& text) {
    return static_cast<std::int64_t>(Platform::ToUtf8(text).size());
}

// A backend alone tells nothing of catalogues and tags that this workstation does not know.
void ListItems(const OpenStorage& storage, std::vector<StoredEntry>& entries) {
    for (const auto& metadata : ZEBGis::Data::CCatalogManager::Instance()->GetCatalogRegistry()) {
        const CString tag = metadata->GetCatalogReference();
        LookAtStoredCatalogue(storage, tag, {}, [&](const StoredCatalogueItem& item, std::size_t) {
            entries.push_back({Group::Catalogues,
                               tag,
                               true,
                               item->GetName(),
                               SizeOf(item->GetItemContent()),
                               0,
                               {},
                               item->GetCatalogueId()});
        });
    }
    for (const auto& [tag, factory] :
         ZEBGis::CRepositoryManager::Instance()->GetRepositoryFactories()) {
        std::vector<boost::shared_ptr<Repository::CNetRepositoryItem>> items;
        storage.Backend().GetRepositoryItems(tag.c_str(), items);
        for (const auto& item : items)
            entries.push_back({Group::Items,
                               tag,
                               true,
                               item->GetName(),
                               SizeOf(item->GetConfigurationXML()),
                               0,
                               {},
                               item->GetId()});
    }
}

void ListKind(Repository::StorageBackend& backend, Group group, const CString& kind,
              std::vector<StoredEntry>& entries) {
    const int code = group == Group::FOC ? Repository::kContentFOC : Repository::kContentNCF;
    std::vector<CString> ids;
    backend.GetRepositoryFileIds(code, kind.c_str(), ids);
    const std::size_t first = entries.size();
    for (const CString& id : ids) {
        const auto file = backend.GetRepositoryFile(id.c_str());
        if (!file)
            continue;
        std::string buffer;
        const std::string_view bytes = file->GetFileBytes(buffer);
        entries.push_back({group,
                           kind,
                           true,
                           file->GetFileName(),
                           static_cast<std::int64_t>(bytes.size()),
                           0,
                           {}});
    }
    std::ranges::sort(entries.begin() + static_cast<std::ptrdiff_t>(first), entries.end(), {},
                      [](const StoredEntry& entry) { return Platform::FoldCase(entry.file); });
}

std::vector<StoredEntry> ListByBackend(const OpenStorage& storage) {
    Repository::StorageBackend& backend = storage.Backend();
    std::vector<StoredEntry> entries;
    for (const auto& [id, kind] : storage.manager.GetFOCMetadata())
        ListKind(backend, Group::FOC, id, entries);
    for (const auto& [id, kind] : storage.manager.GetNCFMetadata())
        ListKind(backend, Group::NCF, id, entries);
    std::vector<CString> names;
    backend.GetAvailableGS(names);
    for (const CString& name : names) {
        CString xml;
        std::vector<CString> fileIds;
        if (backend.LoadGS(xml, fileIds, name.c_str()))
            entries.push_back({Group::GS, name, true, {}, SizeOf(xml), 0, {}});
    }
    ListItems(storage, entries);
    return entries;
}

} // namespace

std::vector<StoredEntry> ListRepository(const OpenStorage& storage) {
    auto* administration = storage.plugin.administration;
    auto entries = administration ? ListByAdministration(*administration) : ListByBackend(storage);
    SortByGroup(entries);
    if (!storage.manager.IsRepositoryAccessible())
        throw AppError(ExitStatus::NotReachable, Text(Message::NotListed));
    return entries;
}

bool Covers(const Selected& selected, const StoredEntry& entry) {
    return selected.group == entry.group && (!selected.name || *selected.name == entry.kind);
}

} // namespace App
