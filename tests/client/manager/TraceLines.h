// SPDX-License-Identifier: MIT
// What the module traces while the object lives, in a log file that all tests of the process
// share: the module opens it once.
#pragma once

#include "ZEBXLogging/LogEngine.h"
#include "support/Bytes.h"
#include "support/Workstation.h"

#include <gtest/gtest.h>
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
        std::vector<std::string> lines;
        std::istringstream text(Text().substr(m_from));
        for (std::string line; std::getline(text, line);)
            lines.push_back(WithoutTimeAndNumber(line));
        return lines;
    }

private:
    // "[hh:mm:ss] Source    (00054): [Function], text" as "Source Function text".
    static std::string WithoutTimeAndNumber(std::string line) {
        for (const std::size_t at : {line.find('['), line.find('(')})
            for (std::size_t i = at + 1; i < at + 9 && i < line.size(); ++i)
                if (line[i] >= '0' && line[i] <= '9')
                    line[i] = '0';
        const std::size_t source = line.find("[00:00:00] ");
        const std::size_t number = line.find("(00000): [");
        const std::size_t text = line.find("], ", number);
        EXPECT_TRUE(source == 0 && number != std::string::npos && text != std::string::npos)
            << line;
        if (text == std::string::npos)
            return line;
        return FirstWord(line.substr(11)) + " " + FirstWord(line.substr(number + 10)) + " " +
               line.substr(text + 3);
    }
    static std::string FirstWord(const std::string& text) {
        return text.substr(0, text.find_first_of(" (]"));
    }

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
