// SPDX-License-Identifier: MIT
#include "app/Sinks.h"

#include "app/Print.h"
#include "app/Texts.h"

#include <ostream>
#include <utility>

namespace App {
namespace {

using namespace ZEBGis::Workspace;

constexpr const char* kYellow = "\x1b[33m";
constexpr const char* kRed = "\x1b[31m";
constexpr const char* kPlain = "\x1b[0m";

void ShowMessage(std::ostream& stream, const TerminalStyle& style, const CWsMessage& message) {
    std::size_t indent = 0;
    if (message.type == MessageWarning || message.type == MessageFailure) {
        const bool failure = message.type == MessageFailure;
        const CString word = Text(failure ? Message::Failure : Message::Warning);
        if (style.colour)
            stream << (failure ? kRed : kYellow);
        Print(stream, word);
        stream << (style.colour ? kPlain : "") << ' ';
        indent = WidthOf(word) + 1;
    }
    PrintLine(stream, BrokenLines(message.text, indent, style.lineWidth));
}

} // namespace

// A sink must not throw; a line that cannot be shown for want of memory is lost.
void TerminalSink::Write(const CWsMessage& message) try {
    if (m_style.quiet && message.type == MessageSuccess)
        return;
    EraseProgress();
    ShowMessage(m_stream, m_style, message);
    DrawProgress();
    if (message.type == MessageFailure)
        m_failures.insert(message.text);
} catch (...) {
}

void TerminalSink::Note(CStringView text) {
    if (!m_style.verbose)
        return;
    EraseProgress();
    PrintLine(m_stream, BrokenLines(text, 0, m_style.lineWidth));
    DrawProgress();
}

void TerminalSink::ShowProgress(CStringView line) {
    if (!ShowsProgress() || (line.empty() && m_progress.empty()))
        return;
    EraseProgress();
    m_progress = line.substr(0, m_style.progressWidth);
    DrawProgress();
}

void TerminalSink::EraseProgress() {
    if (!m_progress.empty())
        m_stream << '\r' << std::string(WidthOf(m_progress), ' ') << '\r';
}

void TerminalSink::DrawProgress() {
    if (!m_progress.empty()) {
        Print(m_stream, m_progress);
        m_stream.flush();
    }
}

void CountingSink::Write(const CWsMessage& message) {
    if (message.type == MessageSuccess)
        ++m_successes;
    else if (message.type == MessageFailure)
        ++m_failures;
}

SinkGuard::SinkGuard(boost::shared_ptr<IWsSink> sink) : m_sink(std::move(sink)) {
    CWsManager::Instance()->AddSink(m_sink);
}

SinkGuard::~SinkGuard() {
    CWsManager::Instance()->RemoveSink(m_sink);
}

} // namespace App
