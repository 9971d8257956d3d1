// SPDX-License-Identifier: MIT
// The text types of every interface. Text is UTF-16; what is counted and
// compared is the code unit, on every platform.
#pragma once

#include <sstream>
#include <string>
#include <string_view>

using CString = std::u16string;
using CStringView = std::u16string_view;

// Formats text only: numbers go through Platform::ToText.
using WStringStream = std::basic_ostringstream<char16_t>;

namespace Platform {

// The text behind a NUL-terminated pointer; null reads as the empty text.
// The view is valid as long as the pointed-to text.
inline CStringView TextOf(const char16_t* text) {
    return text ? CStringView(text) : CStringView();
}

} // namespace Platform
