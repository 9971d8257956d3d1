// SPDX-License-Identifier: MIT
// The manual page zebx(1), in English, made from the table of verbs.
#pragma once

#include <string>

namespace App {

// `date`: of the page, "2026-11-21".
std::string ManPage(const std::string& date);

} // namespace App
