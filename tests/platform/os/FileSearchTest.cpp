// SPDX-License-Identifier: MIT
#include "platform/os/FileSearch.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Platform::FindFiles;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

class FileSearch : public testing::Test {
protected:
    void Touch(std::initializer_list<const char*> names) const {
        for (const char* name : names)
            std::ofstream(m_folder.Native() / name) << name;
    }

    std::vector<CString> Find(CStringView pattern) const {
        return FindFiles(m_folder.Path() + CString(pattern));
    }

    TemporaryFolder m_folder;
};

// The rule of patterns, one unit after the other; slow where there are many "*".
bool MatchesNaively(std::string_view name, std::string_view pattern) {
    if (pattern.empty())
        return name.empty();
    if (pattern.front() == '*')
        return MatchesNaively(name, pattern.substr(1)) ||
               (!name.empty() && MatchesNaively(name.substr(1), pattern));
    return !name.empty() && (pattern.front() == '?' || pattern.front() == name.front()) &&
           MatchesNaively(name.substr(1), pattern.substr(1));
}

} // namespace

TEST_F(FileSearch, AStarIsAnyRunOfCharacters) {
    Touch({"a.dwg", "b.dwg", ".dwg", "a.dwg.bak", "dwg"});
    EXPECT_THAT(Find(u"*.dwg"), ElementsAre(u".dwg", u"a.dwg", u"b.dwg"));
    EXPECT_THAT(Find(u"a*"), ElementsAre(u"a.dwg", u"a.dwg.bak"));
    EXPECT_THAT(Find(u"*w**g"), ElementsAre(u".dwg", u"a.dwg", u"b.dwg", u"dwg"));
}

TEST_F(FileSearch, AQuestionMarkIsExactlyOneCodeUnit) {
    Touch({"a1", "a12", "a", "a\xF0\x9F\x98\x80", "ač"});
    EXPECT_THAT(Find(u"a?"), ElementsAre(u"a1", u"ač"));
    EXPECT_THAT(Find(u"a??"), ElementsAre(u"a12", u"a\U0001F600"));
}

TEST_F(FileSearch, CaseIsIgnored) {
    Touch({"PIPE.DWG", "pipe2.dwg", "ČVOR.Dwg"});
    EXPECT_THAT(Find(u"*.dWg"), ElementsAre(u"PIPE.DWG", u"pipe2.dwg", u"ČVOR.Dwg"));
    EXPECT_THAT(Find(u"čvor*"), ElementsAre(u"ČVOR.Dwg"));
}

TEST_F(FileSearch, NamesStandInFoldedOrderOnEveryMachine) {
    Touch({"b", "A", "c", "B", "a", "_", "Č", "Z"});
    EXPECT_THAT(Find(u"?"), ElementsAre(u".", u"_", u"A", u"a", u"B", u"b", u"c", u"Z", u"Č"));
}

TEST_F(FileSearch, TheFolderItselfAndTheOneAboveMatchToo) {
    Touch({"a", ".hidden"});
    fs::create_directory(m_folder.Native() / "folder");
    EXPECT_THAT(Find(u"*"), ElementsAre(u".", u"..", u".hidden", u"a", u"folder"));
    EXPECT_THAT(Find(u"*."), ElementsAre(u".", u".."));
    EXPECT_THAT(Find(u"??"), ElementsAre(u".."));
}

TEST_F(FileSearch, ANameWithoutWildcardsFindsItself) {
    Touch({"A.cfg", "b.cfg"});
    EXPECT_THAT(Find(u"a.CFG"), ElementsAre(u"A.cfg"));
    EXPECT_THAT(Find(u"none.cfg"), IsEmpty());
}

TEST_F(FileSearch, TheFolderIsLookedUpAndMayBeWrittenWithSlashes) {
    fs::create_directory(m_folder.Native() / "Blocks");
    Touch({"Blocks/a.dwg"});
    EXPECT_THAT(Find(u"BLOCKS\\*.dwg"), ElementsAre(u"a.dwg"));
    EXPECT_THAT(Find(u"blocks/*.dwg"), ElementsAre(u"a.dwg"));
}

