// SPDX-License-Identifier: MIT
#include "app/HostedModule.h"
#include "app/Suggest.h"
#include "app/Verbs.h"

#include <ostream>

namespace App {
namespace {

[[noreturn]] void RefuseUnknown(const CString& name, const Platform::CommandRegistry& registry) {
    CString text = Text(Message::UnknownCommand, {name});
    const std::vector<CString> known = LocalNames(registry);
    for (const CString& each : known)
        text += u"\n  " + each;
    throw AppError(ExitStatus::Usage, text + DidYouMean(name, known));
}

} // namespace

ExitStatus RunCommand(Session& session, const Invocation& invocation) {
    const PromptGuard prompt(session.out);
    const HostedModule module;
    const auto& registry = RequireCommandRegistry();
    const CString& name = invocation.words.front();
    const auto command = registry.Find(name);
    if (!command)
        RefuseUnknown(name, registry);
    command->handler();
    // Commands begin their lines with a line feed and leave the last one open.
    session.out << '\n';
    session.result = {{"command", name}, {"output", prompt.Shown()}};
    return ExitStatus::Done;
}

} // namespace App
