// SPDX-License-Identifier: MIT
#include "platform/text/Fill.h"

namespace Platform {

CString Fill(CStringView pattern, std::initializer_list<CStringView> values) {
    constexpr CStringView kGap = u"%s";
    CString text;
    for (const CStringView value : values) {
        const std::size_t gap = pattern.find(kGap);
        if (gap == CStringView::npos)
            break;
        text.append(pattern.substr(0, gap)).append(value);
        pattern.remove_prefix(gap + kGap.size());
    }
    return text.append(pattern);
}

} // namespace Platform
