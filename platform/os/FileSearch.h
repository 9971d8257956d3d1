// SPDX-License-Identifier: MIT
// File search over a pattern.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <system_error>
#include <vector>

namespace Platform {

// The names (without folder) that match the last part of `pattern`, in ascending
// case-folded order, so that every machine presents the same order.
//
// `pattern`  a path whose last part may hold "*" (any run of characters) and "?"
// (exactly one UTF-16 code unit); the parts before it are taken as a folder.  Case
// is ignored.  Whatever the folder holds can match: files, folders, "." and "..";
// only files on their way into another one's place, ".zebx-...", never do.
// A folder that is missing or cannot be read gives no names; `error`, when it is given, says
// why, and is none otherwise.
ZEBX_EXPORT std::vector<CString> FindFiles(CStringView pattern, std::error_code* error = nullptr);

} // namespace Platform
