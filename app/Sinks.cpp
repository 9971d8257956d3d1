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

} // namespace

void ShowMessage(std::ostream& stream, bool colour, std::int32_t type, CStringView text) {
    if (type == MessageWarning || type == MessageFailure) {
        const bool failure = type == MessageFailure;
        if (colour)
            stream << (failure ? kRed : kYellow);
        Print(stream, Text(failure ? Message::Failure : Message::Warning));
        stream << (colour ? kPlain : "") << ' ';
    }
    PrintLine(stream, text);
}

// A sink must not throw; a line that cannot be shown for want of memory is lost.
void TerminalSink::Write(const CWsMessage& message) try {
    ShowMessage(m_stream, m_colour, message.type, message.text);
    if (message.type == MessageFailure)
        m_failures.insert(message.text);
} catch (...) {
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
