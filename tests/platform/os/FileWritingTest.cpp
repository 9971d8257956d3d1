// SPDX-License-Identifier: MIT
#include "platform/os/AppendedFile.h"
#include "platform/os/File.h"

#include "FolderTest.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>

#include <gtest/gtest.h>

using Platform::AppendFile;
using Platform::RemoveFile;
using Platform::RenameFile;
using Platform::WriteFile;
namespace fs = std::filesystem;

namespace {

class WritingFiles : public FolderTest {};

// No file of this process may become larger than that.
void LimitFileSizes(rlim_t sizeBytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    limit.rlim_cur = sizeBytes;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
}

} // namespace

TEST_F(WritingFiles, AFileHoldsExactlyTheBytesAfterwards) {
    const std::string bytes("a\0\xFF\r\n", 5);
    EXPECT_FALSE(WriteFile(Path(u"new"), bytes));
    EXPECT_EQ(Content("new"), bytes);
    EXPECT_FALSE(WriteFile(Path(u"new"), "short"));
    EXPECT_EQ(Content("new"), "short");
    EXPECT_FALSE(WriteFile(Path(u"new"), ""));
    EXPECT_EQ(Content("new"), "");
}

TEST_F(WritingFiles, ALargeFileIsWrittenWhole) {
    const std::string bytes(8'000'000, 'x');
    EXPECT_FALSE(WriteFile(Path(u"large"), bytes));
    EXPECT_EQ(Content("large"), bytes);
}

TEST_F(WritingFiles, AFileOfAnotherCaseIsTheSameFile) {
    std::ofstream(Native("Čvor.DWG")) << "old";
    EXPECT_FALSE(WriteFile(Path(u"čvor.dwg"), "new"));
    EXPECT_EQ(Content("Čvor.DWG"), "new");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, ALinkInTheFilesPlaceIsAnError) {
    std::ofstream(Native("target")) << "old";
    fs::create_symlink("target", Native("link"));
    fs::create_symlink("nowhere", Native("dangling"));
    for (const CStringView name : {u"link", u"LINK", u"dangling"}) {
        EXPECT_EQ(WriteFile(Path(name), "new"), std::errc::too_many_symbolic_link_levels);
        EXPECT_EQ(AppendFile(Path(name), "new"), std::errc::too_many_symbolic_link_levels);
    }
    EXPECT_EQ(Content("target"), "old");
    EXPECT_FALSE(fs::exists(Native("nowhere")));
}

TEST_F(WritingFiles, ALinkOnTheWayIsFollowed) {
    fs::create_directory(Native("folder"));
    fs::create_symlink("folder", Native("link"));
    EXPECT_FALSE(WriteFile(Path(u"link\\a"), "new"));
    EXPECT_EQ(Content("folder/a"), "new");
}

TEST_F(WritingFiles, WhatIsNotAFileIsAnErrorAndNeverWaitedOn) {
    ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
    fs::create_directory(Native("folder"));
    EXPECT_TRUE(WriteFile(Path(u"pipe"), "new"));
    EXPECT_TRUE(AppendFile(Path(u"pipe"), "new"));
    const int reader = open(Native("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(WriteFile(Path(u"pipe"), "new"), std::errc::invalid_argument);
    char byte = 0;
    EXPECT_EQ(read(reader, &byte, 1), 0);
    close(reader);
    EXPECT_EQ(WriteFile(Path(u"folder"), "new"), std::errc::is_a_directory);
    EXPECT_EQ(WriteFile(u"\\dev\\full", "new"), std::errc::invalid_argument);
    EXPECT_EQ(WriteFile(Path(u"none\\a"), "new"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(WriteFile(u"", "new"), std::errc::no_such_file_or_directory);
}

TEST_F(WritingFiles, BytesThatTheSystemDoesNotTakeAreAnError) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        LimitFileSizes(1000);
        EXPECT_FALSE(WriteFile(Path(u"fits"), std::string(1000, 'x')));
        EXPECT_EQ(WriteFile(Path(u"cut"), std::string(1001, 'x')), std::errc::file_too_large);
        EXPECT_EQ(AppendFile(Path(u"fits"), "x"), std::errc::file_too_large);
    }));
}

