// SPDX-License-Identifier: MIT
#include "app/ConfigurationDialog.h"
#include "app/Verbs.h"

#include "platform/host/Interruption.h"

namespace App {

ExitStatus RunDialog(Session& session, const Invocation&) {
    const Platform::InterruptionGuard interruptible;
    ShowConfigurationDialog(session);
    session.result = {{"shown", true}};
    return Platform::IsInterrupted() ? ExitStatus::Interrupted : ExitStatus::Done;
}

} // namespace App
