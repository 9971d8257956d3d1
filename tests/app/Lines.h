// SPDX-License-Identifier: MIT
// The program's output taken apart.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace AppTest {

inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The lines that are not empty, the blanks between their words taken together.
inline std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> lines;
    for (const std::string& line : Lines(text)) {
        std::istringstream words(line);
        std::string joined;
        for (std::string word; words >> word;)
            joined += (joined.empty() ? "" : " ") + word;
        if (!joined.empty())
            lines.push_back(joined);
    }
    return lines;
}

} // namespace AppTest
