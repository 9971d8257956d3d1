// SPDX-License-Identifier: MIT
// The line of progress of a transfer: which selection, or what the family's progress bar says,
// how many files, how long.
#pragma once

#include "app/Sinks.h"

#include "ZEBXGisCore/CoreProgressBar.h"
#include "platform/host/FileSteps.h"

#include <array>
#include <chrono>
#include <functional>
#include <optional>

namespace App {

// Listens to the file steps and shows the progress bar for as long as it stands, and takes the
// line away at its end.  Shows nothing where no progress is shown.
class Progress : private ZEBGis::IProgressView {
public:
    explicit Progress(TerminalSink& terminal);
    virtual ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Counts anew, under this name.
    void Begin(const CString& selection);
    // Since Begin.
    double Seconds() const;
    int Files(Platform::FileStep step) const { return m_files[static_cast<std::size_t>(step)]; }

private:
    void Update(const ZEBGis::ProgressState& state) override;
    void Hide() override { m_bar.reset(); }
    void Count(Platform::FileStep step);
    void Show();
    CString Line() const;
    CString Title() const;

    using Clock = std::chrono::steady_clock;

    TerminalSink& m_terminal;
    ZEBGis::IProgressView* const m_formerView;
    std::function<void(Platform::FileStep)> m_formerListener;
    CString m_selection;
    std::optional<ZEBGis::ProgressState> m_bar;      // while it is visible
    std::array<int, Platform::kFileSteps> m_files{}; // by FileStep
    Clock::time_point m_begun = Clock::now();
    Clock::time_point m_shown;
};

} // namespace App
