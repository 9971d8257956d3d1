// SPDX-License-Identifier: MIT
#include "app/Texts.h"
#include "Station.h"

#include <gmock/gmock.h>
#include <map>
#include <set>
#include <sstream>

using AppTest::Bytes;

namespace {

// The program's number at the start of `text`; 0 when there is none.
int NumberAt(std::string_view text) {
    const bool found = text.size() >= 5 && text.substr(0, 2) == "21" &&
                       text.substr(0, 5).find_first_not_of("0123456789") == text.npos;
    return found ? std::stoi(std::string(text.substr(0, 5))) : 0;
}

// Numbers 21000 to 21999 of one language's table.
std::map<int, std::string> ProgramTexts(const std::string& language) {
    std::map<int, std::string> texts;
    std::istringstream table(Bytes(AppTest::fs::path(ZEBX_SOURCE_DIR) / "messages" / language));
    for (std::string line; std::getline(table, line);) {
        const int number = NumberAt(line);
        if (number == 0)
            continue;
        EXPECT_EQ(line.substr(5, 3), " = ") << line;
        EXPECT_TRUE(texts.emplace(number, line.substr(8)).second) << "twice: " << line;
    }
    return texts;
}

// The numbers that Texts.h names.
std::set<int> NamedNumbers() {
    std::set<int> numbers;
    std::istringstream header(Bytes(AppTest::fs::path(ZEBX_SOURCE_DIR) / "app/Texts.h"));
    for (std::string line; std::getline(header, line);) {
        const auto equals = line.find(" = 21");
        if (equals != std::string::npos) {
            EXPECT_TRUE(numbers.insert(NumberAt(line.substr(equals + 3))).second) << line;
        }
    }
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
    // "Program" and "GUID" are one word in both, "%s: %s" has none.
    const std::set<std::string> same = {"Program", "GUID", "%s: %s"};
    for (const auto& [number, text] : english) {
        if (!same.contains(text)) {
            EXPECT_NE(text, croatian.at(number)) << number;
        }
    }
}

} // namespace
