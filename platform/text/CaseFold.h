// SPDX-License-Identifier: MIT
// Comparison without regard to case, the same in every locale.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

// `text` with every letter in its lower-case form, one code point for one code
// point (Unicode's simple mapping), unpaired surrogates unchanged.  Two texts are
// the same name without regard to case when their folded forms are equal.
ZEBX_EXPORT CString FoldCase(CStringView text);

} // namespace Platform
