// SPDX-License-Identifier: MIT
// The message table of a language, straight from the sources.
#pragma once

#include "ZEBXRepositoryClient/MsgProvider.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <fstream>
#include <map>

namespace Storage {

inline std::map<int, CString> ReadMessages(const std::string& language) {
    std::map<int, CString> messages;
    std::ifstream file(std::string(ZEBX_SOURCE_DIR) + "/messages/" + language);
    for (std::string line; std::getline(file, line);)
        if (const auto equals = line.find(" = "); equals != std::string::npos && line[0] != '#')
            messages[std::stoi(line)] = Platform::FromUtf8(line.substr(equals + 3));
    return messages;
}

class EnglishMessages : public Repository::IMsgProvider {
public:
    virtual ~EnglishMessages() = default;
    CString GetMsg(CString& buffer, int number) override {
        const auto found = m_messages.find(number);
        buffer = found == m_messages.end() ? u"missing " + Platform::ToText(number) : found->second;
        return buffer;
    }

private:
    std::map<int, CString> m_messages = ReadMessages("en");
};

} // namespace Storage
