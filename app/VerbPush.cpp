// SPDX-License-Identifier: MIT
#include "app/Catalogues.h"
#include "app/ComparisonTable.h"
#include "app/Definitions.h"
#include "app/Listing.h"
#include "app/Print.h"
#include "app/Transfer.h"
#include "app/Verbs.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/LocalContent.h"
#include "platform/os/File.h"
#include "platform/text/Numbers.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {
namespace {

using namespace ZEBGis::Workspace;

// The family's messages that the administrator's page writes for the same operations.
constexpr int kGsSent = 10373;
constexpr int kGsNotSent = 10374;
constexpr int kFilesSent = 10712;
constexpr int kFilesNotSent = 10713;

class Push {
public:
    Push(Session& session, const OpenStorage& storage, bool everything)
        : m_session(session), m_storage(storage), m_manager(storage.manager),
          m_everything(everything) {}

    Outcome operator()(const Selected& selected) const {
        if (selected.group == Group::GS)
            return SendGs(selected);
        if (selected.group == Group::Catalogues)
            return PushCatalogues(m_session, m_storage, selected.name);
        if (selected.group == Group::Items)
            return PushDefinitions(m_storage, selected.name);
        return SendFiles(selected);
    }

private:
    Outcome SendGs(const Selected& selected) const {
        const auto& configuration = *ZEBGis::CModuleConfiguration::Instance();
        const CString support = configuration.GetPath(u"support");
        CString xml = configuration.GetCurrentGSXML();
        if (xml.empty() && IsUnread(support + u"GeneralSettings.xml"))
            return Outcome::FailedHere; // the transfer tells why
        if (xml.empty())
            xml = configuration.GetCurrentGSXML(); // what could not be read a moment ago
        if (xml.empty()) {
            Log(m_everything ? MessageWarning : MessageFailure,
                Text(Message::NoLocalGs, {ShownPath(support)}));
            return m_everything ? Outcome::Done : Outcome::Failed;
        }
        const char16_t* name = selected.name ? selected.name->c_str() : nullptr;
        const bool sent = m_manager.SaveGS(xml.c_str(), name) > 0;
        LogFamilyText(sent ? MessageSuccess : MessageFailure, sent ? kGsSent : kGsNotSent);
        return sent ? Outcome::Done : Outcome::Failed;
    }

    static bool IsUnread(const CString& path) {
        CString name;
        std::string bytes;
        return !Repository::ReadLocalFile(path, name, bytes) && Platform::PathExists(path);
    }

    Outcome SendFiles(const Selected& selected) const {
        const int failuresBefore = m_session.log.Failures();
        const bool sent = Send(selected) != 0;
        // What failed is told once: by the manager, and only where it says nothing, here.
        if (sent)
            LogFamilyText(MessageSuccess, kFilesSent);
        else if (m_session.log.Failures() == failuresBefore)
            LogFamilyText(MessageFailure, kFilesNotSent);
        return sent ? Outcome::Done : Outcome::Failed;
    }

    int Send(const Selected& selected) const {
        if (selected.group == Group::FOC)
            return selected.name ? m_manager.SaveFOC(selected.name->c_str(), 1)
                                 : m_manager.SaveAllFOC(1);
        return selected.name ? m_manager.SaveNCF(selected.name->c_str()) : m_manager.SaveAllNCFs();
    }

