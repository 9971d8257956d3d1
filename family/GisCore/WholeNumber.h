// SPDX-License-Identifier: MIT
// Whole numbers in files, where what is no number must be told and not read as 0.
#pragma once

#include "platform/text/Numbers.h"

#include <algorithm>
#include <optional>

namespace ZEBGis {

// The number; nothing when the text is anything but an optional minus sign and digits, or does
// not fit.
inline std::optional<std::int32_t> WholeNumber(CStringView text) {
    const CStringView digits = text.substr(text.starts_with(u'-') ? 1 : 0);
    if (digits.empty() || digits.size() > 10 ||
        digits.find_first_not_of(u"0123456789") != CStringView::npos)
        return std::nullopt;
    const std::int32_t number = Platform::ToInteger(text);
    const CStringView significant =
        digits.substr(std::min(digits.find_first_not_of(u'0'), digits.size() - 1));
    // A number that does not fit was changed to one that does.
    const CString written = Platform::ToText(number);
    return CStringView(written).substr(number < 0 ? 1 : 0) == significant ? std::optional(number)
                                                                          : std::nullopt;
}

} // namespace ZEBGis
