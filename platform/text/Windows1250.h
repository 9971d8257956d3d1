// SPDX-License-Identifier: MIT
// The ANSI code page of this system: windows-1250, from a constant table.
//
// The five bytes that windows-1250 leaves undefined (81, 83, 88, 90, 98 hex) map
// to the control characters of the same value, as existing records expect.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

// One byte for each UTF-16 code unit of `text`, NUL included; a code unit that
// the code page cannot represent, each half of a surrogate pair too, becomes "?".
ZEBX_EXPORT std::string ToAnsi(CStringView text);

// One UTF-16 code unit for each byte, NUL included.  Every byte has one.
ZEBX_EXPORT CString FromAnsi(std::string_view bytes);

} // namespace Platform
