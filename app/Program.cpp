// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include "app/CommandLine.h"
#include "app/Help.h"
#include "app/Print.h"
#include "app/Report.h"
#include "app/SettingsInForce.h"
#include "app/StoragePlugin.h"

#include "platform/os/Environment.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <iostream>
#include <new>
#include <sstream>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Platform::UserSettings;

// Only the real standard error can be a terminal; a stream of a test cannot.
bool IsOnTerminal(const std::ostream& err) {
    return &err == &std::cerr && Platform::IsTerminal(2);
}

// The terminal's, or what is readable on every one.
std::size_t WidthOfTerminal(const std::ostream& err) {
    const std::size_t columns = IsOnTerminal(err) ? Platform::TerminalColumns(2) : 0;
    return columns > 1 ? columns : kLineWidth;
}

// What is no terminal gets each message as one line.
std::size_t LineWidth(const std::ostream& err) {
    return IsOnTerminal(err) ? WidthOfTerminal(err) : 0;
}

TerminalStyle StyleFor(const Invocation& invocation, const std::ostream& err) {
    const auto when = invocation.options.find("--progress");
    const CString progress = when == invocation.options.end() ? CString(u"auto") : when->second;
    TerminalStyle style;
    style.colour = IsOnTerminal(err) && !Platform::EnvironmentValue("NO_COLOR");
    style.lineWidth = LineWidth(err);
    style.quiet = invocation.Has("--quiet");
    style.verbose = invocation.Has("--verbose") && !style.quiet;
    const bool mayShow = IsOnTerminal(err) && !style.quiet && !invocation.Has("--json");
    if (progress == u"always" || (progress == u"auto" && mayShow))
        style.progressWidth = WidthOfTerminal(err) - 1; // a full line would begin a new one
    return style;
}

void ApplySettings(const Invocation& invocation) {
    for (const Option& option : CommonOptions()) {
        const auto given = invocation.options.find(option.name);
        if (option.setting && given != invocation.options.end())
            UserSettings::Instance()->SetOption(*option.setting, given->second);
    }
}

// As messages that do not go to the log file: they come up again at each run.
void TellSettingsProblems(const std::vector<boost::shared_ptr<IWsSink>>& sinks) {
    for (const auto& problem : UserSettings::Instance()->Problems()) {
        CString place = ShownPath(problem.file);
        if (problem.line > 0)
            place += u":" + Platform::ToText(problem.line);
        CWsMessage message;
        message.type = MessageWarning;
        message.text = Text(Message::SettingsProblem, {place, problem.text});
        for (const auto& sink : sinks)
            sink->Write(message);
    }
}

ExitStatus RunVerb(const Invocation& invocation, std::istream& in, std::ostream& out,
                   std::ostream& err, Report& report) {
    const auto terminal = boost::make_shared<TerminalSink>(err, StyleFor(invocation, err));
    const auto keeper = boost::make_shared<ReportSink>(report);
    TellSettingsProblems({terminal, keeper});
    for (const SettingInForce& setting : SettingsInForce())
        terminal->Note(Text(Message::NoteSetting, {Platform::FromUtf8(setting.name), setting.value,
                                                   OriginText(setting)}));
    const auto counter = boost::make_shared<CountingSink>();
    const SinkGuard counting(counter);
    const SinkGuard showing(terminal);
    const SinkGuard keeping(keeper);
    const SinkGuard logging(boost::make_shared<CWsLogFile>(
        UserSettings::Instance()->Get(Platform::Setting::WorkspaceLog).value));
    NameApplication(u"zebx " + Platform::FromUtf8(ZEBX_VERSION) + u" " +
                    Platform::FromUtf8(invocation.verb->name));
    Session session{in, out, *terminal, *counter, report.result};
    try {
        return invocation.verb->run(session, invocation);
    } catch (const AppError& error) {
        // The plug-in may have logged what stops the verb already: once is enough.
        if (!terminal->HasShown(error.Text()))
            throw;
        report.SetError(error.Status(), error.Text());
        return error.Status();
    }
}

ExitStatus Help(const Invocation& invocation, std::ostream& out, Report& report) {
    std::ostringstream text;
    if (invocation.verb)
        PrintHelp(text, *invocation.verb);
    else if (!invocation.group.empty())
        PrintHelp(text, invocation.group);
    else
        PrintHelp(text);
    out << text.str();
    report.verb = "help";
    report.result = {{"text", text.str()}};
    return ExitStatus::Done;
}

ExitStatus Run(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err, Report& report) {
    UserSettings::Instance()->Reset();
    const Invocation invocation = ParseCommandLine(arguments);
    ApplySettings(invocation);
    if (invocation.verb)
        report.verb = invocation.verb->name;
    if (const CString missing = MissingTexts(); !missing.empty())
        throw AppError(ExitStatus::Configuration, missing);
    return invocation.help ? Help(invocation, out, report)
                           : RunVerb(invocation, in, out, err, report);
}

ExitStatus Fail(std::ostream& err, Report& report, ExitStatus status, const CString& text) {
    // Without the table the text would be a number.
    const CString missing = MissingTexts();
    const CString& told = missing.empty() ? text : missing;
    PrintLine(err, BrokenLines(u"zebx: " + told, 0, LineWidth(err)));
    status = missing.empty() ? status : ExitStatus::Configuration;
    report.SetError(status, told);
    return status;
}

// For what went wrong inside: takes care not to fail in turn.
ExitStatus FailInside(std::ostream& err, Report& report, Message message, const char* what) try {
    return Fail(err, report, ExitStatus::Internal, Text(message, {Platform::FromUtf8(what)}));
} catch (...) {
    err << "zebx: internal error\n";
    return ExitStatus::Internal;
}

// Does `work`, which gives an exit status; whatever it throws is told and becomes one.
template<typename Work>
ExitStatus Guarded(std::ostream& out, std::ostream& err, Report& report, const Work& work) try {
    try {
        return work();
    } catch (const AppError& error) {
        out.flush(); // what was done comes before what was not
        return Fail(err, report, error.Status(), error.Text());
    }
} catch (const std::bad_alloc&) {
    return FailInside(err, report, Message::NoMemory, "");
} catch (const std::exception& error) {
    return FailInside(err, report, Message::InternalError, error.what());
} catch (...) {
    return FailInside(err, report, Message::InternalError, "?");
}

void CheckIsWritten(std::ostream& out) {
    if (!out.flush())
        throw AppError(ExitStatus::LocalFile, Text(Message::OutputFailed));
}

// Looked for before anything can go wrong, so that every failure has its document.
bool AsksForJson(const std::vector<std::string>& arguments) {
    const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
    return std::find(arguments.begin(), dashes, "--json") != dashes;
}

} // namespace

int RunProgram(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err) {
    Report report;
    const bool json = AsksForJson(arguments);
    std::ostream nowhere(nullptr);
    std::ostream& text = json ? nowhere : out;
    const ExitStatus status = Guarded(text, err, report, [&] {
        const ExitStatus ended = Run(arguments, in, text, err, report);
        if (!json)
            CheckIsWritten(out);
        return ended;
    });
    if (!json)
        return static_cast<int>(status);
    return static_cast<int>(Guarded(out, err, report, [&] {
        WriteReport(out, report, status);
        CheckIsWritten(out);
        return status;
    }));
}

} // namespace App
