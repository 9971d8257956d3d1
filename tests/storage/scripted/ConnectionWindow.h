// SPDX-License-Identifier: MIT
#pragma once

#include "ZEBXRepositoryStorage/ConnectionWindow.h"

#include <functional>

// What the connection window does when it is shown, and why it cannot be.
struct ConnectionWindowScript {
    std::function<int(Storage::IConnectionParameters&, Storage::Connection&)> onEdit;
    CString whyNoWindows;
};

// The module's export "SetConnectionWindowScript".
using SetConnectionWindowScriptFunction = void (*)(const ConnectionWindowScript& script);