TEST_F(FileSearch, WildcardsOfTheFolderAreLetters) {
    fs::create_directory(m_folder.Native() / "b1");
    fs::create_directory(m_folder.Native() / "b?");
    Touch({"b1/a.dwg", "b?/c.dwg"});
    EXPECT_THAT(Find(u"b?\\*.dwg"), ElementsAre(u"c.dwg"));
}

TEST_F(FileSearch, OtherSignsOfOtherPatternsAreLetters) {
    Touch({"[ab].dwg", "a.dwg", "{a,b}"});
    EXPECT_THAT(Find(u"[ab].dwg"), ElementsAre(u"[ab].dwg"));
    EXPECT_THAT(Find(u"{*}"), ElementsAre(u"{a,b}"));
}

TEST_F(FileSearch, AFolderThatIsMissingGivesNoNames) {
    Touch({"file"});
    EXPECT_THAT(Find(u"none\\*"), IsEmpty());
    EXPECT_THAT(Find(u"file\\*"), IsEmpty());
    EXPECT_THAT(Find(u""), IsEmpty());
    EXPECT_THAT(FindFiles(u""), IsEmpty());
}

TEST_F(FileSearch, AFolderThatMayNotBeReadGivesNoNames) {
    Touch({"a"});
    fs::permissions(m_folder.Native(), fs::perms(0311));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_THAT(Find(u"*"), IsEmpty());
    }));
    fs::permissions(m_folder.Native(), fs::perms(0755));
}

TEST_F(FileSearch, WithoutAFolderTheCurrentOneIsMeant) {
    Touch({"a.dwg"});
    EXPECT_TRUE(PassesInAChildProcess([&] {
        fs::current_path(m_folder.Native());
        EXPECT_THAT(FindFiles(u"*.dwg"), ElementsAre(u"a.dwg"));
    }));
    EXPECT_THAT(FindFiles(u"\\PROC"), ElementsAre(u"proc"));
}

TEST_F(FileSearch, NamesOfAnyBytesLeadBackToTheirFiles) {
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '/')
            continue;
        const std::string name = "n" + std::string(1, static_cast<char>(byte)) + "x";
        std::ofstream(m_folder.Native() / name) << name;
    }
    const std::vector<CString> names = Find(u"n?x");
    EXPECT_EQ(names.size(), 254u);
    for (const CString& name : names) {
        std::string bytes;
        EXPECT_FALSE(Platform::ReadFile(m_folder.Path() + name, bytes));
        EXPECT_EQ(bytes, Platform::NativePath(name));
        EXPECT_EQ(Platform::FileNameOf(m_folder.Path() + name), name);
    }
}

TEST_F(FileSearch, AnyPatternMatchesAsTheRuleSays) {
    std::mt19937 random(1);
    std::vector<std::string> names;
    for (int i = 0; i < 60; ++i) {
        std::string name;
        for (std::size_t size = 1 + random() % 7; name.size() < size;)
            name += "ab."[random() % 3];
        if (name != "." && name != ".." &&
            std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
            Touch({name.c_str()});
        }
    }
    names.insert(names.end(), {".", ".."});
    std::sort(names.begin(), names.end());
    for (int i = 0; i < 300; ++i) {
        std::string pattern;
        for (std::size_t size = 1 + random() % 7; pattern.size() < size;)
            pattern += "ab.*?*"[random() % 6];
        std::vector<CString> expected;
        for (const std::string& name : names)
            if (MatchesNaively(name, pattern))
                expected.emplace_back(name.begin(), name.end());
        EXPECT_EQ(Find(CString(pattern.begin(), pattern.end())), expected) << pattern;
    }
}

TEST_F(FileSearch, ManyStarsTakeNoTime) {
    const std::string name(200, 'a');
    Touch({name.c_str()});
    CString pattern;
    for (int i = 0; i < 100; ++i)
        pattern += u"*a";
    EXPECT_THAT(Find(pattern + u"*b"), IsEmpty());
    EXPECT_EQ(Find(pattern).size(), 1u);
}
