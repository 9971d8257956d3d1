// SPDX-License-Identifier: MIT
// Where the console's lines come from: a stream, or a terminal at which they are edited.
#pragma once

#include "app/ConsoleHistory.h"

#include <iosfwd>
#include <optional>
#include <vector>

namespace App {

class IConsoleLines {
public:
    virtual ~IConsoleLines() = default;
    // The next line, without its end; none at the end of input.  Bytes that are no UTF-8
    // survive (see platform/text/Utf8.h).
    virtual std::optional<CString> Next() = 0;
};

class PlainLines : public IConsoleLines {
public:
    explicit PlainLines(std::istream& in) : m_in(in) {}
    std::optional<CString> Next() override;

private:
    std::istream& m_in;
};

// Of the terminal that is the standard input and output, behind a prompt, with a history.
// Ctrl-C drops the line, and the empty text is given in its place.  One at a time.
class TerminalLines : public IConsoleLines {
public:
    explicit TerminalLines(ConsoleHistory& history);
    ~TerminalLines() override;
    TerminalLines(const TerminalLines&) = delete;
    TerminalLines& operator=(const TerminalLines&) = delete;

    std::optional<CString> Next() override;

private:
    ConsoleHistory& m_history;
};

} // namespace App
