// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include "app/CommandLine.h"
#include "app/Help.h"
#include "app/Print.h"

#include "platform/os/Environment.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>
#include <iostream>
#include <new>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Platform::UserSettings;

// Only the real standard error can be a terminal; a stream of a test cannot.
bool TakesColours(const std::ostream& err) {
    return &err == &std::cerr && Platform::IsTerminal(2) && !Platform::EnvironmentValue("NO_COLOR");
}

void ApplySettings(const Invocation& invocation) {
    for (const Option& option : CommonOptions()) {
        const auto given = invocation.options.find(option.name);
        if (option.setting && given != invocation.options.end())
            UserSettings::Instance()->SetOption(*option.setting, given->second);
    }
}

void ShowSettingsProblems(std::ostream& err, bool colour) {
    for (const auto& problem : UserSettings::Instance()->Problems()) {
        CString place = ShownPath(problem.file);
        if (problem.line > 0)
            place += u":" + Platform::ToText(problem.line);
        ShowMessage(err, colour, MessageWarning,
                    Text(Message::SettingsProblem, {place, problem.text}));
    }
}

ExitStatus RunVerb(const Invocation& invocation, std::ostream& out, std::ostream& err) {
    const bool colour = TakesColours(err);
    ShowSettingsProblems(err, colour);
    const auto counter = boost::make_shared<CountingSink>();
    const SinkGuard counting(counter);
    const auto terminal = boost::make_shared<TerminalSink>(err, colour);
    const SinkGuard showing(terminal);
    const SinkGuard keeping(boost::make_shared<CWsLogFile>(
        UserSettings::Instance()->Get(Platform::Setting::WorkspaceLog).value));
    Session session{out, err, *counter};
    try {
        return invocation.verb->run(session, invocation);
    } catch (const AppError& error) {
        // The plug-in may have logged what stops the verb already: once is enough.
        if (terminal->HasShown(error.Text()))
            return error.Status();
        throw;
    }
}

ExitStatus Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    UserSettings::Instance()->Reset();
    const Invocation invocation = ParseCommandLine(arguments);
    ApplySettings(invocation);
    if (const CString missing = MissingTexts(); !missing.empty())
        throw AppError(ExitStatus::Configuration, missing);
    ExitStatus status = ExitStatus::Done;
    if (!invocation.help)
        status = RunVerb(invocation, out, err);
    else if (invocation.verb)
        PrintHelp(out, *invocation.verb);
    else
        PrintHelp(out);
    if (!out.flush())
        throw AppError(ExitStatus::LocalFile, Text(Message::OutputFailed));
    return status;
}

int Fail(std::ostream& err, ExitStatus status, const CString& text) {
    const CString missing = MissingTexts();
    PrintLine(err, u"zebx: " + (missing.empty() ? text : missing));
    return static_cast<int>(missing.empty() ? status : ExitStatus::Configuration);
}

// For what went wrong inside: takes care not to fail in turn.
int FailInside(std::ostream& err, Message message, const char* what) try {
    return Fail(err, ExitStatus::Internal, Text(message, {Platform::FromUtf8(what)}));
} catch (...) {
    err << "zebx: internal error\n";
    return static_cast<int>(ExitStatus::Internal);
}

} // namespace

int RunProgram(const std::vector<std::string>& arguments, std::ostream& out,
               std::ostream& err) try {
    try {
        return static_cast<int>(Run(arguments, out, err));
    } catch (const AppError& error) {
        out.flush(); // what was done comes before what was not
        return Fail(err, error.Status(), error.Text());
    }
} catch (const std::bad_alloc&) {
    return FailInside(err, Message::NoMemory, "");
} catch (const std::exception& error) {
    return FailInside(err, Message::InternalError, error.what());
} catch (...) {
    return FailInside(err, Message::InternalError, "?");
}

} // namespace App
