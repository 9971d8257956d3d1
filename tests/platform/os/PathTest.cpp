// SPDX-License-Identifier: MIT
#include "platform/os/Path.h"

#include "platform/os/File.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

using Platform::AsFolder;
using Platform::FileNameOf;
using Platform::LookUp;
using Platform::NativePath;
using Platform::PathFromNative;
namespace fs = std::filesystem;

namespace {

class LookingUp : public testing::Test {
protected:
    void Touch(const std::string& name) const {
        fs::create_directories((m_folder.Native() / name).parent_path());
        std::ofstream(m_folder.Native() / name);
    }

    // The native path below the test's folder that `path` leads to.
    std::string Found(CStringView path) const {
        const std::string found = LookUp(m_folder.Path() + CString(path));
        return found.substr(m_folder.Native().string().size() + 1);
    }

    TemporaryFolder m_folder;
};

} // namespace

TEST(Path, BackslashesBecomeSlashes) {
    EXPECT_EQ(NativePath(u"\\home\\ana\\čvor.cfg"), "/home/ana/čvor.cfg");
    EXPECT_EQ(NativePath(u"/home/ana\\x.cfg"), "/home/ana/x.cfg");
    EXPECT_EQ(NativePath(u""), "");
}

TEST(Path, SlashesBecomeBackslashes) {
    EXPECT_EQ(PathFromNative("/home/ana/čvor.cfg"), u"\\home\\ana\\čvor.cfg");
    EXPECT_EQ(PathFromNative(""), u"");
}

TEST(Path, NamesOfAnyBytesComeBackAndSeparateNothing) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string name = "/a" + std::string(1, static_cast<char>(byte)) + "b";
        const CString path = PathFromNative(name);
        EXPECT_EQ(NativePath(path), name);
        EXPECT_EQ(std::count(path.begin(), path.end(), u'\\'), byte == '/' ? 2 : 1) << byte;
    }
}

TEST(Path, NoSurrogatePassesForASeparator) {
    for (char16_t unit = 0xD800; unit <= 0xDFFF; ++unit)
        EXPECT_EQ(NativePath(CString{u'.', u'.', unit, u'x'}).find('/'), std::string::npos);
}

TEST(Path, AFolderEndsWithABackslash) {
    EXPECT_EQ(AsFolder(u"\\home"), u"\\home\\");
    EXPECT_EQ(AsFolder(u"\\home\\"), u"\\home\\");
    EXPECT_EQ(AsFolder(u"\\"), u"\\");
    EXPECT_EQ(AsFolder(u""), u"");
}

TEST(Path, TheFileNameStandsAfterTheLastBackslash) {
    EXPECT_EQ(FileNameOf(u"\\home\\ana\\x.cfg"), u"x.cfg");
    EXPECT_EQ(FileNameOf(u"x.cfg"), u"x.cfg");
    EXPECT_EQ(FileNameOf(u"\\home\\"), u"");
    EXPECT_EQ(FileNameOf(u""), u"");
}

TEST(Path, ASlashDoesNotSeparateTheFileName) {
    EXPECT_EQ(FileNameOf(u"/home/ana/x.cfg"), u"/home/ana/x.cfg");
    EXPECT_EQ(FileNameOf(u"\\home\\ana/x.cfg"), u"ana/x.cfg");
}

TEST_F(LookingUp, TheExactNameWins) {
    Touch("X.cfg");
    Touch("x.cfg");
    Touch("x.CFG");
    EXPECT_EQ(Found(u"x.cfg"), "x.cfg");
    EXPECT_EQ(Found(u"X.cfg"), "X.cfg");
}

TEST_F(LookingUp, AnotherCaseIsFoundInTheSameFolder) {
    Touch("Blocks/ČVOR Ž.DWG");
    EXPECT_EQ(Found(u"Blocks\\čvor ž.dwg"), "Blocks/ČVOR Ž.DWG");
}

