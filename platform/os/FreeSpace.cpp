// SPDX-License-Identifier: MIT
#include "platform/os/FreeSpace.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <cerrno>

namespace Platform {

std::optional<std::uint64_t> FreeSpace(CStringView path) {
    std::string place = LookUp(path);
    std::uint64_t bytes = 0;
    std::error_code error = System::FreeBytes(place, bytes);
    while ((error.value() == ENOENT || error.value() == ENOTDIR) && !place.empty() &&
           place != "/" && place != ".") {
        place.erase(place.find_last_not_of('/') + 1);
        const auto slash = place.rfind('/');
        place = slash == std::string::npos ? "." : place.substr(0, slash == 0 ? 1 : slash);
        error = System::FreeBytes(place, bytes);
    }
    if (error)
        return std::nullopt;
    return bytes;
}

} // namespace Platform
