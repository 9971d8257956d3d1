// SPDX-License-Identifier: MIT
// Whole numbers to text and back, independent of the process's locale.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>

namespace Platform {

// The number in decimal digits, with a minus sign in front when negative.
ZEBX_EXPORT CString ToText(std::int64_t number);

// The whole number at the start of `text`, as the C library reads it: leading
// blanks (the six of the "C" locale), an optional sign, digits; whatever follows
// is ignored.  No digits give 0; what does not fit saturates.  Never fails.
ZEBX_EXPORT std::int32_t ToInteger(CStringView text);

} // namespace Platform
