// SPDX-License-Identifier: MIT
// Cuts a record's text at a delimiter, in the two ways that the records need.
//
// The pieces are views: they are valid as long as the text that was cut, so that a
// record of many megabytes is not copied to be read.
#pragma once

#include "platform/text/Text.h"

#include <string_view>
#include <vector>

namespace Repository {

// The pieces between the delimiters in order, empty ones kept: "a##b#" at '#' gives "a",
// "", "b", "", and the empty text gives one empty piece.
std::vector<CStringView> SplitFields(CStringView text, char16_t delimiter);
std::vector<std::string_view> SplitFields(std::string_view text, char delimiter);

// Empties `pieces` and fills it with the pieces that are not empty: "@a@@b@" at '@' gives
// "a", "b", and the empty text gives none.
void SplitNonEmpty(CStringView text, char16_t separator, std::vector<CStringView>& pieces);

} // namespace Repository
