// SPDX-License-Identifier: MIT
#include "platform/text/CaseFold.h"

#include "platform/text/Surrogates.h"

#include <utf8proc.h>

namespace Platform {

CString FoldCase(CStringView text) {
    CString folded;
    folded.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const char16_t unit = text[position];
        if (unit < 0x80) {
            folded += unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
            ++position;
            continue;
        }
        const std::int32_t codePoint = NextCodePoint(text, position);
        AppendCodePoint(folded, IsSurrogate(codePoint) ? codePoint : utf8proc_tolower(codePoint));
    }
    return folded;
}

} // namespace Platform
