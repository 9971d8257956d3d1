// SPDX-License-Identifier: MIT
// Blanks at the ends of a text.
#pragma once

#include "platform/text/Text.h"

namespace Platform {

// `text` without the blanks, tabs and carriage returns at its ends: a view into it.
inline CStringView Trim(CStringView text) {
    constexpr CStringView blanks = u" \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == CStringView::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace Platform
