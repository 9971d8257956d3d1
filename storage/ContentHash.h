// SPDX-License-Identifier: MIT
// SHA-256, by which contents are addressed.
#pragma once

#include <string>
#include <string_view>

namespace Storage {

// The 32 bytes of the digest.
std::string ContentHash(std::string_view bytes);

// Lower-case hexadecimal digits.
std::string ToHexadecimal(std::string_view bytes);

// Sixteen hexadecimal digits that nobody else has.
std::string RandomName();

} // namespace Storage
