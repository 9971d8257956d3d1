// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include "platform/os/File.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <ostream>

namespace App {
namespace {

using Platform::Setting;

// Labels and values, aligned when all of them are known.
class Facts {
public:
    void Add(Message label, CString value) { m_facts.emplace_back(Text(label), std::move(value)); }

    void Print(std::ostream& out) const {
        std::size_t width = 0;
        for (const auto& [label, value] : m_facts)
            width = std::max(width, WidthOf(label));
        for (const auto& [label, value] : m_facts)
            PrintLine(out, PadRight(label, width + 2) + value);
    }

private:
    std::vector<std::pair<CString, CString>> m_facts;
};

CString YesOrNo(bool yes) {
    return Text(yes ? Message::Yes : Message::No);
}

CString PathOf(Setting setting) {
    return Platform::UserSettings::Instance()->Get(setting).value;
}

CString PathAndWhetherThere(Setting setting) {
    const CString path = PathOf(setting);
    const CString shown = ShownPath(path);
    return Platform::PathExists(path) ? shown : shown + u" " + Text(Message::NotThere);
}

void AddWorkstation(Facts& facts) {
    facts.Add(Message::LabelProgram, Platform::FromUtf8(ZEBX_VERSION));
    facts.Add(Message::LabelInstallation, PathAndWhetherThere(Setting::Install));
    facts.Add(Message::LabelSupport, PathAndWhetherThere(Setting::Support));
    facts.Add(Message::LabelSettings, PathAndWhetherThere(Setting::Config));
    facts.Add(Message::LabelLanguage, PathOf(Setting::Language));
}

CString RevisionOf(const Storage::RepositoryState& state) {
    if (state.revision == 0)
        return Text(Message::NoRevision);
    return Platform::ToText(state.revision) + u", " + state.revisionTime + u", " +
           state.revisionUser;
}

void AddRepository(Facts& facts, const OpenStorage& storage) {
    auto* administration = storage.plugin.administration;
    // The administration first, as in RequireRepository.
    const auto state = administration ? administration->State() : Storage::RepositoryState();
    const bool reachable = storage.manager.IsRepositoryAccessible() != 0;
    if (administration) {
        facts.Add(Message::LabelRepository, state.address);
        if (!state.engine.empty())
            facts.Add(Message::LabelEngine, state.engine);
    }
    facts.Add(Message::LabelReachable, YesOrNo(reachable));
    if (!reachable)
        return;
    facts.Add(Message::LabelRights,
              Text(storage.manager.AmIAdmin() ? Message::RightsWrite : Message::RightsRead));
    if (!administration)
        return;
    facts.Add(Message::LabelRevision, RevisionOf(state));
    facts.Add(Message::LabelFiles, Platform::ToText(state.files));
    facts.Add(Message::LabelContent,
              Text(Message::ContentBytes, {Platform::ToText(state.contentBytes)}));
}

} // namespace

ExitStatus RunStatus(Session& session, const Invocation&) {
    Facts facts;
    AddWorkstation(facts);
    auto& manager = *Repository::CRepositoryStorageManager::Instance();
    const StoragePlugin plugin = FindStoragePlugin();
    if (manager.IsInitialized()) {
        facts.Add(Message::LabelPlugin,
                  manager.GetRepositroyStorageName() + u" (" + plugin.file + u")");
        AddRepository(facts, {manager, plugin});
    } else {
        facts.Add(Message::LabelPlugin, Text(Message::NoPlugin));
    }
    facts.Print(session.out);
    if (!Platform::PathExists(PathOf(Setting::Config)) ||
        !Platform::PathExists(PathOf(Setting::Support)))
        PrintLine(session.out, Text(Message::HintInit));
    // What is missing is told as every other verb tells it, with its exit status.
    session.out.flush();
    RequireRepository(RequireStorage());
    return ExitStatus::Done;
}

} // namespace App
