// SPDX-License-Identifier: MIT
// UTF-8 at the edges: terminal, configuration files, file names, databases.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

// Bytes of `utf8` that are not well-formed UTF-8 survive: each becomes the
// unpaired surrogate U+DC00 + byte, which ToUtf8 turns back into that byte.  So
// FromUtf8 followed by ToUtf8 gives the same bytes for any input.  Never fails.
ZEBX_EXPORT CString FromUtf8(std::string_view utf8);

// The reverse of FromUtf8.  U+DC5C, a "\" that belongs to a file's name (see Path.h),
// becomes the byte 5C.  Any other unpaired surrogate outside U+DC80..U+DCFF becomes
// U+FFFD, so that none of them can pass for a "/" or a NUL.  Never fails.
ZEBX_EXPORT std::string ToUtf8(CStringView text);

// ToUtf8 for people: every unpaired surrogate becomes U+FFFD and every control
// character but the line feed and the tab becomes "?", so that no text can steer
// a terminal.
ZEBX_EXPORT std::string ToDisplay(CStringView text);

// Whether `text` holds no unpaired surrogate, so that UTF-8 carries it exactly.
ZEBX_EXPORT bool IsWellFormed(CStringView text);

} // namespace Platform
