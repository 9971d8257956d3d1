// SPDX-License-Identifier: MIT
// The percent-encoding of URIs, over UTF-8.
#pragma once

#include "platform/text/Text.h"

#include <optional>

namespace Storage {

// Every character but ASCII letters, digits, "-._~" and those of `kept` as "%XX".
CString PercentEncode(CStringView text, CStringView kept = {});

// The text; nothing when a "%" is not followed by two hexadecimal digits, or they are 00.
std::optional<CString> PercentDecode(CStringView text);

} // namespace Storage
