// SPDX-License-Identifier: MIT
// The versions of the program and of the modules beside it.
#pragma once

#include "platform/text/Text.h"

#include <vector>

namespace App {

struct InstalledPart {
    CString name;    // "zebx", or a module's file
    CString version; // "1.2.3.0"; empty: the file has no version record
};

// The program first, then each *.arx file of the installation, by name.
std::vector<InstalledPart> InstalledParts();

} // namespace App
