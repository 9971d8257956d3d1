// SPDX-License-Identifier: MIT
// The lines that were typed at the console, kept in a private file, a line each, UTF-8.
#pragma once

#include "platform/text/Text.h"

#include <vector>

namespace App {

class ConsoleHistory {
public:
    static constexpr std::size_t kMostLines = 1000;
    static constexpr std::size_t kLongestLine = 4096; // of bytes; a longer one is not kept

    // Reads what was kept and, where that is more than is kept, makes the file shorter.  What
    // cannot be read or written is passed over, here and in Add: a console works without.
    explicit ConsoleHistory(const CString& path);

    // Keeps the line, unless it is blank, too long or the one before again; returns whether it
    // did.
    bool Add(const CString& line);

    // The newest ones that were kept, and what this console added; oldest first.
    const std::vector<CString>& Lines() const { return m_lines; }

    // Where this user's lies.
    static CString DefaultPath();

private:
    void Shorten();

    CString m_path;
    std::vector<CString> m_lines;
};

} // namespace App
