// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/ModuleConfiguration.h"

#include "platform/os/File.h"
#include "platform/text/Utf8.h"
#include "support/DocumentExample.h"
#include "support/Workstation.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

using ZEBGis::CModuleConfiguration;

// The numbers that the kinds, the transfers and the dialog ask for.
constexpr int kFamilyNumbers[] = {
    235,   249,   350,   381,   2424,  4004,  4411,  7082,  7368,  7369,  8530,  10029,
    10174, 10313, 10314, 10315, 10316, 10321, 10324, 10325, 10326, 10328, 10329, 10332,
    10334, 10368, 10369, 10371, 10372, 10373, 10374, 10375, 10376, 10377, 10378, 10379,
    10380, 10381, 10382, 10383, 10384, 10385, 10712, 10713, 10714, 10715};

class MessageTable : public testing::TestWithParam<const char*> {
protected:
    // The lines of the table in this repository that are messages, by number.
    std::multimap<int, std::string> Lines() const {
        std::string bytes;
        EXPECT_FALSE(Platform::ReadFile(
            Platform::PathFromNative(std::string(ZEBX_SOURCE_DIR "/messages/") + GetParam()),
            bytes));
        EXPECT_TRUE(Platform::IsWellFormed(Platform::FromUtf8(bytes)));
        std::multimap<int, std::string> lines;
        std::istringstream stream(bytes);
        for (std::string line; std::getline(stream, line);)
            if (!line.empty() && line[0] != '#')
                lines.emplace(std::stoi(line), line.substr(line.find('=') + 1));
        return lines;
    }
};

TEST_P(MessageTable, HasATextForEveryNumberOfTheFamily) {
    Workstation station;
    station.Set("ZEBX_LANGUAGE", GetParam());
    const CString unknown = CModuleConfiguration::Instance()->GetMsg(99999);
    const CString word = unknown.substr(0, unknown.find(u'9'));
    for (int number : kFamilyNumbers)
        EXPECT_NE(CModuleConfiguration::Instance()->GetMsg(number).rfind(word, 0), 0u) << number;
}

TEST_P(MessageTable, HasEveryNumberOnce) {
    const auto lines = Lines();
    for (const auto& [number, text] : lines)
        EXPECT_EQ(lines.count(number), 1u) << number;
}

TEST_P(MessageTable, HasTheSameNumbersAndGapsInBothLanguages) {
    std::multimap<int, std::string> gaps[2];
    const auto count = [](const std::string& text) {
        std::string found;
        for (std::size_t at = 0; (at = text.find("%s", at)) != std::string::npos; at += 2)
            found += "%s";
        return found;
    };
    for (const auto& [number, text] : Lines())
        gaps[0].emplace(number, count(text));
    std::string english;
    Platform::ReadFile(Platform::PathFromNative(ZEBX_SOURCE_DIR "/messages/en"), english);
    std::istringstream stream(english);
    for (std::string line; std::getline(stream, line);)
        if (!line.empty() && line[0] != '#')
            gaps[1].emplace(std::stoi(line), count(line));
    EXPECT_EQ(gaps[0], gaps[1]);
}

INSTANTIATE_TEST_SUITE_P(Languages, MessageTable, testing::Values("en", "hr"));

TEST(MessageTableFile, TheDocumentsExampleIsReadAsItSays) {
    Workstation station;
    station.Set("ZEBX_INSTALL", station.Folder().Native().string());
    const CString folder = station.Folder().Path() + u"messages\\";
    Platform::CreateFolderChain(folder);
    Platform::WriteFile(folder + u"en", DocumentExample("message-table"));
    const auto* configuration = CModuleConfiguration::Instance();
    EXPECT_EQ(configuration->GetMsg(10314), u"Nodes");
    EXPECT_EQ(configuration->GetMsg(20003), u"There is no repository at %s.");
    EXPECT_EQ(configuration->GetMsg(12345), u"message 12345");
}

TEST(MessageTableFile, LinesThatAreNoMessagesArePassedOver) {
    Workstation station;
    station.Set("ZEBX_INSTALL", station.Folder().Native().string());
    const CString folder = station.Folder().Path() + u"messages\\";
    Platform::CreateFolderChain(folder);
    Platform::WriteFile(folder + u"en", "# comment\n"
                                        "no number = x\n"
                                        "12\n"
                                        "13 =\n"
                                        "14=first = equals\r\n"
                                        "14 = second\n"
                                        "99999999999999999999 = huge\n"
                                        "15 = the last line has no end");
    const auto* configuration = CModuleConfiguration::Instance();
    EXPECT_EQ(configuration->GetMsg(12), u"message 12");
    EXPECT_EQ(configuration->GetMsg(13), u"message 13");
    EXPECT_EQ(configuration->GetMsg(14), u"first = equals");
    EXPECT_EQ(configuration->GetMsg(15), u"the last line has no end");
    EXPECT_EQ(configuration->GetMsg(2147483647), u"message 2147483647");
}

} // namespace
