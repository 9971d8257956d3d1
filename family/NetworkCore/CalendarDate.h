// SPDX-License-Identifier: MIT
// Dates of the calendar, written "2026-11-21".
#pragma once

#include "platform/text/Text.h"

#include <chrono>
#include <optional>

namespace ZEBGis::Data {

// The number that `digits` write; nothing when one of them is no digit.
inline std::optional<int> DigitsOf(CStringView digits) {
    int number = 0;
    for (const char16_t digit : digits) {
        if (digit < u'0' || digit > u'9')
            return std::nullopt;
        number = 10 * number + (digit - u'0');
    }
    return number;
}

// Years 0001 to 9999 of the Gregorian calendar.
inline bool IsCalendarDate(CStringView text) {
    if (text.size() != 10 || text[4] != u'-' || text[7] != u'-')
        return false;
    const auto year = DigitsOf(text.substr(0, 4));
    const auto month = DigitsOf(text.substr(5, 2));
    const auto day = DigitsOf(text.substr(8, 2));
    if (!year || !month || !day || *year == 0)
        return false;
    return std::chrono::year_month_day(std::chrono::year(*year),
                                       std::chrono::month(static_cast<unsigned>(*month)),
                                       std::chrono::day(static_cast<unsigned>(*day)))
        .ok();
}

} // namespace ZEBGis::Data
