// SPDX-License-Identifier: MIT
// What the program does with the workspace log's messages: shows them and counts them.
#pragma once

#include "ZEBXWorkspaceCore/WsManager.h"

#include <iosfwd>
#include <set>

namespace App {

// Successes as they are; warnings and failures led by a word, which a colour only adds to.
class TerminalSink : public ZEBGis::Workspace::IWsSink {
public:
    TerminalSink(std::ostream& stream, bool colour) : m_stream(stream), m_colour(colour) {}
    void Write(const ZEBGis::Workspace::CWsMessage& message) override;

    // Whether a failure of exactly this text was shown.
    bool HasShown(const CString& failure) const { return m_failures.contains(failure); }

private:
    std::ostream& m_stream;
    bool m_colour;
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

// Writes one message as TerminalSink does.
void ShowMessage(std::ostream& stream, bool colour, std::int32_t type, CStringView text);

} // namespace App
