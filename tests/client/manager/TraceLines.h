// SPDX-License-Identifier: MIT
// What the module traces while the object lives, in a log file that all tests of the process
// share: the module opens it once.
#pragma once

#include "ZEBXLogging/LogEngine.h"
#include "support/Bytes.h"
#include "support/Workstation.h"

#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <vector>

class TraceLines {
public:
    explicit TraceLines(Workstation& workstation) {
        workstation.Set("XDG_STATE_HOME", StateFolder().string());
        Platform::UserSettings::Instance()->Reset();
        CLogEngine::SetLoggingOnOff(1);
        m_from = Text().size();
    }
    ~TraceLines() { CLogEngine::SetLoggingOnOff(0); }
    TraceLines(const TraceLines&) = delete;
    TraceLines& operator=(const TraceLines&) = delete;

    // Source, function and text of each, without time and line number, which must be there.
    std::vector<std::string> Lines() const {
        static const std::regex shape(R"(\[\d\d:\d\d:\d\d\] (\S+) *\(\d{5}\): \[(\S+) *\], (.*))");
        std::vector<std::string> lines;
        std::istringstream text(Text().substr(m_from));
        for (std::string line; std::getline(text, line);) {
            EXPECT_TRUE(std::regex_match(line, shape)) << line;
            lines.push_back(std::regex_replace(line, shape, "$1 $2 $3"));
        }
        return lines;
    }

private:
    static const std::filesystem::path& StateFolder() {
        static const TemporaryFolder folder;
        return folder.Native();
    }
    static std::string Text() {
        const auto file = StateFolder() / "StudioZEB/trace.log";
        return std::filesystem::exists(file) ? BytesOfFile(file) : std::string();
    }

    std::size_t m_from = 0;
};
