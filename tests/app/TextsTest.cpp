// SPDX-License-Identifier: MIT
#include "app/Texts.h"
#include "Station.h"

#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <sstream>

using AppTest::Bytes;

namespace {

// Numbers 21000 to 21999 of one language's table.
std::map<int, std::string> ProgramTexts(const std::string& language) {
    std::map<int, std::string> texts;
    std::istringstream table(Bytes(AppTest::fs::path(ZEBX_SOURCE_DIR) / "messages" / language));
    const std::regex pattern("(21\\d\\d\\d) = (.*)");
    std::smatch match;
    for (std::string line; std::getline(table, line);) {
        if (std::regex_match(line, match, pattern)) {
            EXPECT_TRUE(texts.emplace(std::stoi(match[1]), match[2]).second) << "twice: " << line;
        }
    }
    return texts;
}

// The numbers that Texts.h names.
std::set<int> NamedNumbers() {
    std::set<int> numbers;
    const std::string header = Bytes(AppTest::fs::path(ZEBX_SOURCE_DIR) / "app/Texts.h");
    const std::regex pattern("\\w+ = (21\\d\\d\\d)");
    for (std::sregex_iterator match(header.begin(), header.end(), pattern), end; match != end;
         ++match)
        EXPECT_TRUE(numbers.insert(std::stoi((*match)[1])).second) << "twice: " << match->str();
    return numbers;
}

std::size_t Gaps(const std::string& text) {
    std::size_t gaps = 0;
    for (std::size_t at = text.find("%s"); at != std::string::npos; at = text.find("%s", at + 2))
        ++gaps;
    return gaps;
}

TEST(Texts, EveryNamedNumberHasATextInBothLanguagesAndNoOtherNumberHas) {
    const std::set<int> named = NamedNumbers();
    ASSERT_FALSE(named.empty());
    for (const char* language : {"en", "hr"}) {
        std::set<int> found;
        for (const auto& [number, text] : ProgramTexts(language))
            found.insert(number);
        EXPECT_EQ(found, named) << language;
    }
}

TEST(Texts, BothLanguagesHaveTheSameGaps) {
    const auto english = ProgramTexts("en");
    const auto croatian = ProgramTexts("hr");
    for (const auto& [number, text] : english)
        EXPECT_EQ(Gaps(text), Gaps(croatian.at(number))) << number;
}

TEST(Texts, CroatianIsNotEnglish) {
    const auto english = ProgramTexts("en");
    const auto croatian = ProgramTexts("hr");
    // "Program" is one word in both, "%s: %s" has none.
    const std::set<std::string> same = {"Program", "%s: %s"};
    for (const auto& [number, text] : english) {
        if (!same.contains(text)) {
            EXPECT_NE(text, croatian.at(number)) << number;
        }
    }
}

} // namespace
