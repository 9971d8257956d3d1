// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Suggest.h"
#include "app/Verbs.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/host/CommandRegistry.h"
#include "platform/host/Prompt.h"
#include "platform/os/Module.h"

#include <ostream>

namespace App {
namespace {

using Platform::HostMessage;
using Platform::HostResult;

constexpr const char16_t* kModule = u"ZEBXRepositoryClient.arx";

// The module, told that it was loaded, and told that it is given up when this ends.
class HostedModule {
public:
    explicit HostedModule(const CString& path) {
        CString reason;
        const auto module = Platform::LoadModule(path, &reason);
        if (!module)
            throw AppError(ExitStatus::Configuration,
                           Text(Message::NoModule, {ShownPath(path), reason}));
        m_entry = reinterpret_cast<AcrxEntryPoint>(Platform::FindExport(module, "acrxEntryPoint"));
        if (!m_entry || m_entry(HostMessage::Load, nullptr) != HostResult::Ok)
            throw AppError(ExitStatus::Configuration,
                           Text(Message::ModuleRefused, {ShownPath(path)}));
    }
    ~HostedModule() { m_entry(HostMessage::Unload, nullptr); }
    HostedModule(const HostedModule&) = delete;
    HostedModule& operator=(const HostedModule&) = delete;

private:
    AcrxEntryPoint m_entry = nullptr;
};

// What commands print goes where the program's results go.
class PromptGuard {
public:
    explicit PromptGuard(std::ostream& out) {
        Platform::SetPromptWriter([this, &out](CStringView text) {
            Print(out, text);
            m_shown.append(text);
        });
    }
    ~PromptGuard() { Platform::SetPromptWriter({}); }
    PromptGuard(const PromptGuard&) = delete;
    PromptGuard& operator=(const PromptGuard&) = delete;

    const CString& Shown() const { return m_shown; }

private:
    CString m_shown;
};

[[noreturn]] void RefuseUnknown(const CString& name, const Platform::CommandRegistry& registry) {
    CString text = Text(Message::UnknownCommand, {name});
    std::vector<CString> known;
    for (const auto& command : registry.Commands()) {
        known.push_back(command.localName);
        text += u"\n  " + known.back();
    }
    throw AppError(ExitStatus::Usage, text + DidYouMean(name, known));
}

} // namespace

ExitStatus RunCommand(Session& session, const Invocation& invocation) {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install");
    const PromptGuard prompt(session.out);
    const HostedModule module(folder + kModule);
    const auto* registry = Platform::FindService(Platform::kRegisteredCommandsService);
    if (!registry)
        throw AppError(ExitStatus::Internal,
                       Text(Message::InternalError, {Platform::kRegisteredCommandsService}));
    const CString& name = invocation.words.front();
    const auto command = registry->Find(name);
    if (!command)
        RefuseUnknown(name, *registry);
    command->handler();
    // Commands begin their lines with a line feed and leave the last one open.
    session.out << '\n';
    session.result = {{"command", name}, {"output", prompt.Shown()}};
    return ExitStatus::Done;
}

} // namespace App
