// SPDX-License-Identifier: MIT
#include "app/Comparison.h"

#include "app/CatalogueFiles.h"
#include "app/Catalogues.h"
#include "app/ItemComparison.h"
#include "app/MovedKinds.h"
#include "app/Print.h"
#include "app/StoredContent.h"
#include "app/Texts.h"
#include "app/Transfer.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/os/File.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

namespace App {
namespace {

using Content = std::optional<std::string>;

std::int64_t SizeOf(const Content& content) {
    return content ? static_cast<std::int64_t>(content->size()) : 0;
}

// What is there and cannot be read is not compared, and the user is told.
Content ReadOrTell(const LocalFile& file, bool& isWhole) {
    Content content = file.Read();
    if (!content && file.SizeBytes()) {
        Log(ZEBGis::Workspace::MessageFailure,
            Text(Message::NotReadHere, {ShownPath(file.Path())}));
        isWhole = false;
    }
    return content;
}

ComparedFile Compared(const StoredContent& stored, const Content& here) {
    ComparedFile file{stored.name, Difference::OnlyThere, SizeOf(here), stored.bytes};
    if (here)
        file.difference = stored.equals(*here) ? Difference::Same : Difference::Changed;
    return file;
}

// One kind's files, the stored ones as they are shown, then the rest.
class KindComparison {
public:
    // `isWhole` becomes false when a file here cannot be read.
    KindComparison(const MovedKind& kind, Purpose purpose, bool& isWhole)
        : m_kind(kind), m_purpose(purpose),
          m_isWhole(isWhole), m_result{kind.group, kind.name, {}} {
        std::set<CString> names;
        for (const LocalFile& file : kind.files) {
            if (names.insert(file.Name()).second)
                m_unmatched.emplace(Platform::FoldCase(file.Name()), &file);
        }
    }

    void Take(const StoredContent& stored) {
        if (stored.isUsable)
            m_result.files.push_back(Compared(stored, ReadCounterpart(stored.name)));
        else
            m_result.files.push_back({stored.name, Difference::Unusable, 0, stored.bytes});
    }

    void TakeText(const StoredContent& stored, const Content& here) {
        m_result.files.push_back(Compared(stored, here));
    }

    void AddOnlyHere(const CString& name, const Content& here) {
        if (here)
            m_result.files.push_back({name, Difference::OnlyHere, SizeOf(here), 0});
    }

    ComparedKind Finish() {
        for (const auto& [folded, file] : m_unmatched)
            AddOnlyHere(file->Name(), ReadOrTell(*file, m_isWhole));
        return std::move(m_result);
    }

private:
    // What this workstation has under a stored file's name.
    Content ReadCounterpart(const CString& name) {
        const LocalFile* sent = TakeOut(name);
        const bool isFetched = m_purpose != Purpose::Push && !m_kind.folder.empty();
        if (isFetched && (m_purpose == Purpose::Pull || !sent))
            return ReadOrTell(LocalFile(m_kind.folder + name), m_isWhole);
        return sent ? ReadOrTell(*sent, m_isWhole) : std::nullopt;
    }

    // The file of that name, else one that differs from it by case alone; null: none.
    const LocalFile* TakeOut(const CString& name) {
        const auto [first, last] = m_unmatched.equal_range(Platform::FoldCase(name));
        if (first == last)
            return nullptr;
        const auto exact = std::find_if(
            first, last, [&name](const auto& entry) { return entry.second->Name() == name; });
        const auto found = exact != last ? exact : first;
        const LocalFile* file = found->second;
        m_unmatched.erase(found);
        return file;
    }

