// SPDX-License-Identifier: MIT
// The program zebx, whole: stand-alone host and command line of the repository client.
// docs/command-line.md describes what it takes and gives.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace App {

// Runs one command line (without the program's own name, UTF-8) and returns the exit
// status.  Results go to `out`, messages to `err`; what a user types comes from `in`.  With
// "--json" among the arguments `out` gets one document, whatever happens.  Nothing escapes but
// a killed process.
int RunProgram(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err);

} // namespace App
