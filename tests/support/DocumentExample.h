// SPDX-License-Identifier: MIT
// The worked examples of docs/formats.md, so that a document which is wrong fails a test.
#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

// What stands in the fenced block of docs/formats.md below the line "<!-- example: `name` -->",
// without the line feed at its end.
inline std::string DocumentExample(const std::string& name) {
    std::ostringstream content;
    content << std::ifstream(ZEBX_SOURCE_DIR "/docs/formats.md").rdbuf();
    const std::string text = content.str();
    const std::string marker = "\n<!-- example: " + name + " -->\n```\n";
    const std::size_t found = text.find(marker);
    const std::size_t start = found + marker.size();
    const std::size_t end = text.find("\n```\n", start);
    if (found == std::string::npos || end == std::string::npos)
        throw std::runtime_error("no example marked \"" + name + "\"");
    return text.substr(start, end - start);
}

// The bytes that `text` writes in hexadecimal digits, two and two, between blanks.
inline std::string BytesOfHex(const std::string& text) {
    std::istringstream stream(text);
    std::string bytes;
    for (std::string byte; stream >> byte;)
        bytes += static_cast<char>(std::stoi(byte, nullptr, 16));
    return bytes;
}
