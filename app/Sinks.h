// SPDX-License-Identifier: MIT
// What the program does with the workspace log's messages: shows them and counts them.
#pragma once

#include "ZEBXWorkspaceCore/WsManager.h"

#include <iosfwd>
#include <set>

namespace App {

// What a user wants to see of a run, and how.
struct TerminalStyle {
    bool colour = false;
    bool quiet = false;            // warnings and failures only
    bool verbose = false;          // notes as well
    std::size_t lineWidth = 0;     // lines are broken at blanks before it; 0: not at all
    std::size_t progressWidth = 0; // most columns of the line of progress; 0: there is none
};

// Successes as they are; warnings and failures led by a word, which a colour only adds to.
// Below them stands the line of progress, where there is one; it is rewritten in place with
// blanks and carriage returns alone.
class TerminalSink : public ZEBGis::Workspace::IWsSink {
public:
    TerminalSink(std::ostream& stream, const TerminalStyle& style)
        : m_stream(stream), m_style(style) {}
    void Write(const ZEBGis::Workspace::CWsMessage& message) override;

    // A line that only --verbose shows.
    void Note(CStringView text);

    bool ShowsProgress() const { return m_style.progressWidth > 0; }
    // Replaces the line of progress; the empty text takes it away.  Too long a text is cut.
    void ShowProgress(CStringView line);

    // Whether a failure of exactly this text was shown.
    bool HasShown(const CString& failure) const { return m_failures.contains(failure); }

private:
    void EraseProgress();
    void DrawProgress();

    std::ostream& m_stream;
    TerminalStyle m_style;
    CString m_progress;
    std::set<CString> m_failures;
};

class CountingSink : public ZEBGis::Workspace::IWsSink {
public:
    void Write(const ZEBGis::Workspace::CWsMessage& message) override;

    int Successes() const { return m_successes; }
    int Failures() const { return m_failures; }

private:
    int m_successes = 0;
    int m_failures = 0;
};

// Adds a sink to the workspace log for as long as it stands.
class SinkGuard {
public:
    explicit SinkGuard(boost::shared_ptr<ZEBGis::Workspace::IWsSink> sink);
    ~SinkGuard();
    SinkGuard(const SinkGuard&) = delete;
    SinkGuard& operator=(const SinkGuard&) = delete;

private:
    boost::shared_ptr<ZEBGis::Workspace::IWsSink> m_sink;
};

} // namespace App
