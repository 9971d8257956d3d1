// SPDX-License-Identifier: MIT
// The completion of zebx for bash, made from the table of verbs and the built-in kinds.
#pragma once

#include <string>

namespace App {

std::string BashCompletion();

} // namespace App
