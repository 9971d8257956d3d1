// SPDX-License-Identifier: MIT
// The lines of a settings file, taken apart; what they mean is left to UserSettings.
// docs/formats.md describes the format.
#pragma once

#include "platform/text/Text.h"

#include <vector>

namespace Platform {

struct IniLine {
    enum class Kind { Section, Value, Unknown, NotUtf8 };

    Kind kind = Kind::Unknown;
    int number = 0;  // counted from 1
    CString section; // of a section line its name, else the section the line stands in
    CString key;
    CString value; // of an unknown line its text
};

// The lines of `bytes` that say something: blank lines and comments are left out, a
// byte order mark and carriage returns at the end of lines are skipped.
std::vector<IniLine> ReadIniLines(std::string_view bytes);

} // namespace Platform
