// SPDX-License-Identifier: MIT
// The message table: one UTF-8 file a language, a line "NUMBER = text" a message, lines
// that begin with "#" and empty lines left out. docs/formats.md describes it.
#pragma once

#include "platform/text/Text.h"

#include <map>

namespace ZEBGis {

// What the file holds; lines that are not a message are passed over, and of two lines with
// one number the first counts. A missing file gives an empty table.
std::map<int, CString> ReadMessageTable(CStringView path);

// What is shown in place of a text that the table lacks; it names the number.
CString TextForUnknownMessage(CStringView language, int number);

} // namespace ZEBGis
