// SPDX-License-Identifier: MIT
// A module's four-part file version, read from the file without loading it.  The
// record stands in the ELF section ".zebx.version"; docs/formats.md describes it.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <array>
#include <cstdint>
#include <optional>

namespace Platform {

using FileVersion = std::array<std::uint16_t, 4>;

// The version of the module file; nothing when the file is missing, is no 64-bit
// little-endian ELF file, is cut, or has no such record.
ZEBX_EXPORT std::optional<FileVersion> ReadFileVersion(CStringView path);

// The same as "1.2.3.0"; empty for nothing.
ZEBX_EXPORT CString ReadFileVersionText(CStringView path);

} // namespace Platform
