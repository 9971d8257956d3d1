// SPDX-License-Identifier: MIT
// What ends a verb early, and the program's exit statuses.  docs/command-line.md lists them.
#pragma once

#include "platform/text/Text.h"

#include <exception>
#include <utility>

namespace App {

enum class ExitStatus : int {
    Done = 0,
    Different = 1,
    Usage = 2,
    Configuration = 3,
    NotReachable = 4,
    NotAllowed = 5,
    Conflict = 6,
    Integrity = 7,
    SomeFailed = 8,
    LocalFile = 9,
    Internal = 70,
    Interrupted = 130
};

// The only exception that this floor throws.
class AppError : public std::exception {
public:
    // `text` says what, which, why and what to do, in the user's language; may have
    // several lines.
    AppError(ExitStatus status, CString text) : m_status(status), m_text(std::move(text)) {}

    ExitStatus Status() const { return m_status; }
    const CString& Text() const { return m_text; }
    const char* what() const noexcept override { return "App::AppError"; }

private:
    ExitStatus m_status;
    CString m_text;
};

} // namespace App
