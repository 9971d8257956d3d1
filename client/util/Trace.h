// SPDX-License-Identifier: MIT
// The developers' trace: a line when a traced function is entered and when it is left,
// free lines, and a line for each condition that fails. Used by the manager and the
// dialog; the family's logging library says whether and where.
//
// No failure of tracing reaches the caller. Used from one thread. Exported for the dialog's
// module, which writes to the same log.
#pragma once

#include "ZEBXLogging/LogEngine.h"
#include "platform/Export.h"
#include "platform/text/Text.h"

#include <ctime>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Repository {

// What the scopes of a process share. Everything is made at first use and stays.
class ZEBX_EXPORT TraceLog {
public:
    // `logFile` gives the path of the log file; it is asked once.
    explicit TraceLog(std::string (*logFile)() = &CLogEngine::GetLogFileFullPath)
        : m_logFile(logFile) {}

    // The one that the module writes to.
    static TraceLog& Process();

    // Scopes of a higher level write no lines.
    int GetThreshold() const { return 3; }

    // The log file, opened for appending at the first call; the process's standard output
    // for good when that failed.
    std::ostream& GetStream();

    // The names of the functions that were entered and not left.
    std::vector<std::string>& GetCallStack() { return m_callStack; }

private:
    std::string (*m_logFile)();
    std::optional<std::ofstream> m_file;
    std::vector<std::string> m_callStack;
};

// One traced function, from its entry to every way out.
class ZEBX_EXPORT TraceScope {
public:
    // Enters: writes the entering line and puts the function on the call stack, both only
    // when logging is on. The texts are not copied; `source` is a path whose folders are
    // separated by "\". Lines go to `stream`, to the log's own when it is null.
    TraceScope(const char* source, int line, const char* function, int level = 3,
               std::ostream* stream = nullptr, TraceLog& log = TraceLog::Process()) noexcept;
    // Leaves: the exiting line, and the last name off the call stack, both only when
    // logging is on now.
    ~TraceScope();
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

    // A free line, and a line with an expression's value, when logging is on. `line` is
    // where the statement stands.
    void WriteLine(std::string_view text, int line = __builtin_LINE()) noexcept;
    void WriteValue(std::string_view expression, const char16_t* value,
                    int line = __builtin_LINE()) noexcept;

    // Writes a line when `condition` is false, also while logging is off; returns the
    // condition.
    bool Verify(bool condition, std::string_view expression, int line = __builtin_LINE()) noexcept;

private:
    void Write(int line, std::initializer_list<std::string_view> texts);
    std::string PrefixOf(int line) const;

    const char* m_source;
    int m_line;
    const char* m_function;
    int m_level;
    std::ostream* m_stream;
    TraceLog& m_log;
};

// "hh:mm:ss" of local time; a part that the system cannot convert is -1.
std::string TraceTime(std::time_t time);

// A wide text for a trace line: as many bytes of its UTF-8 form as it has UTF-16 code
// units, never a part of a character. Null gives "Error: Bad pointer".
std::string TraceText(const char16_t* text);

} // namespace Repository
