// SPDX-License-Identifier: MIT
#include "platform/os/File.h"

#include "FolderTest.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include <gtest/gtest.h>

using Platform::FileSize;
using Platform::KindOfPath;
using Platform::MayRead;
using Platform::MayWrite;
using Platform::PathExists;
using Platform::PathKind;
using Platform::ReadFile;
namespace fs = std::filesystem;

namespace {

class Files : public FolderTest {
protected:
    void Put(const std::string& name, std::string_view bytes) const {
        std::ofstream(Native(name), std::ios::binary) << bytes;
    }

    void ExpectUnreadable(CStringView path, std::errc expected) const {
        std::string bytes = "old";
        EXPECT_EQ(ReadFile(path, bytes), expected);
        EXPECT_EQ(bytes, "");
    }
};

} // namespace

TEST_F(Files, AFileIsReadAsItsBytes) {
    std::string every;
    for (int i = 0; i < 100000; ++i)
        every += static_cast<char>(i);
    Put("a.dwg", every);
    std::string bytes = "old";
    EXPECT_FALSE(ReadFile(Path(u"a.dwg"), bytes));
    EXPECT_EQ(bytes, every);
}

TEST_F(Files, AnEmptyFileIsReadAsNothing) {
    Put("empty", "");
    std::string bytes = "old";
    EXPECT_FALSE(ReadFile(Path(u"empty"), bytes));
    EXPECT_EQ(bytes, "");
}

TEST_F(Files, AFileThatDoesNotTellItsSizeIsReadWhole) {
    std::string bytes;
    EXPECT_FALSE(ReadFile(u"\\proc\\self\\status", bytes));
    EXPECT_NE(bytes.find("\nVmSize:"), std::string::npos);
}

TEST_F(Files, AFileIsReadThroughALinkAndInAnotherCase) {
    Put("A.cfg", "text");
    fs::create_symlink("A.cfg", Native("link"));
    std::string bytes;
    EXPECT_FALSE(ReadFile(Path(u"LINK"), bytes));
    EXPECT_EQ(bytes, "text");
    EXPECT_FALSE(ReadFile(Path(u"a.CFG"), bytes));
    EXPECT_EQ(bytes, "text");
}

TEST_F(Files, WhatIsNotAFileIsAnErrorAndNeverWaitedOn) {
    ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
    fs::create_directory(Native("folder"));
    ExpectUnreadable(Path(u"pipe"), std::errc::invalid_argument);
    ExpectUnreadable(Path(u"folder"), std::errc::is_a_directory);
    ExpectUnreadable(u"\\dev\\zero", std::errc::invalid_argument);
    ExpectUnreadable(Path(u"none"), std::errc::no_such_file_or_directory);
    ExpectUnreadable(u"", std::errc::no_such_file_or_directory);
}

TEST_F(Files, APathWithANulIsNotCutThere) {
    Put("a", "text");
    ExpectUnreadable(Path(u"a") + CString(1, u'\0') + u"b", std::errc::no_such_file_or_directory);
    EXPECT_FALSE(PathExists(Path(u"a") + CString(1, u'\0')));
}

TEST_F(Files, AFileThatMayNotBeReadIsAnError) {
    Put("secret", "text");
    fs::permissions(m_folder.Native(), fs::perms(0755));
    fs::permissions(Native("secret"), fs::perms(0000));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        ExpectUnreadable(Path(u"secret"), std::errc::permission_denied);
    }));
}

TEST_F(Files, APathIsAFileAFolderSomethingElseOrMissing) {
    Put("a", "");
    fs::create_directory(Native("folder"));
    fs::create_symlink("folder", Native("link"));
    fs::create_symlink("nowhere", Native("dangling"));
    ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
    EXPECT_EQ(KindOfPath(Path(u"A")), PathKind::File);
    EXPECT_EQ(KindOfPath(Path(u"folder")), PathKind::Folder);
    EXPECT_EQ(KindOfPath(Path(u"FOLDER\\")), PathKind::Folder);
    EXPECT_EQ(KindOfPath(Path(u"link")), PathKind::Folder);
    EXPECT_EQ(KindOfPath(Path(u"pipe")), PathKind::Other);
    EXPECT_EQ(KindOfPath(Path(u"dangling")), PathKind::Missing);
    EXPECT_EQ(KindOfPath(Path(u"a\\b")), PathKind::Missing);
    EXPECT_EQ(KindOfPath(u""), PathKind::Missing);
}

TEST_F(Files, APathExistsWhateverItIs) {
    Put("a", "");
    ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(PathExists(Path(u"a")));
    EXPECT_TRUE(PathExists(Path(u"pipe")));
    EXPECT_TRUE(PathExists(m_folder.Path()));
    EXPECT_FALSE(PathExists(Path(u"none")));
}

TEST_F(Files, OnlyAFileHasASize) {
    Put("a", "12345");
    EXPECT_EQ(FileSize(Path(u"A")), 5u);
    EXPECT_EQ(FileSize(m_folder.Path()), std::nullopt);
    EXPECT_EQ(FileSize(Path(u"none")), std::nullopt);
    EXPECT_EQ(FileSize(u"\\dev\\null"), std::nullopt);
}

TEST_F(Files, ASizeMayBeBeyondFourGigabytes) {
    Put("sparse", "");
    fs::resize_file(Native("sparse"), 5'000'000'000);
    EXPECT_EQ(FileSize(Path(u"sparse")), 5'000'000'000u);
}

TEST_F(Files, WhatMayBeWrittenAndReadIsAskedForThisProcess) {
    Put("mine", "");
    Put("fixed", "");
    Put("closed", "");
    fs::permissions(Native("closed"), fs::perms(0));
    fs::permissions(m_folder.Native(), fs::perms(0755));
    fs::permissions(Native("mine"), fs::perms(0666));
    fs::permissions(Native("fixed"), fs::perms(0444));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_TRUE(MayWrite(Path(u"MINE")));
        EXPECT_TRUE(MayRead(Path(u"MINE")));
        EXPECT_TRUE(MayRead(u"\\"));
        EXPECT_FALSE(MayRead(Path(u"closed")));
        EXPECT_FALSE(MayRead(Path(u"none")));
        EXPECT_FALSE(MayWrite(Path(u"fixed")));
        EXPECT_FALSE(MayWrite(u"\\"));
        EXPECT_FALSE(MayWrite(Path(u"none")));
    }));
}
