// SPDX-License-Identifier: MIT
// Whether the family's modules write trace lines, and to which file.
#pragma once

#include "platform/Export.h"

#include <string>

class ZEBX_EXPORT CLogEngine {
public:
    // Non-zero when trace logging is on ([logging] trace in zebx.ini, ZEBX_TRACE).
    // Asked anew at each call, so that a change takes effect at once.
    static int GetLoggingOnOff();

    // Switches tracing for this process, over what the settings say.
    static void SetLoggingOnOff(int on);

    // The trace file as the operating system wants it; its folder is created.
    static std::string GetLogFileFullPath();
};
