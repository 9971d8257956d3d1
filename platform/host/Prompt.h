// SPDX-License-Identifier: MIT
// The host's command line, as modules write to it.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <functional>

namespace Platform {

// Receives what modules print.
using PromptWriter = std::function<void(CStringView text)>;

// Replaces the writer; without one, text goes to the standard output as UTF-8.
ZEBX_EXPORT void SetPromptWriter(PromptWriter writer);

} // namespace Platform

// Prints to the host's command line.  `format` takes %s (const char16_t*, null reads
// as the empty text), %d (int) and %%; anything else is printed as it stands.
// Returns the number of UTF-16 code units printed.
ZEBX_EXPORT int acutPrintf(const char16_t* format, ...);
