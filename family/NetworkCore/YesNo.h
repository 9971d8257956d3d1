// SPDX-License-Identifier: MIT
// Truth values in XML attributes.
#pragma once

#include "platform/text/Text.h"

#include <optional>

namespace ZEBGis::Data {

// "yes" and "no" are written; "1", "0", "true" and "false" are read too.
inline std::optional<bool> YesOrNo(CStringView text) {
    if (text == u"yes" || text == u"1" || text == u"true")
        return true;
    if (text == u"no" || text == u"0" || text == u"false")
        return false;
    return std::nullopt;
}

} // namespace ZEBGis::Data
