// SPDX-License-Identifier: MIT
#include "app/Console.h"

#include "app/ConfigurationDialog.h"
#include "app/HostedModule.h"
#include "app/Print.h"
#include "app/Suggest.h"
#include "app/Texts.h"

#include "platform/host/Interruption.h"
#include "platform/text/Trim.h"
#include "platform/text/Utf8.h"

#include <ostream>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Platform::RegisteredCommand;

constexpr const char16_t* kGroup = u"ZEBX";
constexpr const char16_t* kRepository = u"REPOSITORY";
constexpr const char16_t* kHelp = u"HELP";
constexpr const char16_t* kQuit = u"QUIT";

CString Description(const RegisteredCommand& command) {
    if (command.group != kGroup)
        return Text(Message::CommandOf, {command.group});
    if (command.globalName == kRepository)
        return Text(Message::SummaryDialog);
    return Text(command.globalName == kHelp ? Message::ConsoleHelp : Message::ConsoleQuit);
}

// "repozitorij (REPOSITORY)": the name of every language beside the user's own.
CString ShownName(const RegisteredCommand& command) {
    if (command.localName == command.globalName)
        return command.localName;
    return command.localName + u" (" + command.globalName + u")";
}

} // namespace

Console* Console::g_running = nullptr;

template<void (Console::*Member)()>
void Console::Do() {
    (g_running->*Member)();
}

Console::Console(Session& session, Platform::CommandRegistry& registry, Kind kind)
    : m_session(session), m_registry(registry), m_kind(kind) {
    g_running = this;
    const auto add = [&](const char16_t* name, Message local, Platform::CommandHandler handler) {
        m_registry.AddCommand({kGroup, name, Text(local), Platform::kCommandModal, handler});
    };
    add(kRepository, Message::NameRepository, Do<&Console::ShowDialog>);
    add(kHelp, Message::NameHelp, Do<&Console::ListCommands>);
    add(kQuit, Message::NameQuit, Do<&Console::Quit>);
}

Console::~Console() {
    m_registry.RemoveGroup(kGroup);
    g_running = nullptr;
}

ExitStatus Console::Run(IConsoleLines& lines) {
    const bool isScript = m_kind == Kind::Script;
    while (!m_quit) {
        m_session.out.flush();
        const auto line = lines.Next();
        if (!line)
            break;
        RunLine(*line);
        if (isScript && m_wasInterrupted)
            return ExitStatus::Interrupted;
    }
    return isScript && m_someFailed ? ExitStatus::SomeFailed : ExitStatus::Done;
}

void Console::RunLine(const CString& line) {
    const CString name(Platform::Trim(line));
    if (name.empty())
        return;
    if (const auto command = m_registry.Find(name))
        RunCommand(*command);
    else
        RefuseUnknown(name);
}

void Console::RunCommand(const RegisteredCommand& command) {
    const int failuresBefore = m_session.log.Failures();
    const Platform::InterruptionGuard interruptible;
    m_wasInterrupted = false;
    Call(command);
    if (m_session.log.Failures() > failuresBefore)
        m_someFailed = true;
    if (Platform::IsInterrupted()) {
        m_wasInterrupted = true;
        TellFailure(Text(Message::CommandInterrupted, {command.localName}));
    }
}

void Console::Call(const RegisteredCommand& command) try {
    const PromptGuard prompt(m_session.out);
    command.handler();
    // Commands begin their lines with a line feed and leave the last one open.
    if (!prompt.Shown().empty())
        m_session.out << '\n';
} catch (const AppError& error) {
    TellFailure(error.Text());
} catch (const std::exception& error) {
    TellFailure(Text(Message::InternalError, {Platform::FromUtf8(error.what())}));
}

// Not through the workspace log: it concerns the one who types, now.
void Console::TellFailure(const CString& text) {
    m_session.out.flush();
    m_someFailed = true;
    CWsMessage message;
    message.type = MessageFailure;
    message.text = text;
    m_session.terminal.Write(message);
}

void Console::RefuseUnknown(const CString& name) {
    TellFailure(Text(Message::NoSuchCommand, {name}) + DidYouMean(name, LocalNames(m_registry)) +
                u"\n" + Text(Message::SeeConsoleHelp, {Text(Message::NameHelp)}));
}

void Console::ShowDialog() {
    ShowConfigurationDialog(m_session);
}

void Console::ListCommands() {
    Table table({{Text(Message::TitleCommand)}, {Text(Message::TitleWhat)}});
    for (const RegisteredCommand& command : m_registry.Commands())
        table.Add({ShownName(command), Description(command)});
    table.Print(m_session.out);
}

} // namespace App
