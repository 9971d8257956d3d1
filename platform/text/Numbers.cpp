// SPDX-License-Identifier: MIT
#include "platform/text/Numbers.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace Platform {
namespace {

bool IsBlank(char16_t unit) {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

} // namespace

CString ToText(std::int64_t number) {
    char digits[24];
    const auto result = std::to_chars(std::begin(digits), std::end(digits), number);
    return CString(std::begin(digits), result.ptr);
}

std::int32_t ToInteger(CStringView text) {
    constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();

    auto unit = std::find_if_not(text.begin(), text.end(), IsBlank);
    const bool negative = unit != text.end() && *unit == u'-';
    if (unit != text.end() && (*unit == u'-' || *unit == u'+'))
        ++unit;
    std::int64_t number = 0;
    for (; unit != text.end() && IsDigit(*unit); ++unit) {
        const int digit = *unit - u'0';
        number = std::clamp(number * 10 + (negative ? -digit : digit), kLowest, kHighest);
    }
    return static_cast<std::int32_t>(number);
}

} // namespace Platform
