// SPDX-License-Identifier: MIT
// The module of the connection window, which the plug-in loads when it is first shown.
#pragma once

#include "ZEBXRepositoryStorage/ConnectionWindow.h"

#include <optional>

namespace Storage {

// Shows the window until the user is done; what is to be used from now on, nothing when it
// stays as it is.  Throws StorageError (Configuration) where no window can be shown: the module,
// the window system or a display is missing.
std::optional<Connection> EditInWindow(IConnectionParameters& parameters);

} // namespace Storage
