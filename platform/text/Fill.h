// SPDX-License-Identifier: MIT
// Message texts with gaps.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <initializer_list>

namespace Platform {

// `pattern` with its "%s" replaced by `values` in turn.  Values that are left over
// are dropped, gaps that are left over stay as they are; a value is never searched
// for gaps.
ZEBX_EXPORT CString Fill(CStringView pattern, std::initializer_list<CStringView> values);

} // namespace Platform
