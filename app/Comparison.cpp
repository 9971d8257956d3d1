// SPDX-License-Identifier: MIT
#include "app/Comparison.h"

#include "app/MovedKinds.h"
#include "app/StoredContent.h"
#include "app/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <map>
#include <set>

namespace App {
namespace {

using Content = std::optional<std::string>;

std::int64_t SizeOf(const Content& content) {
    return content ? static_cast<std::int64_t>(content->size()) : 0;
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
    KindComparison(const MovedKind& kind, Purpose purpose)
        : m_kind(kind), m_purpose(purpose), m_result{kind.group, kind.name, {}} {
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
            AddOnlyHere(file->Name(), file->Read());
        return std::move(m_result);
    }

private:
    // What this workstation has under a stored file's name.
    Content ReadCounterpart(const CString& name) {
        const LocalFile* sent = TakeOut(name);
        const bool isFetched = m_purpose != Purpose::Push && !m_kind.folder.empty();
        if (isFetched && (m_purpose == Purpose::Pull || !sent))
            return LocalFile(m_kind.folder + name).Read();
        return sent ? sent->Read() : std::nullopt;
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
    ComparedKind m_result;
    std::multimap<CString, const LocalFile*> m_unmatched; // by folded name
};

ComparedKind CompareFiles(const StoredContents& stored, const MovedKind& kind, Purpose purpose) {
    KindComparison comparison(kind, purpose);
    stored.LookAtFiles(kind.group, kind.name,
                       [&](const StoredContent& file) { comparison.Take(file); });
    return comparison.Finish();
}

// Files travel with the text only: without a text nothing is sent.
ComparedKind CompareSettings(const StoredContents& stored, const MovedKind& kind, Purpose purpose) {
    const CString xml = ZEBGis::CModuleConfiguration::Instance()->GetCurrentGSXML();
    const Content here = xml.empty() ? Content() : Platform::ToUtf8(xml);
    const MovedKind nothing{kind.group, kind.name, {}, {}};
    KindComparison comparison(here ? kind : nothing, purpose);
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

} // namespace

std::vector<ComparedKind> Compare(const OpenStorage& storage,
                                  const std::vector<Selected>& selection, Purpose purpose) {
    const StoredContents stored(storage);
    const auto dependents =
        purpose == Purpose::Push ? Dependents::WithFilesOnly : Dependents::Always;
    std::vector<ComparedKind> kinds;
    for (const MovedKind& kind : MovedKinds(storage.manager, selection, dependents))
        kinds.push_back(kind.group == Group::GS ? CompareSettings(stored, kind, purpose)
                                                : CompareFiles(stored, kind, purpose));
    if (!storage.manager.IsRepositoryAccessible())
        throw AppError(ExitStatus::NotReachable, Text(Message::NotListed));
    return kinds;
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
    CString problemText;
    const Storage::Problem problem = administration->CheckNames(files, problemText);
    if (problem == Storage::Problem::Refused)
        throw AppError(StatusOf(problem), problemText + u"\n" + Text(Message::NothingSent));
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
}

} // namespace App
