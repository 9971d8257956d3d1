// SPDX-License-Identifier: MIT
#include "app/Verbs.h"

namespace App {

const std::vector<Verb>& Verbs() {
    static const std::vector<Verb> kVerbs = {
        {"init",
         Words::None,
         "",
         {},
         {{"init", Message::ExampleInit},
          {"init --support ~/drawings", Message::ExampleInitSupport}},
         Message::SummaryInit,
         Message::DetailsInit,
         RunInit},
        {"connect",
         Words::OneOrNone,
         "[URL]",
         {{"--create", nullptr, Message::HelpCreate}},
         {{"connect --create", Message::ExampleConnectCreate},
          {"connect sqlite:/srv/zeb/repository.db", Message::ExampleConnectUrl},
          {"connect", Message::ExampleConnect}},
         Message::SummaryConnect,
         Message::DetailsConnect,
         RunConnect},
        {"status",
         Words::None,
         "",
         {},
         {{"status", Message::ExampleStatus}},
         Message::SummaryStatus,
         Message::DetailsStatus,
         RunStatus},
        {"push",
         Words::Any,
         "[SELECTION...]",
         {{"--dry-run", nullptr, Message::HelpDryRunPush}},
         {{"push", Message::ExamplePush},
          {"push ncf:002_NODE", Message::ExamplePushNodes},
          {"push --dry-run", Message::ExamplePushDryRun}},
         Message::SummaryPush,
         Message::DetailsPush,
         RunPush},
        {"pull",
         Words::Any,
         "[SELECTION...]",
         {{"--dry-run", nullptr, Message::HelpDryRunPull}},
         {{"pull", Message::ExamplePull},
          {"pull foc:005_TOPOLOGY_CONFIG gs", Message::ExamplePullTwo},
          {"pull --dry-run", Message::ExamplePullDryRun}},
         Message::SummaryPull,
         Message::DetailsPull,
         RunPull},
        {"diff",
         Words::Any,
         "[SELECTION...]",
         {{"--files", nullptr, Message::HelpFiles}},
         {{"diff", Message::ExampleDiff}, {"diff --files ncf:002_NODE", Message::ExampleDiffFiles}},
         Message::SummaryDiff,
         Message::DetailsDiff,
         RunDiff},
        {"ls",
         Words::Any,
         "[SELECTION...]",
         {},
         {{"ls", Message::ExampleLs}, {"ls ncf:002_NODE", Message::ExampleLsKind}},
         Message::SummaryLs,
         Message::DetailsLs,
         RunLs},
        {"items",
         Words::Any,
         "TAG ACTION [ID|FILE] [NAME]",
         {},
         {{"items PIPE_DEFINITIONS list", Message::ExampleItemsList},
          {"items PIPE_DEFINITIONS show PE-110", Message::ExampleItemsShow},
          {"items PIPE_DEFINITIONS add pipes.xml", Message::ExampleItemsAdd},
          {"items PIPE_DEFINITIONS rename PE-110 \"PE 110\"", Message::ExampleItemsRename}},
         Message::SummaryItems,
         Message::DetailsItems,
         RunItems},
        {"log",
         Words::Any,
         "[SELECTION...]",
         {{"--limit", "N", Message::HelpLimit}},
         {{"log", Message::ExampleLog}, {"log --limit 1 ncf:002_NODE", Message::ExampleLogKind}},
         Message::SummaryLog,
         Message::DetailsLog,
         RunLog},
        {"doctor",
         Words::None,
         "",
         {},
         {{"doctor", Message::ExampleDoctor}},
         Message::SummaryDoctor,
         Message::DetailsDoctor,
         RunDoctor},
        {"repo check",
         Words::None,
         "",
         {},
         {{"repo check", Message::ExampleRepoCheck}},
         Message::SummaryRepoCheck,
         Message::DetailsRepoCheck,
         RunRepoCheck},
        {"run",
         Words::One,
         "COMMAND",
         {},
         {{"run test", Message::ExampleRun}},
         Message::SummaryRun,
         Message::DetailsRun,
         RunCommand},
        {"config show",
         Words::None,
         "",
         {{"--origin", nullptr, Message::HelpOrigin}},
         {{"config show", Message::ExampleConfigShow},
          {"config show --origin", Message::ExampleConfigOrigin}},
         Message::SummaryConfigShow,
         Message::DetailsConfigShow,
         RunConfigShow},
        {"version",
         Words::None,
         "",
         {},
         {{"version", Message::ExampleVersion}},
         Message::SummaryVersion,
         Message::DetailsVersion,
         RunVersion},
    };
    return kVerbs;
}

std::string GroupOf(const Verb& verb) {
    const std::string_view name = verb.name;
    const auto blank = name.find(' ');
    return std::string(blank == std::string_view::npos ? "" : name.substr(0, blank));
}

std::string LastWordOf(const Verb& verb) {
    const std::string_view name = verb.name;
    return std::string(name.substr(name.find(' ') + 1));
}

const std::vector<Option>& CommonOptions() {
    using Platform::Setting;
    static const std::vector<Option> kOptions = {
        {"--config", "FILE", Message::HelpConfig, Setting::Config},
        {"--install", "DIR", Message::HelpInstall, Setting::Install},
        {"--support", "DIR", Message::HelpSupport, Setting::Support},
        {"--language", "LANG", Message::HelpLanguage, Setting::Language, {"en", "hr"}},
        {"--json", nullptr, Message::HelpJson},
        {"--quiet", nullptr, Message::HelpQuiet},
        {"--verbose", nullptr, Message::HelpVerbose},
        {"--progress", "WHEN", Message::HelpProgress, std::nullopt, {"auto", "always", "never"}},
        {"--help", nullptr, Message::HelpHelp},
    };
    return kOptions;
}

const std::vector<Example>& FirstExamples() {
    static const std::vector<Example> kExamples = {
        {"init", Message::ExampleInit},
        {"connect --create", Message::ExampleConnectCreate},
        {"push", Message::ExamplePush},
        {"pull", Message::ExamplePull},
        {"ls ncf:002_NODE", Message::ExampleLsKind},
        {"status", Message::ExampleStatus},
    };
    return kExamples;
}

} // namespace App
