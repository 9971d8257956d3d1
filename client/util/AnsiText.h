// SPDX-License-Identifier: MIT
// Text of the records: between UTF-16 and the bytes of the ANSI code page, plain and as
// base64. Used by the records and the trace; the code page is Platform's, whatever the
// process's locale. Described in docs/formats.md.
//
// Every text ends at its first NUL, a null pointer reads as the empty text, and nothing
// but memory can fail (std::bad_alloc).
#pragma once

#include "platform/text/Text.h"

#include <string>
#include <string_view>

namespace Repository {

// One byte for each UTF-16 code unit; what the code page lacks becomes "?".
std::string WideToAnsi(CStringView text);
std::string WideToAnsi(const char16_t* text);

// One UTF-16 code unit for each byte.
CString AnsiToWide(std::string_view bytes);
CString AnsiToWide(const char* bytes);

// The base64 text of the ANSI form of `text`.
CString EncodeBase64Text(CStringView text);
CString EncodeBase64Text(const char16_t* text);

// The reverse. Malformed base64 is decoded as far as it goes, and a zero byte among the
// decoded ones ends the text.
CString DecodeBase64Text(CStringView base64);
CString DecodeBase64Text(const char16_t* base64);

} // namespace Repository
