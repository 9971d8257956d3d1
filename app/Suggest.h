// SPDX-License-Identifier: MIT
// What a mistyped word may have meant.
#pragma once

#include "platform/text/Text.h"

#include <vector>

namespace App {

// The one or two of `known` that are nearest to `word`, nearest first; none when nothing is
// near: more than a third of the letters wrong, left out, too many or swapped with their
// neighbour.  Case does not count, and the beginning of a word is near to it.
std::vector<CString> Nearest(CStringView word, const std::vector<CString>& known);

// "Did you mean push?" on a line of its own, in the user's language; empty when nothing is
// near.
CString DidYouMean(CStringView word, const std::vector<CString>& known);

} // namespace App
