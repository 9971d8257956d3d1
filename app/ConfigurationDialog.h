// SPDX-License-Identifier: MIT
// The configuration dialog as the program shows it.
#pragma once

#include "app/Session.h"

namespace App {

// Shows the window of the workspace log and the configuration dialog, and returns when the
// dialog is closed.  Throws AppError (Configuration) where it cannot be shown.
void ShowConfigurationDialog(Session& session);

} // namespace App
