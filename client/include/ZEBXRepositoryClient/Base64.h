// SPDX-License-Identifier: MIT
// The base64 codec of the records, for whoever keeps or makes file contents: storage
// plug-ins that keep raw bytes, file managers.  RFC 4648, section 4; no line breaks.
#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Repository {

// Four characters for each three bytes begun, "=" filling the last group; no bytes give
// the empty text.  `bytes` may be null when `length` is 0.
ZEBX_EXPORT std::string Base64Encode(const void* bytes, std::uint32_t length);

// The bytes of `text` up to its first "=" or first character outside the alphabet; the
// rest is ignored without a report.  A single character left over adds nothing.
ZEBX_EXPORT std::string Base64Decode(std::string_view text);

} // namespace Repository
