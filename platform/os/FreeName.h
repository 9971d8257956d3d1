// SPDX-License-Identifier: MIT
// Names that a program gives to files of its own making.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <system_error>

namespace Platform {

// The folder from which relative paths count, with "\" at its end; empty when it is
// not there any more.
ZEBX_EXPORT CString CurrentFolder();

// Gives the file `from` the name `to` in one step and flushes the folder; when
// something has that name already, also in another case, nothing changes and the
// error is EEXIST.
ZEBX_EXPORT std::error_code RenameToFreeName(CStringView from, CStringView to);

} // namespace Platform
