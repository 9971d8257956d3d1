// SPDX-License-Identifier: MIT
#pragma once

#include "platform/text/Text.h"

#include <functional>

struct DialogScript {
    // What happens when the dialog is shown.
    std::function<void()> onShow = [] {};
    // Why no window can be shown.
    CString whyNoWindows;
};

// The dialog module's export "SetDialogScript".
using SetDialogScriptFunction = void (*)(const DialogScript& script);
