// SPDX-License-Identifier: MIT
#include "RepositoryClientApp.h"

#include "AssemblySchemesCommand.h"

#include "client/util/Border.h"

namespace Repository {
namespace {

constexpr Platform::CommandEntry kCommands[] = {
    {u"ZEBXRepositoryClient", u"test", u"test", 0, Platform::kCommandModal, CheckAssemblySchemes},
};

CRepositoryClientApp g_app;

} // namespace

Platform::HostResult CRepositoryClientApp::OnLoad(void* packet) {
    return AcRxArxApp::OnLoad(packet);
}

Platform::HostResult CRepositoryClientApp::OnUnload(void* packet) {
    return AcRxArxApp::OnUnload(packet);
}

void CRepositoryClientApp::RegisterServerComponents() {}

std::span<const Platform::CommandEntry> CRepositoryClientApp::Commands() const {
    return kCommands;
}

const Platform::StringResources& CRepositoryClientApp::Strings() const {
    static const Platform::StringResources strings{{100, u"RepositoryClient"}};
    return strings;
}

} // namespace Repository

extern "C" ZEBX_EXPORT Platform::HostResult acrxEntryPoint(Platform::HostMessage message,
                                                           void* packet) {
    return Repository::AtBorder(Platform::HostResult::Error,
                                [&] { return Repository::g_app.EntryPoint(message, packet); });
}
