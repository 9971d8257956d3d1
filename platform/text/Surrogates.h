// SPDX-License-Identifier: MIT
// Walking over UTF-16 by code points; used inside platform/text only.
#pragma once

#include "platform/text/Text.h"

#include <cstddef>
#include <cstdint>

namespace Platform {

inline bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
inline bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}
inline bool IsSurrogate(std::int32_t codePoint) {
    return (codePoint & ~0x7FF) == 0xD800;
}

// The code point at `position`, which moves behind it.  An unpaired surrogate is
// returned as it stands.
inline std::int32_t NextCodePoint(CStringView text, std::size_t& position) {
    const char16_t unit = text[position++];
    if (!IsHighSurrogate(unit) || position == text.size() || !IsLowSurrogate(text[position]))
        return unit;
    return 0x10000 + ((unit & 0x3FF) << 10) + (text[position++] & 0x3FF);
}

inline void AppendCodePoint(CString& text, std::int32_t codePoint) {
    if (codePoint >= 0x10000) {
        text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
    } else {
        text += static_cast<char16_t>(codePoint);
    }
}

} // namespace Platform
