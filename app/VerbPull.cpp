// SPDX-License-Identifier: MIT
#include "app/Catalogues.h"
#include "app/ComparisonTable.h"
#include "app/Definitions.h"
#include "app/Print.h"
#include "app/Transfer.h"
#include "app/Verbs.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/text/Numbers.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {
namespace {

using namespace ZEBGis::Workspace;

// The family's messages that the dialog's page writes for the same operation.
constexpr int kGsLoaded = 10369;
constexpr int kGsNotLoaded = 10371;

class Pull {
public:
    Pull(Session& session, const OpenStorage& storage, bool everything)
        : m_session(session), m_storage(storage), m_manager(storage.manager),
          m_everything(everything) {}

    Outcome operator()(const Selected& selected) const {
        if (selected.group == Group::GS)
            return FetchGs(selected);
        if (selected.group == Group::Catalogues)
            return PullCatalogues(m_session, m_storage, selected.name);
        if (selected.group == Group::Items)
            return PullDefinitions(m_storage, selected.name);
        return Fetch(selected) ? Outcome::Done : Outcome::FailedHere;
    }

private:
    Outcome FetchGs(const Selected& selected) const {
        std::vector<CString> names;
        if (m_manager.GetAvailableGS(names) && !Holds(names, selected))
            return TellNoGs(selected);
        const bool loaded = LoadGs(selected) != 0;
        LogFamilyText(loaded ? MessageSuccess : MessageFailure, loaded ? kGsLoaded : kGsNotLoaded);
        return loaded ? Outcome::Done : Outcome::FailedHere;
    }

    static bool Holds(const std::vector<CString>& names, const Selected& selected) {
        if (!selected.name)
            return !names.empty();
        return std::find(names.begin(), names.end(), *selected.name) != names.end();
    }

    Outcome TellNoGs(const Selected& selected) const {
        Log(m_everything ? MessageWarning : MessageFailure,
            selected.name ? Text(Message::NoGsOfThatName, {*selected.name})
                          : Text(Message::NoGsInRepository));
        return m_everything ? Outcome::Done : Outcome::Failed;
    }

    int LoadGs(const Selected& selected) const {
        if (!selected.name)
            return m_manager.SaveGSLocally();
        CString xml;
        return m_manager.LoadGS(xml, selected.name->c_str()) &&
               ZEBGis::CModuleConfiguration::Instance()->ForceSaveGSLocal(xml.c_str(), nullptr);
    }

    int Fetch(const Selected& selected) const {
        if (selected.group == Group::FOC)
            return selected.name ? m_manager.LoadFOC(selected.name->c_str(), 1)
                                 : m_manager.LoadAllFOC(1);
        return selected.name ? m_manager.LoadNCF(selected.name->c_str()) : m_manager.LoadAllNCFs();
    }

    Session& m_session;
    const OpenStorage& m_storage;
    Repository::CRepositoryStorageManager& m_manager;
    bool m_everything;
};

// A file has one line in the log, written or failed.
void GiveResult(Session& session, const OpenStorage& storage, const TransferResult& result) {
    using Align = Table::Align;
    Table table({{Text(Message::TitleSelection)},
                 {Text(Message::TitleFiles), Align::Right},
                 {Text(Message::TitleItems), Align::Right},
                 {Text(Message::TitleFailures), Align::Right}});
    Json selections = Json::array();
    for (const Transferred& one : result.selections) {
        table.Add({WordFor(one.selected), Platform::ToText(one.files), Platform::ToText(one.items),
                   Platform::ToText(one.failures)});
        selections.push_back({{"selection", WordFor(one.selected)},
                              {"files", one.files},
                              {"items", one.items},
                              {"failures", one.failures}});
    }
    table.Print(session.out);
    session.result = {{"selections", std::move(selections)}, {"revision", nullptr}};
    auto* administration = storage.plugin.administration;
    if (!administration || !storage.manager.IsRepositoryAccessible())
        return;
    const std::int64_t revision = StateOf(*administration).revision;
    PrintLine(session.out, Text(Message::RevisionNow, {Platform::ToText(revision)}));
    session.result["revision"] = revision;
}

} // namespace

ExitStatus RunPull(Session& session, const Invocation& invocation) {
    const std::vector<Selected> selection = ParseSelection(invocation.words);
    const OpenStorage storage = RequireStorageFor(selection);
    if (invocation.Has("--dry-run"))
        return GivePlan(session, Compare(storage, selection, Purpose::Pull), Purpose::Pull);
    const TransferResult result =
        Transfer(session, storage, selection, Pull(session, storage, invocation.words.empty()));
    GiveResult(session, storage, result);
    return result.Status();
}

} // namespace App
