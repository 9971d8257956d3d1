// SPDX-License-Identifier: MIT
#include "app/Listing.h"

#include "app/Texts.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <ranges>

namespace App {
namespace {

void SortByGroup(std::vector<StoredEntry>& entries) {
    std::ranges::stable_sort(entries, {}, &StoredEntry::group);
}

std::vector<StoredEntry> ListByAdministration(Storage::RepositoryAdministration& administration) {
    std::vector<Storage::StoredFile> files;
    std::vector<Storage::StoredGS> settings;
    CString problemText;
    const Storage::Problem problem = administration.List(files, settings, problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    std::vector<StoredEntry> entries;
    for (const auto& file : files)
        entries.push_back({file.contentCode == Repository::kContentFOC ? Group::FOC : Group::NCF,
                           file.kind, !file.name.empty(), file.name, file.sizeBytes, file.revision,
                           file.time});
    for (const auto& gs : settings)
        entries.push_back({Group::GS, gs.name, true, {}, gs.sizeBytes, gs.revision, gs.time});
    return entries;
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
            entries.push_back({Group::GS,
                               name,
                               true,
                               {},
                               static_cast<std::int64_t>(Platform::ToUtf8(xml).size()),
                               0,
                               {}});
    }
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
