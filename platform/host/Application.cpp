// SPDX-License-Identifier: MIT
#include "platform/host/Application.h"

#include "platform/host/CommandRegistry.h"
#include "platform/text/CaseFold.h"

#include <set>

using Platform::HostMessage;
using Platform::HostResult;

namespace {

CString LocalNameOf(const Platform::CommandEntry& entry, const Platform::StringResources& strings) {
    if (entry.localName)
        return entry.localName;
    const auto text = strings.find(entry.localNameId);
    return text == strings.end() ? CString() : text->second;
}

} // namespace

HostResult AcRxDbxApp::EntryPoint(HostMessage message, void* packet) {
    switch (message) {
    case HostMessage::Load:
        return OnLoad(packet);
    case HostMessage::Unload:
        return OnUnload(packet);
    case HostMessage::OpenDocument:
        return OnOpenDocument(packet);
    case HostMessage::CloseDocument:
        return OnCloseDocument(packet);
    case HostMessage::OpenDatabase:
        return OnOpenDatabase(packet);
    case HostMessage::CloseDatabase:
        return OnCloseDatabase(packet);
    case HostMessage::Quit:
        return OnQuit(packet);
    }
    return HostResult::Ok;
}

HostResult AcRxDbxApp::OnLoad(void*) {
    return HostResult::Ok;
}
HostResult AcRxDbxApp::OnUnload(void*) {
    return HostResult::Ok;
}
HostResult AcRxDbxApp::OnOpenDocument(void*) {
    return HostResult::Ok;
}
HostResult AcRxDbxApp::OnCloseDocument(void*) {
    return HostResult::Ok;
}
HostResult AcRxDbxApp::OnOpenDatabase(void*) {
    return HostResult::Ok;
}
HostResult AcRxDbxApp::OnCloseDatabase(void*) {
    return HostResult::Ok;
}
HostResult AcRxDbxApp::OnQuit(void*) {
    return HostResult::Ok;
}

HostResult AcRxArxApp::OnLoad(void*) {
    using namespace Platform;
    CommandRegistry* registry = FindService(kRegisteredCommandsService);
    bool everyCommand = registry != nullptr;
    for (const CommandEntry& entry : Commands())
        if (registry)
            everyCommand &= registry->AddCommand(
                {CString(TextOf(entry.group)), CString(TextOf(entry.globalName)),
                 LocalNameOf(entry, Strings()), entry.flags, entry.handler});
    RegisterServerComponents();
    return everyCommand ? HostResult::Ok : HostResult::Error;
}

HostResult AcRxArxApp::OnUnload(void*) {
    using namespace Platform;
    CommandRegistry* registry = FindService(kRegisteredCommandsService);
    std::set<CString> removed;
    for (const CommandEntry& entry : Commands())
        if (registry && removed.insert(FoldCase(TextOf(entry.group))).second)
            registry->RemoveGroup(TextOf(entry.group));
    return HostResult::Ok;
}
