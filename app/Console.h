// SPDX-License-Identifier: MIT
// The host's command line: reads lines, and runs the registered commands that they name.
#pragma once

#include "app/AppError.h"
#include "app/ConsoleLines.h"
#include "app/Session.h"

#include "platform/host/CommandRegistry.h"

namespace App {

// The host's own commands (group "ZEBX"), registered as long as it stands: the configuration
// dialog, the list of commands, and the end of the console.  One at a time.
class Console {
public:
    enum class Kind { Interactive, Script };

    Console(Session& session, Platform::CommandRegistry& registry, Kind kind);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Runs commands up to the one that ends the console, or the end of input.  A command that
    // fails or is not known is told and ends nothing.  Done at the end of an interactive
    // console; of a script SomeFailed when a command failed, was interrupted or is not known,
    // and Interrupted when an interruption ended it.
    ExitStatus Run(IConsoleLines& lines);

private:
    void RunLine(const CString& line);
    void RunCommand(const Platform::RegisteredCommand& command);
    void Call(const Platform::RegisteredCommand& command);
    void TellFailure(const CString& text);
    void RefuseUnknown(const CString& name);

    // Called as commands.
    void ShowDialog();
    void ListCommands();
    void Quit() { m_quit = true; }
    template<void (Console::*Member)()>
    static void Do();
    static Console* g_running;

    Session& m_session;
    Platform::CommandRegistry& m_registry;
    Kind m_kind;
    bool m_quit = false;
    bool m_someFailed = false;
    bool m_wasInterrupted = false;
};

} // namespace App
