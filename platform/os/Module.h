// SPDX-License-Identifier: MIT
// Loading of modules.  A module that was loaded stays until the process ends.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

using ModuleHandle = void*;

// Loads the module file, or finds it loaded; null when it cannot be loaded, with
// the system's reason in `reason` when that is not null.
ZEBX_EXPORT ModuleHandle LoadModule(CStringView path, CString* reason = nullptr);

// The address of an export; null when the module has none of that name or is null.
ZEBX_EXPORT void* FindExport(ModuleHandle module, const char* name);

} // namespace Platform
