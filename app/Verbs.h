// SPDX-License-Identifier: MIT
// The program's verbs as data: the parser and the help are made from this table.
#pragma once

#include "app/AppError.h"
#include "app/Session.h"
#include "app/Texts.h"

#include "platform/os/UserSettings.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace App {

struct Verb;

// What a command line said.
struct Invocation {
    const Verb* verb = nullptr; // null: help about the group or the program
    std::string group;          // "repo" of "repo check"; empty: none
    bool help = false;
    std::vector<CString> words;             // behind the verb
    std::map<std::string, CString> options; // by name; a flag's value is empty

    bool Has(const std::string& option) const { return options.contains(option); }
};

struct Option {
    const char* name;
    const char* valueName; // null: a flag
    Message help;
    std::optional<Platform::Setting> setting = std::nullopt; // that it overrides
    std::vector<const char*> values = {};                    // empty: any
};

struct Example {
    const char* line; // behind "zebx "
    Message help;
};

// How many words a verb takes.
enum class Words { None, OneOrNone, One, Two, Any };

struct Verb {
    const char* name; // one word or, in a group, two: "repo check"
    Words words;
    const char* wordsName;
    std::vector<Option> options;
    std::vector<Example> examples;
    Message summary;
    Message details;
    // Gives the exit status or throws AppError.
    ExitStatus (*run)(Session&, const Invocation&);
};

// In the order in which a new user needs them.
const std::vector<Verb>& Verbs();

// Of "repo check": "repo" and "check".  Of a verb in no group: "" and its name.
std::string GroupOf(const Verb& verb);
std::string LastWordOf(const Verb& verb);

// Taken by every verb, before or behind it.
const std::vector<Option>& CommonOptions();

// Shown by the program's own help.
const std::vector<Example>& FirstExamples();

// One file each: VerbInit.cpp, VerbConnect.cpp...
ExitStatus RunInit(Session& session, const Invocation& invocation);
ExitStatus RunConnect(Session& session, const Invocation& invocation);
ExitStatus RunStatus(Session& session, const Invocation& invocation);
ExitStatus RunPush(Session& session, const Invocation& invocation);
ExitStatus RunPull(Session& session, const Invocation& invocation);
ExitStatus RunDiff(Session& session, const Invocation& invocation);
ExitStatus RunLog(Session& session, const Invocation& invocation);
ExitStatus RunDoctor(Session& session, const Invocation& invocation);
ExitStatus RunRepoCheck(Session& session, const Invocation& invocation);
ExitStatus RunRepoCreate(Session& session, const Invocation& invocation);
ExitStatus RunRepoGrant(Session& session, const Invocation& invocation);
ExitStatus RunRepoUsers(Session& session, const Invocation& invocation);
ExitStatus RunRepoUpgrade(Session& session, const Invocation& invocation);
ExitStatus RunRepoCopy(Session& session, const Invocation& invocation);
ExitStatus RunRepoExport(Session& session, const Invocation& invocation);
ExitStatus RunRepoImport(Session& session, const Invocation& invocation);
ExitStatus RunItems(Session& session, const Invocation& invocation);
ExitStatus RunLs(Session& session, const Invocation& invocation);
ExitStatus RunCatalogue(Session& session, const Invocation& invocation);
ExitStatus RunDialog(Session& session, const Invocation& invocation);
ExitStatus RunConsole(Session& session, const Invocation& invocation);
ExitStatus RunCommand(Session& session, const Invocation& invocation);
ExitStatus RunConfigShow(Session& session, const Invocation& invocation);
ExitStatus RunVersion(Session& session, const Invocation& invocation);

} // namespace App
