// SPDX-License-Identifier: MIT
// What the process can learn about itself and where it runs.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <optional>

namespace Platform {

// The value of an environment variable; nothing when it is not set or empty.
ZEBX_EXPORT std::optional<CString> EnvironmentValue(const char* name);

// The login name of the user who runs the process, else the user's number.
ZEBX_EXPORT CString UserName();

// The name of this workstation.
ZEBX_EXPORT CString HostName();

// Now, in UTC, as "2026-11-21T08:05:19Z".
ZEBX_EXPORT CString UtcNow();

// The time of day on this workstation's clock, "09:05:19", at a time as UtcNow gives it; any
// other text is given back as it is.
ZEBX_EXPORT CString LocalTimeOfDay(CStringView utc);

// From now on a file that grows beyond this process's limit (ulimit -f) is an error of the
// write (EFBIG) and not the silent end of the process.
ZEBX_EXPORT void IgnoreFileSizeSignal();

// Whether the file descriptor (1 output, 2 errors) is a terminal.
ZEBX_EXPORT bool IsTerminal(int descriptor);

// The columns of the terminal at the file descriptor; 0 when it is none or does not say.
ZEBX_EXPORT std::size_t TerminalColumns(int descriptor);

} // namespace Platform
