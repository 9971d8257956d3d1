// SPDX-License-Identifier: MIT
// The text of a new zebx.ini, which docs/formats.md describes.
#pragma once

#include "platform/text/Text.h"

#include <vector>

namespace App {

// A commented file: every setting that there is, folders that an option or the environment
// gave as settings and all others as comments with the value in force, and `optionalKinds`
// switched on.  Throws AppError (Usage) for a folder whose name the format cannot hold.
CString NewSettingsFile(const std::vector<CString>& optionalKinds);

} // namespace App
