// SPDX-License-Identifier: MIT
// Which file names the repository takes in and gives out: those that stay inside a
// folder on every workstation, whatever its operating system.
#pragma once

#include "storage/Messages.h"

#include <optional>

namespace Storage {

// What is wrong with the name; nothing when it is acceptable.
std::optional<MessageNumber> CheckName(CStringView name);

} // namespace Storage
