// SPDX-License-Identifier: MIT
// The user's wish that a transfer stop: asked between files by whoever loops over files,
// and made by the program's handling of Ctrl-C.
#pragma once

#include "platform/Export.h"

namespace Platform {

// Whether the work under way is to stop before its next file.  Costs one load.
ZEBX_EXPORT bool IsInterrupted();

// Makes it so; may be called from a signal handler.
ZEBX_EXPORT void RequestInterruption();

// While one stands, SIGINT, SIGTERM and SIGHUP request an interruption, and a second one ends
// the process at once.  A signal that the process was started to ignore stays ignored.  Only
// a program may have one, never a library; one at a time.  Afterwards the signals do what
// they did before and the request is forgotten.
class ZEBX_EXPORT InterruptionGuard {
public:
    InterruptionGuard();
    ~InterruptionGuard();
    InterruptionGuard(const InterruptionGuard&) = delete;
    InterruptionGuard& operator=(const InterruptionGuard&) = delete;
};

} // namespace Platform
