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

// Labels and values, aligned when all of them are known, and the same for --json.
class Facts {
public:
    // Every field is there, null where nothing is known.
    Facts() {
        for (const char* field :
             {"program", "installation", "support", "settings", "language", "plugin", "repository",
              "engine", "server", "reachable", "mayWrite", "revision", "revisionTime",
              "revisionUser", "files", "contentBytes"})
            m_json[field] = nullptr;
    }

    void Add(Message label, const CString& text, const char* field, const Json& value) {
        m_facts.emplace_back(Text(label), text);
        m_json[field] = value;
    }
    void Add(Message label, const CString& text, const char* field) {
        Add(label, text, field, Json(text));
    }
    // A part of the fact before it.
    void AddLine(Message label, const CString& text) { m_facts.emplace_back(Text(label), text); }
    // Something beside the text of another fact.
    void AddField(const char* field, const Json& value) { m_json[field] = value; }

    void Print(std::ostream& out) const {
        std::size_t width = 0;
        for (const auto& [label, value] : m_facts)
            width = std::max(width, WidthOf(label));
        for (const auto& [label, value] : m_facts)
            PrintLine(out, PadRight(label, width + 2) + value);
    }
    const Json& AsJson() const { return m_json; }

private:
    std::vector<std::pair<CString, CString>> m_facts;
    Json m_json;
};

CString YesOrNo(bool yes) {
    return Text(yes ? Message::Yes : Message::No);
}

CString PathOf(Setting setting) {
    return Platform::UserSettings::Instance()->Get(setting).value;
}

void AddPath(Facts& facts, Message label, const char* field, Setting setting) {
    const CString path = PathOf(setting);
    const CString shown = ShownPath(path);
    const bool exists = Platform::PathExists(path);
    facts.Add(label, exists ? shown : shown + u" " + Text(Message::NotThere), field,
              {{"path", shown}, {"exists", exists}});
}

void AddWorkstation(Facts& facts) {
    facts.Add(Message::LabelProgram, Platform::FromUtf8(ZEBX_VERSION), "program");
    AddPath(facts, Message::LabelInstallation, "installation", Setting::Install);
    AddPath(facts, Message::LabelSupport, "support", Setting::Support);
    AddPath(facts, Message::LabelSettings, "settings", Setting::Config);
    facts.Add(Message::LabelLanguage, PathOf(Setting::Language), "language");
}

void AddRevision(Facts& facts, const Storage::RepositoryState& state) {
    facts.Add(Message::LabelRevision,
              state.revision == 0 ? Text(Message::NoRevision)
                                  : Platform::ToText(state.revision) + u", " + state.revisionTime +
                                        u", " + state.revisionUser,
              "revision", state.revision);
    facts.AddField("revisionTime", OrNull(state.revisionTime));
    facts.AddField("revisionUser", OrNull(state.revisionUser));
}

CString WithNotes(const CString& server, const Storage::ServerConnection& connection) {
    CString text = server;
    if (connection.isStandby)
        text += u" (" + Text(Message::OnStandby) + u")";
    if (connection.isPooled)
        text += u" (" + Text(Message::ThroughPooler) + u")";
    return text;
}

void AddServer(Facts& facts, const Storage::ServerConnection& connection) {
    if (connection.server.empty())
        return;
    const CString& encryption = connection.encryption;
    facts.Add(Message::LabelServer, WithNotes(connection.server, connection), "server",
              {{"server", connection.server},
               {"database", connection.database},
               {"schema", connection.schema},
               {"user", connection.user},
               {"encryption", OrNull(encryption)},
               {"application", connection.application},
               {"isStandby", connection.isStandby},
               {"isPooled", connection.isPooled}});
    facts.AddLine(Message::LabelDatabase, connection.database);
    facts.AddLine(Message::LabelSchema, connection.schema);
    facts.AddLine(Message::LabelServerUser, connection.user);
    facts.AddLine(Message::LabelEncryption,
                  encryption.empty() ? Text(Message::NotEncrypted) : encryption);
    facts.AddLine(Message::LabelApplication, connection.application);
}

// Gives what the administration said, so that a problem which passed meanwhile is told too.
Storage::RepositoryState AddRepository(Facts& facts, const OpenStorage& storage) {
    auto* administration = storage.plugin.administration;
    // The administration first, as in RequireRepository.
    const auto state = administration ? administration->State() : Storage::RepositoryState();
    const bool reachable =
        state.problem == Storage::Problem::None && storage.manager.IsRepositoryAccessible();
    if (administration) {
        facts.Add(Message::LabelRepository, state.address, "repository");
        if (!state.engine.empty())
            facts.Add(Message::LabelEngine, state.engine, "engine");
        AddServer(facts, state.server);
    }
    facts.Add(Message::LabelReachable, YesOrNo(reachable), "reachable", reachable);
    if (!reachable)
        return state;
    const bool mayWrite = storage.manager.AmIAdmin() != 0;
    facts.Add(Message::LabelRights, Text(mayWrite ? Message::RightsWrite : Message::RightsRead),
              "mayWrite", mayWrite);
    if (!administration)
        return state;
    AddRevision(facts, state);
    facts.Add(Message::LabelFiles, Platform::ToText(state.files), "files", state.files);
    facts.Add(Message::LabelContent,
              Text(Message::ContentBytes, {Platform::ToText(state.contentBytes)}), "contentBytes",
              state.contentBytes);
    return state;
}

void AddPlugin(Facts& facts, const CString& name, const CString& file) {
    facts.Add(Message::LabelPlugin, name + u" (" + file + u")", "plugin",
              {{"name", name}, {"file", file}});
}

} // namespace

ExitStatus RunStatus(Session& session, const Invocation&) {
    Facts facts;
    AddWorkstation(facts);
    auto& manager = *Repository::CRepositoryStorageManager::Instance();
    const StoragePlugin plugin = FindStoragePlugin();
    Storage::RepositoryState state;
    if (manager.IsInitialized()) {
        AddPlugin(facts, manager.GetRepositroyStorageName(), plugin.file);
        state = AddRepository(facts, {manager, plugin});
    } else {
        facts.Add(Message::LabelPlugin, Text(Message::NoPlugin), "plugin", Json());
    }
    facts.Print(session.out);
    session.result = facts.AsJson();
    if (!Platform::PathExists(PathOf(Setting::Config)) ||
        !Platform::PathExists(PathOf(Setting::Support)))
        PrintLine(session.out, Text(Message::HintInit));
    // What is missing is told as every other verb tells it, with its exit status.
    session.out.flush();
    if (state.problem != Storage::Problem::None)
        throw AppError(StatusOf(state.problem), state.problemText);
    RequireRepository(RequireStorage());
    return ExitStatus::Done;
}

} // namespace App
