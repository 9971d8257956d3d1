// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// The dialog module's export "SetDialogScript": what happens when the dialog is shown.
using SetDialogScriptFunction = void (*)(const std::function<void()>& onShow);
