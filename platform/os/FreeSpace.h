// SPDX-License-Identifier: MIT
// How much room there is on a disk.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>
#include <optional>

namespace Platform {

// The bytes that this user may still write where `path` lies; for a path that does not exist
// yet, where the nearest of its folders lies.  Nothing when the system does not tell.
ZEBX_EXPORT std::optional<std::uint64_t> FreeSpace(CStringView path);

} // namespace Platform
