// SPDX-License-Identifier: MIT
// What a verb works with while it runs: the streams that it was handed, the place for its result,
// and the count of what went to the workspace log.
#pragma once

#include "app/Json.h"
#include "app/Sinks.h"

#include <iosfwd>

namespace App {

struct Session {
    std::istream& in;
    std::ostream& out;      // the result as text; takes nothing in with --json
    TerminalSink& terminal; // messages beside those of the workspace log, and progress
    const CountingSink& log;
    // The same result for --json, in the shape of docs/schemas/.  A verb sets it once, whole,
    // and at the latest before it throws what came after the result.
    Json& result;
};

} // namespace App
