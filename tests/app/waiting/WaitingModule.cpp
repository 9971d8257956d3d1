// SPDX-License-Identifier: MIT
// A module in place of ZEBXRepositoryClient, with a command that runs until it is interrupted.
#include "platform/Export.h"
#include "platform/host/CommandRegistry.h"
#include "platform/host/Interruption.h"
#include "platform/host/Prompt.h"

#include <sched.h>

namespace {

constexpr const char16_t* kGroup = u"WAITING";

void Wait() {
    acutPrintf(u"\nwaiting");
    while (!Platform::IsInterrupted())
        sched_yield();
    acutPrintf(u"\nstopped");
}

} // namespace

extern "C" ZEBX_EXPORT Platform::HostResult acrxEntryPoint(Platform::HostMessage message, void*) {
    auto* registry = Platform::FindService(Platform::kRegisteredCommandsService);
    if (message == Platform::HostMessage::Load)
        registry->AddCommand({kGroup, u"WAIT", u"WAIT", Platform::kCommandModal, Wait});
    else if (message == Platform::HostMessage::Unload)
        registry->RemoveGroup(kGroup);
    return Platform::HostResult::Ok;
}