TEST_F(WritingFiles, AFileThatMayNotBeWrittenStaysAsItIs) {
    std::ofstream(Native("fixed")) << "old";
    fs::permissions(m_folder.Native(), fs::perms(0755));
    fs::permissions(Native("fixed"), fs::perms(0444));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(WriteFile(Path(u"fixed"), "new"), std::errc::permission_denied);
    }));
    EXPECT_EQ(Content("fixed"), "old");
}

TEST_F(WritingFiles, ANewFileHasTheRightsThatTheUmaskLeaves) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        umask(0027);
        EXPECT_FALSE(WriteFile(Path(u"shared"), ""));
        EXPECT_FALSE(AppendFile(Path(u"private"), ""));
    }));
    EXPECT_EQ(Rights("shared"), 0640u);
    EXPECT_EQ(Rights("private"), 0600u);
}

TEST_F(WritingFiles, AnExistingFileKeepsItsRights) {
    std::ofstream(Native("a")) << "old";
    fs::permissions(Native("a"), fs::perms(0604));
    EXPECT_FALSE(WriteFile(Path(u"a"), "new"));
    EXPECT_FALSE(AppendFile(Path(u"a"), "er"));
    EXPECT_EQ(Rights("a"), 0604u);
    EXPECT_EQ(Content("a"), "newer");
}

TEST_F(WritingFiles, AllNamesOfAFileLeadToTheNewBytes) {
    std::ofstream(Native("a")) << "old";
    fs::create_hard_link(Native("a"), Native("b"));
    EXPECT_FALSE(WriteFile(Path(u"a"), "new"));
    EXPECT_EQ(Content("b"), "new");
}

TEST_F(WritingFiles, AnExistingFileKeepsItsExtendedAttributes) {
    std::ofstream(Native("a")) << "old";
    if (setxattr(Native("a").c_str(), "user.note", "x", 1, 0) != 0)
        GTEST_SKIP() << "this file system keeps no extended attributes";
    EXPECT_FALSE(WriteFile(Path(u"a"), "new"));
    EXPECT_EQ(Content("a"), "new");
    char value = 0;
    EXPECT_EQ(getxattr(Native("a").c_str(), "user.note", &value, 1), 1);
    EXPECT_EQ(value, 'x');
}

TEST_F(WritingFiles, AnExistingFileKeepsItsOwner) {
    std::ofstream(Native("a")) << "old";
    constexpr uid_t kSomeone = 12345;
    const uid_t owner = geteuid() == 0 ? kSomeone : geteuid();
    ASSERT_EQ(chown(Native("a").c_str(), owner, getegid()), 0);
    EXPECT_FALSE(WriteFile(Path(u"a"), "new"));
    EXPECT_EQ(Status("a").st_uid, owner);
}

TEST_F(WritingFiles, AFileOfSomebodyElseStaysHisAndIsWritten) {
    std::ofstream(Native("a")) << "old";
    fs::permissions(Native("a"), fs::perms(0666));
    fs::permissions(m_folder.Native(), fs::perms(0777));
    const uid_t owner = Status("a").st_uid;
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_FALSE(WriteFile(Path(u"a"), "new"));
    }));
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(Status("a").st_uid, owner);
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, AFileInAFolderThatMayNotBeChangedIsWritten) {
    std::ofstream(Native("a")) << "old and longer";
    fs::permissions(Native("a"), fs::perms(0666));
    fs::permissions(m_folder.Native(), fs::perms(0555));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_FALSE(WriteFile(Path(u"a"), "new"));
    }));
    fs::permissions(m_folder.Native(), fs::perms(0755));
    EXPECT_EQ(Content("a"), "new");
}

