// SPDX-License-Identifier: MIT
// Gives each control of a window a key of its own: a letter or digit, pressed with Alt.
// Always the same for the same texts in the same order.
#pragma once

#include "platform/text/Text.h"

#include <set>
#include <vector>

namespace Platform {

struct Mnemonic {
    char16_t key = 0;                     // 'a' to 'z', '0' to '9'; 0: none was left
    std::size_t position = CString::npos; // in the text; npos: the text lacks it

    bool IsInText() const { return position != CString::npos; }
};

// One for each of `texts`, none of them in `taken`, to which they are added.  A text gets its
// words' first letters before other letters, letters before digits, and a key that it lacks
// only when none of its own can be freed.
std::vector<Mnemonic> AssignMnemonics(const std::vector<CString>& texts, std::set<char16_t>& taken);

// `text` as Qt shows it with that key underlined: "&" before it, and "&&" for every "&".
CString WithMnemonic(CStringView text, const Mnemonic& mnemonic);

} // namespace Platform
