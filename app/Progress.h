// SPDX-License-Identifier: MIT
// The line of progress of a transfer: which selection, how many files, how long.
#pragma once

#include "app/Sinks.h"

#include "platform/host/FileSteps.h"

#include <array>
#include <chrono>

namespace App {

// Listens to the file steps for as long as it stands, and takes the line away at its end.
// Shows nothing where no progress is shown.
class Progress {
public:
    explicit Progress(TerminalSink& terminal);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Counts anew, under this name.
    void Begin(const CString& selection);
    // Since Begin.
    double Seconds() const;
    int Files(Platform::FileStep step) const { return m_files[static_cast<std::size_t>(step)]; }

private:
    void Count(Platform::FileStep step);
    CString Line() const;

    using Clock = std::chrono::steady_clock;

    TerminalSink& m_terminal;
    CString m_selection;
    std::array<int, Platform::kFileSteps> m_files{}; // by FileStep
    Clock::time_point m_begun = Clock::now();
    Clock::time_point m_shown;
};

} // namespace App