    Session& m_session;
    const OpenStorage& m_storage;
    Repository::CRepositoryStorageManager& m_manager;
    bool m_everything;
};

struct Total {
    CString word;
    std::int64_t files = 0;
    std::int64_t changed = 0;
    std::int64_t bytes = 0;
    int failures = 0;
};

// The line that counts the entry: its selection's, else one of its kind; null when nothing
// of it is to be told.
Total* LineFor(std::vector<Total>& totals, const std::vector<Transferred>& selections,
               const StoredEntry& entry, bool changed) {
    for (std::size_t i = 0; i < selections.size(); ++i) {
        if (Covers(selections[i].selected, entry))
            return &totals[i];
    }
    if (!changed)
        return nullptr;
    const CString word = WordFor(entry.group, entry.kind);
    const auto found = std::ranges::find(totals, word, &Total::word);
    return found != totals.end() ? &*found : &totals.emplace_back(Total{word});
}

// What the repository holds of the selections now, and what else changed: the drawings
// that travelled with a set of configuration files.
std::vector<Total> Totals(const TransferResult& result, const std::vector<StoredEntry>& entries,
                          std::int64_t revisionBefore) {
    std::vector<Total> totals;
    for (const Transferred& one : result.selections)
        totals.push_back({WordFor(one.selected), 0, 0, 0, one.failures});
    for (const StoredEntry& entry : entries) {
        const bool changed = entry.revision > revisionBefore;
        Total* total = LineFor(totals, result.selections, entry, changed);
        if (!total || !entry.isFile)
            continue;
        ++total->files;
        total->changed += changed ? 1 : 0;
        total->bytes += entry.sizeBytes;
    }
    return totals;
}

void GiveTotals(Session& session, const std::vector<Total>& totals) {
    using Align = Table::Align;
    Table table({{Text(Message::TitleSelection)},
                 {Text(Message::TitleStored), Align::Right},
                 {Text(Message::TitleChanged), Align::Right},
                 {Text(Message::TitleBytes), Align::Right},
                 {Text(Message::TitleFailures), Align::Right}});
    Json selections = Json::array();
    for (const Total& total : totals) {
        table.Add({total.word, Platform::ToText(total.files), Platform::ToText(total.changed),
                   Platform::ToText(total.bytes), Platform::ToText(total.failures)});
        selections.push_back({{"selection", total.word},
                              {"stored", total.files},
                              {"changed", total.changed},
                              {"bytes", total.bytes},
                              {"failures", total.failures}});
    }
    table.Print(session.out);
    session.result = {{"selections", std::move(selections)}};
}

// A storage without administration tells nothing of what it holds but the files themselves.
void GiveFailures(Session& session, const TransferResult& result) {
    Table table(
        {{Text(Message::TitleSelection)}, {Text(Message::TitleFailures), Table::Align::Right}});
    Json selections = Json::array();
    for (const Transferred& one : result.selections) {
        table.Add({WordFor(one.selected), Platform::ToText(one.failures)});
        selections.push_back({{"selection", WordFor(one.selected)},
                              {"stored", nullptr},
                              {"changed", nullptr},
                              {"bytes", nullptr},
                              {"failures", one.failures}});
    }
    table.Print(session.out);
    session.result = {{"selections", std::move(selections)}, {"revision", nullptr}};
}

void GiveResult(Session& session, const OpenStorage& storage, const TransferResult& result,
                std::int64_t revisionBefore) {
    auto* administration = storage.plugin.administration;
    if (!administration || !storage.manager.IsRepositoryAccessible()) {
        GiveFailures(session, result);
        return;
    }
    GiveTotals(session, Totals(result, ListRepository(storage), revisionBefore));
    const std::int64_t revision = StateOf(*administration).revision;
    session.result["revision"] = revision;
    PrintLine(session.out,
              Text(revision == revisionBefore ? Message::NothingChanged : Message::RevisionNow,
                   {Platform::ToText(revision)}));
}

} // namespace

ExitStatus RunPush(Session& session, const Invocation& invocation) {
    const std::vector<Selected> selection = ParseSelection(invocation.words);
    const OpenStorage storage = RequireStorageFor(selection);
    RequireRights(storage);
    CheckWhatWouldBeSent(storage, selection);
    if (invocation.Has("--dry-run"))
        return GivePlan(session, Compare(storage, selection, Purpose::Push), Purpose::Push);
    auto* administration = storage.plugin.administration;
    const std::int64_t revisionBefore = administration ? StateOf(*administration).revision : 0;
    const TransferResult result =
        Transfer(session, storage, selection, Push(session, storage, invocation.words.empty()));
    GiveResult(session, storage, result, revisionBefore);
    return result.Status();
}

} // namespace App
