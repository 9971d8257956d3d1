// SPDX-License-Identifier: MIT
// The help texts, made from the table of verbs: examples first.
#pragma once

#include "app/Verbs.h"

namespace App {

// What the program is for, its verbs and common options.
void PrintHelp(std::ostream& out);

// The verbs of a group.
void PrintHelp(std::ostream& out, const std::string& group);

// One verb: what it does, its words and options.
void PrintHelp(std::ostream& out, const Verb& verb);

} // namespace App