TEST_F(WritingFiles, BytesThatTheSystemDoesNotTakeLeaveTheOldFile) {
    std::ofstream(Native("a")) << "old";
    EXPECT_TRUE(PassesInAChildProcess([&] {
        LimitFileSizes(1000);
        EXPECT_EQ(WriteFile(Path(u"a"), std::string(1001, 'x')), std::errc::file_too_large);
    }));
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, AppendedBytesStandAtTheEnd) {
    EXPECT_FALSE(AppendFile(Path(u"log"), "one\n"));
    EXPECT_FALSE(AppendFile(Path(u"LOG"), "two\n"));
    EXPECT_EQ(Content("log"), "one\ntwo\n");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, AFileThatIsAddedToHasEachLineAtOnce) {
    Platform::AppendedFile log(Path(u"LOG"));
    EXPECT_FALSE(log.Append("one\n"));
    EXPECT_EQ(Content("LOG"), "one\n");
    EXPECT_FALSE(AppendFile(Path(u"log"), "somebody else's\n"));
    EXPECT_FALSE(log.Append("two\n"));
    EXPECT_EQ(Content("LOG"), "one\nsomebody else's\ntwo\n");
}

TEST_F(WritingFiles, AFileThatIsAddedToMayBeMovedAway) {
    Platform::AppendedFile log(Path(u"log"));
    EXPECT_FALSE(log.Append("one\n"));
    EXPECT_FALSE(RenameFile(Path(u"log"), Path(u"log.1")));
    std::this_thread::sleep_for(std::chrono::milliseconds(1050));
    EXPECT_FALSE(log.Append("two\n"));
    EXPECT_EQ(Content("log.1"), "one\n");
    EXPECT_EQ(Content("log"), "two\n");
}

TEST_F(WritingFiles, AFileThatIsAddedToGoesOnAfterAFailure) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Platform::AppendedFile log(Path(u"log"));
        EXPECT_FALSE(log.Append("one\n"));
        LimitFileSizes(4);
        EXPECT_EQ(log.Append("two\n"), std::errc::file_too_large);
        LimitFileSizes(1000);
        EXPECT_FALSE(log.Append("three\n"));
    }));
    EXPECT_EQ(Content("log"), "one\nthree\n");
}

TEST_F(WritingFiles, ARenamedFileReplacesTheOneOfThatName) {
    std::ofstream(Native("from")) << "new";
    std::ofstream(Native("TO")) << "old";
    EXPECT_FALSE(RenameFile(Path(u"FROM"), Path(u"to")));
    EXPECT_EQ(Content("TO"), "new");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, AFileMayBeRenamedToAnotherCaseOfItsName) {
    std::ofstream(Native("a.dwg")) << "text";
    EXPECT_FALSE(RenameFile(Path(u"a.dwg"), Path(u"A.DWG")));
    EXPECT_TRUE(fs::exists(Native("A.DWG")));
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, WhatIsMissingCannotBeRenamed) {
    EXPECT_EQ(RenameFile(Path(u"none"), Path(u"to")), std::errc::no_such_file_or_directory);
}

TEST_F(WritingFiles, ARemovedFileIsGone) {
    std::ofstream(Native("A.dwg")) << "text";
    EXPECT_FALSE(RemoveFile(Path(u"a.DWG")));
    EXPECT_EQ(EntryCount(), 0u);
}

TEST_F(WritingFiles, AFileThatIsNotThereIsNoErrorWhenRemoved) {
    std::ofstream(Native("a")) << "text";
    EXPECT_FALSE(RemoveFile(Path(u"none")));
    EXPECT_FALSE(RemoveFile(Path(u"none\\b")));
    EXPECT_FALSE(RemoveFile(Path(u"a\\b")));
}

TEST_F(WritingFiles, RemovingALinkLeavesItsTarget) {
    std::ofstream(Native("target")) << "text";
    fs::create_symlink("target", Native("link"));
    EXPECT_FALSE(RemoveFile(Path(u"link")));
    EXPECT_EQ(Content("target"), "text");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingFiles, AFolderIsNotRemoved) {
    fs::create_directory(Native("folder"));
    EXPECT_TRUE(RemoveFile(Path(u"folder")));
    EXPECT_TRUE(fs::exists(Native("folder")));
}
