// SPDX-License-Identifier: MIT
// The base64 codec inside the module, of any length and with exceptions: the exported
// functions of Base64.h stand on it, the records call it directly, since an empty result
// must not hide that memory ran out. The text form is described in docs/formats.md.
#pragma once

#include <string>
#include <string_view>

namespace Repository {

inline constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// As Base64Encode. Throws std::bad_alloc or std::length_error when memory ends.
std::string EncodeBase64(std::string_view bytes);

// As Base64Decode. Throws as EncodeBase64; no text, however malformed, is an error.
std::string DecodeBase64(std::string_view text);

} // namespace Repository
