// SPDX-License-Identifier: MIT
#include "app/HostedModule.h"

#include "app/AppError.h"
#include "app/Print.h"
#include "app/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/host/Prompt.h"
#include "platform/os/Module.h"

#include <ostream>

namespace App {

using Platform::HostMessage;
using Platform::HostResult;

HostedModule::HostedModule() {
    const CString path =
        ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install") + u"ZEBXRepositoryClient.arx";
    CString reason;
    const auto module = Platform::LoadModule(path, &reason);
    if (!module)
        throw AppError(ExitStatus::Configuration,
                       Text(Message::NoModule, {ShownPath(path), reason}));
    m_entry = reinterpret_cast<AcrxEntryPoint>(Platform::FindExport(module, "acrxEntryPoint"));
    if (!m_entry || m_entry(HostMessage::Load, nullptr) != HostResult::Ok)
        throw AppError(ExitStatus::Configuration, Text(Message::ModuleRefused, {ShownPath(path)}));
}

HostedModule::~HostedModule() {
    m_entry(HostMessage::Unload, nullptr);
}

PromptGuard::PromptGuard(std::ostream& out) {
    Platform::SetPromptWriter([this, &out](CStringView text) {
        Print(out, text);
        out.flush(); // a line is begun by the print that follows it, which may take its time
        m_shown.append(text);
    });
}

PromptGuard::~PromptGuard() {
    Platform::SetPromptWriter({});
}

Platform::CommandRegistry& RequireCommandRegistry() {
    auto* registry = Platform::FindService(Platform::kRegisteredCommandsService);
    if (!registry)
        throw AppError(ExitStatus::Internal,
                       Text(Message::InternalError, {Platform::kRegisteredCommandsService}));
    return *registry;
}

std::vector<CString> LocalNames(const Platform::CommandRegistry& registry) {
    std::vector<CString> names;
    for (const auto& command : registry.Commands())
        names.push_back(command.localName);
    return names;
}

} // namespace App