TEST_F(LookingUp, OfSeveralOtherCasesTheFirstIsTaken) {
    Touch("X.cfg");
    Touch("x.CFG");
    Touch("X.CFG");
    EXPECT_EQ(Found(u"x.cfg"), "X.CFG");
}

TEST_F(LookingUp, FoldersAreLookedUpToo) {
    Touch("Config/GIS Data/Labels/a.cfg");
    EXPECT_EQ(Found(u"CONFIG\\gis data\\labels\\A.CFG"), "Config/GIS Data/Labels/a.cfg");
    EXPECT_EQ(Found(u"config/GIS DATA/Labels\\a.cfg"), "Config/GIS Data/Labels/a.cfg");
}

TEST_F(LookingUp, WhatIsMissingIsTakenAsWritten) {
    Touch("Config/a.cfg");
    EXPECT_EQ(Found(u"CONFIG\\New.cfg"), "Config/New.cfg");
    EXPECT_EQ(Found(u"CONFIG\\New\\Config\\A.CFG"), "Config/New/Config/A.CFG");
    EXPECT_EQ(Found(u"config\\A.CFG\\x"), "Config/a.cfg/x");
}

TEST_F(LookingUp, ASeparatorAtTheEndStays) {
    Touch("Config/a.cfg");
    EXPECT_EQ(Found(u"CONFIG\\"), "Config/");
    EXPECT_EQ(Found(u"Config\\"), "Config/");
    EXPECT_EQ(Found(u"CONFIG\\\\A.cfg"), "Config//a.cfg");
    EXPECT_EQ(Found(u"CONFIG\\..\\config\\.\\A.cfg"), "Config/../Config/./a.cfg");
}

TEST_F(LookingUp, ALinkThatLeadsNowhereIsFound) {
    fs::create_symlink("nowhere", m_folder.Native() / "Link");
    EXPECT_EQ(Found(u"LINK"), "Link");
}

TEST_F(LookingUp, NamesThatAreNoTextAreFound) {
    const std::string name = "A\xFF\\b";
    Touch(name);
    EXPECT_EQ(Found(PathFromNative(name)), name);
    EXPECT_EQ(Found(PathFromNative("a\xFF\\B")), name);
    EXPECT_EQ(Found(u"A\uFFFD\\b"), "A\uFFFD/b");
}

TEST_F(LookingUp, ARelativePathCountsFromTheCurrentFolder) {
    Touch("Config/a.cfg");
    EXPECT_TRUE(PassesInAChildProcess([&] {
        fs::current_path(m_folder.Native());
        EXPECT_EQ(LookUp(u"config\\A.CFG"), "Config/a.cfg");
        EXPECT_EQ(LookUp(u"CONFIG"), "Config");
        EXPECT_EQ(LookUp(u"none"), "none");
    }));
}

TEST_F(LookingUp, AFolderThatMayNotBeListedStillGivesItsExactNames) {
    Touch("Config/a.cfg");
    fs::permissions(m_folder.Native(), fs::perms(0755));
    fs::permissions(m_folder.Native() / "Config", fs::perms(0311));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(Found(u"config\\a.cfg"), "Config/a.cfg");
        EXPECT_EQ(Found(u"config\\A.cfg"), "Config/A.cfg");
    }));
    fs::permissions(m_folder.Native() / "Config", fs::perms(0755));
}

TEST_F(LookingUp, ANameThatMayNotBeLookedAtIsTakenAsWritten) {
    Touch("Config/a.cfg");
    Touch("Config/A.cfg");
    fs::permissions(m_folder.Native(), fs::perms(0755));
    fs::permissions(m_folder.Native() / "Config", fs::perms(0444));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(Found(u"Config\\a.cfg"), "Config/a.cfg");
    }));
    fs::permissions(m_folder.Native() / "Config", fs::perms(0755));
}

TEST(LookingUpNothing, TheEmptyPathAndTheRootStay) {
    EXPECT_EQ(LookUp(u""), "");
    EXPECT_EQ(LookUp(u"\\"), "/");
}
