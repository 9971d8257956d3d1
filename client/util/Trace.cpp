// SPDX-License-Identifier: MIT
#include "client/util/Trace.h"

#include "client/util/AnsiText.h"
#include "client/util/Border.h"
#include "platform/text/Utf8.h"

#include <array>
#include <cstdio>
#include <iostream>

namespace Repository {
namespace {

std::string_view FileOf(std::string_view source) {
    return source.substr(source.rfind('\\') + 1); // the whole path when it has none
}

// A part of local time. Asked for three times for one line: kept.
int LocalPart(std::time_t time, int std::tm::*part) {
    const std::tm* local = std::localtime(&time);
    return local ? local->*part : -1;
}

} // namespace

TraceLog& TraceLog::Process() {
    static TraceLog log;
    return log;
}

std::ostream& TraceLog::GetStream() {
    if (!m_file)
        m_file.emplace(m_logFile(), std::ios::app);
    return m_file->is_open() ? *m_file : std::cout;
}

TraceScope::TraceScope(const char* source, int line, const char* function, int level,
                       std::ostream* stream, TraceLog& log) noexcept
    : m_source(source), m_line(line), m_function(function), m_level(level), m_stream(stream),
      m_log(log) {
    AtBorder([this] {
        if (!CLogEngine::GetLoggingOnOff())
            return;
        // The blank before the comma stands in every log: kept.
        Write(m_line, {"Entering function ", ", ", m_function});
        m_log.GetCallStack().emplace_back(m_function);
    });
}

TraceScope::~TraceScope() {
    AtBorder([this] {
        if (!CLogEngine::GetLoggingOnOff())
            return;
        Write(m_line, {"Exiting function ", ", ", m_function});
        if (!m_log.GetCallStack().empty())
            m_log.GetCallStack().pop_back();
    });
}

void TraceScope::WriteLine(std::string_view text, int line) noexcept {
    AtBorder([&] {
        if (CLogEngine::GetLoggingOnOff())
            Write(line, {text});
    });
}

void TraceScope::WriteValue(std::string_view expression, const char16_t* value, int line) noexcept {
    AtBorder([&] {
        if (CLogEngine::GetLoggingOnOff())
            Write(line, {expression, " = '", WideToAnsi(value), "'"});
    });
}

// Does not ask whether logging is on: a failed condition is always worth a line. Kept.
bool TraceScope::Verify(bool condition, std::string_view expression, int line) noexcept {
    AtBorder([&] {
        if (!condition)
            Write(line, {"Failed verification:  '", expression, "'"});
    });
    return condition;
}

void TraceScope::Write(int line, std::initializer_list<std::string_view> texts) {
    if (m_level > m_log.GetThreshold())
        return;
    std::ostream& stream = m_stream ? *m_stream : m_log.GetStream();
    stream << PrefixOf(line);
    for (const std::string_view text : texts)
        stream << text;
    stream << std::endl;
}

// Names are meant to keep a prefix below 999 characters; a longer one is cut there.
std::string TraceScope::PrefixOf(int line) const {
    std::array<char, 999> prefix{};
    std::snprintf(prefix.data(), prefix.size(), "[%s] %-32s(%5.5i): [%-16s], ",
                  TraceTime(std::time(nullptr)).c_str(), FileOf(m_source).data(), line, m_function);
    return prefix.data();
}

std::string TraceTime(std::time_t time) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", LocalPart(time, &std::tm::tm_hour),
                  LocalPart(time, &std::tm::tm_min), LocalPart(time, &std::tm::tm_sec));
    return text.data();
}

std::string TraceText(const char16_t* text) {
    if (!text)
        return "Error: Bad pointer";
    const CStringView wide(text);
    std::string bytes = Platform::ToUtf8(wide);
    if (bytes.size() <= wide.size())
        return bytes;
    std::size_t end = wide.size();
    while (end > 0 && (bytes[end] & 0xC0) == 0x80)
        --end;
    bytes.resize(end);
    return bytes;
}

} // namespace Repository