    const MovedKind& m_kind;
    Purpose m_purpose;
    bool& m_isWhole;
    ComparedKind m_result;
    std::multimap<CString, const LocalFile*> m_unmatched; // by folded name
};

ComparedKind CompareFiles(const StoredContents& stored, const MovedKind& kind, Purpose purpose,
                          bool& isWhole) {
    KindComparison comparison(kind, purpose, isWhole);
    stored.LookAtFiles(kind.group, kind.name,
                       [&](const StoredContent& file) { comparison.Take(file); });
    return comparison.Finish();
}

// Files travel with the text only: without a text nothing is sent.
ComparedKind CompareSettings(const StoredContents& stored, const MovedKind& kind, Purpose purpose,
                             bool& isWhole) {
    const auto& configuration = *ZEBGis::CModuleConfiguration::Instance();
    const CString xml = configuration.GetCurrentGSXML();
    if (xml.empty())
        ReadOrTell(LocalFile(configuration.GetPath(u"support") + u"GeneralSettings.xml"), isWhole);
    const Content here = xml.empty() ? Content() : Platform::ToUtf8(xml);
    const MovedKind nothing{kind.group, kind.name, {}, {}};
    KindComparison comparison(here ? kind : nothing, purpose, isWhole);
    bool isStored = false;
    stored.LookAtSettings(kind.name, [&](const StoredContent& text) {
        comparison.TakeText(text, here);
        isStored = true;
    });
    if (!isStored)
        comparison.AddOnlyHere({}, here);
    stored.LookAtSettingsFiles(kind.name,
                               [&](const StoredContent& file) { comparison.Take(file); });
    return comparison.Finish();
}

// The files that items name and that are there; each item is a kind of its own, because two
// items may bring the same file.
std::vector<Storage::NamedFile> FilesOfCatalogues(const std::optional<CString>& reference) {
    std::vector<Storage::NamedFile> files;
    auto& catalogues = *ZEBGis::Data::CCatalogManager::Instance();
    for (const auto& metadata : CataloguesOf(reference)) {
        const auto catalogue =
            catalogues.GetCatalog(metadata->GetCatalogReference().c_str(), /*load*/ 1);
        if (!catalogue || metadata->GetFileProperties().empty())
            continue; // one that cannot be read is told when it is its turn
        LookAtItems(*catalogue, [&](const ZEBGis::Data::CCatalogItem& item) {
            LookAtFileNames(*metadata, item, [&](const CString& name, const CString&) {
                const auto sizeBytes = Platform::FileSize(metadata->GetFilesFolder() + name);
                files.push_back({metadata->GetCatalogReference() + u"/" + item.GetGUID(), name,
                                 sizeBytes.value_or(0)});
            });
        });
    }
    return files;
}

std::vector<ComparedKind> CompareItems(const OpenStorage& storage, const Selected& selected,
                                       bool& isWhole) {
    return selected.group == Group::Catalogues
               ? CompareCatalogues(storage, selected.name, isWhole)
               : CompareDefinitions(storage, selected.name, isWhole);
}

} // namespace

Comparison Compare(const OpenStorage& storage, const std::vector<Selected>& selection,
                   Purpose purpose) {
    auto* administration = storage.plugin.administration;
    if (administration)
        administration->TakeLastProblem(); // an older one is none of ours
    const StoredContents stored(storage);
    const auto dependents =
        purpose == Purpose::Push ? Dependents::WithFilesOnly : Dependents::Always;
    Comparison comparison;
    bool isWhole = true;
    for (const MovedKind& kind : MovedKinds(storage.manager, selection, dependents))
        comparison.kinds.push_back(kind.group == Group::GS
                                       ? CompareSettings(stored, kind, purpose, isWhole)
                                       : CompareFiles(stored, kind, purpose, isWhole));
    for (const Selected& selected : selection) {
        if (HoldsItems(selected.group))
            std::ranges::move(CompareItems(storage, selected, isWhole),
                              std::back_inserter(comparison.kinds));
    }
    if (!storage.manager.IsRepositoryAccessible())
        throw AppError(ExitStatus::NotReachable, Text(Message::NotListed));
    const auto problem =
        administration ? administration->TakeLastProblem() : Storage::Problem::None;
    if (problem != Storage::Problem::None)
        comparison.status = StatusOf(problem);
    else if (!isWhole)
        comparison.status = ExitStatus::LocalFile;
    return comparison;
}

void CheckWhatWouldBeSent(const OpenStorage& storage, const std::vector<Selected>& selection) {
    auto* administration = storage.plugin.administration;
    if (!administration)
        return;
    std::vector<Storage::NamedFile> files;
    for (const MovedKind& kind :
         MovedKinds(storage.manager, selection, Dependents::WithFilesOnly)) {
        // The files of general settings have no kind whose names they could cross.
        if (kind.group == Group::GS)
            continue;
        for (const LocalFile& file : kind.files) {
            if (const auto sizeBytes = file.SizeBytes())
                files.push_back({kind.name, file.Name(), *sizeBytes});
        }
    }
    for (const Selected& selected : selection) {
        if (selected.group == Group::Catalogues)
            std::ranges::move(FilesOfCatalogues(selected.name), std::back_inserter(files));
    }
    CString problemText;
    const Storage::Problem problem = administration->CheckNames(files, problemText);
    if (problem == Storage::Problem::Refused)
        throw AppError(StatusOf(problem), problemText + u"\n" + Text(Message::NothingSent));
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
}

} // namespace App
