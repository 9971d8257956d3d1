// SPDX-License-Identifier: MIT
// What a test tells the plug-in module of the tests: which backend it yields, and what it
// reports.  The module keeps the pointer to the script, so that the test can exchange the
// backend behind it at any time.
#pragma once

#include "ZEBXRepositoryClient/StorageBackend.h"

#include <functional>

struct PluginScript {
    // Receives every call to the backend that the module yields; without one at that
    // moment the module yields none.
    Repository::StorageBackend* backend = nullptr;
    // The steps of the manager, by name.
    std::function<void(const char*)> onStep = [](const char*) {};
    Repository::IMsgProvider* provider = nullptr;
    // Makes the module answer with no information object.
    bool hasNoInfo = false;
};

// The module's export "SetPluginScript".  Without a script the module gives nothing.
using SetPluginScriptFunction = void (*)(PluginScript*);
