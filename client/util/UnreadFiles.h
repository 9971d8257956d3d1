// SPDX-License-Identifier: MIT
// Keeps in mind which local files could not be read: the transfers pass over them without a
// word, and a program that transfers asks afterwards (LocalContent.h).
#pragma once

#include "platform/text/Text.h"

#include <system_error>

namespace Repository {

// What is missing or is no file is not kept.
void RememberUnread(CStringView path, const std::error_code& error);

} // namespace Repository
