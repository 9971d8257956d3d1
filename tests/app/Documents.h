// SPDX-License-Identifier: MIT
// The documents of --json, read as a script reads them.
#pragma once

#include "Station.h"

#include <nlohmann/json.hpp>

namespace AppTest {

// The document on the run's standard output, which must be the only thing there, fit the
// schema that it names, and tell the run's exit status; else the test fails.
nlohmann::json DocumentOf(const Ended& run);

} // namespace AppTest
