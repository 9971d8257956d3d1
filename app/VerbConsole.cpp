// SPDX-License-Identifier: MIT
#include "app/Console.h"
#include "app/HostedModule.h"
#include "app/Verbs.h"

#include "platform/os/Environment.h"

#include <iostream>

namespace App {
namespace {

// Only the real streams can be a terminal; those of a test cannot.
bool IsOnTerminal(const Session& session) {
    return &session.in == &std::cin && Platform::IsTerminal(0) && &session.out == &std::cout &&
           Platform::IsTerminal(1);
}

} // namespace

ExitStatus RunConsole(Session& session, const Invocation& invocation) {
    if (invocation.Has("--json"))
        throw AppError(ExitStatus::Usage, Text(Message::ConsoleWithoutJson));
    const bool interactive = IsOnTerminal(session);
    Console console(session, RequireCommandRegistry(),
                    interactive ? Console::Kind::Interactive : Console::Kind::Script);
    const HostedModule module;
    if (!interactive) {
        PlainLines lines(session.in);
        return console.Run(lines);
    }
    ConsoleHistory history(ConsoleHistory::DefaultPath());
    TerminalLines lines(history);
    return console.Run(lines);
}

} // namespace App
