// SPDX-License-Identifier: MIT
// Which file names stay inside a folder on every workstation, whatever its operating system.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <optional>

namespace Platform {

enum class FileNameFault {
    Empty,
    IsFolder, // "." or ".."
    Separator,
    Colon,
    Control,
    NotText, // no UTF-8 carries it
    TooLong, // more than 255 bytes of UTF-8
    Reserved // some system's name of a device, whatever stands behind the first dot
};

// What is wrong with the bare name; nothing when every workstation takes it.
ZEBX_EXPORT std::optional<FileNameFault> FaultOfFileName(CStringView name);

} // namespace Platform
