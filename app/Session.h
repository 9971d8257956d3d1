// SPDX-License-Identifier: MIT
// What a verb works with while it runs: the streams it was handed and the count of what
// went to the workspace log.
#pragma once

#include "app/Sinks.h"

#include <iosfwd>

namespace App {

struct Session {
    std::ostream& out; // results
    std::ostream& err; // messages
    const CountingSink& log;
};

} // namespace App
