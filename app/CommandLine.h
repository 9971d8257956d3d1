// SPDX-License-Identifier: MIT
// From the words of a command line to an invocation, by the table of verbs.
#pragma once

#include "app/Verbs.h"

namespace App {

// Reads a command line (without the program's own name, UTF-8).  Options may stand before
// or behind the verb; behind "--" everything is a word.  Throws AppError (Usage) when it is
// not understood.  Changes no setting.
Invocation ParseCommandLine(const std::vector<std::string>& arguments);

} // namespace App
