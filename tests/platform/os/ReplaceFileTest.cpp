// SPDX-License-Identifier: MIT
#include "platform/os/File.h"

#include "FolderTest.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

using Platform::Access;
using Platform::ReplaceFile;
namespace fs = std::filesystem;

namespace {

class ReplacingFiles : public FolderTest {};

} // namespace

TEST_F(ReplacingFiles, TheFileHoldsTheNewBytesAndNothingElseIsLeft) {
    EXPECT_FALSE(ReplaceFile(Path(u"gs.xml"), "first", Access::Shared));
    EXPECT_EQ(Content("gs.xml"), "first");
    EXPECT_FALSE(ReplaceFile(Path(u"GS.XML"), "second", Access::Shared));
    EXPECT_EQ(Content("gs.xml"), "second");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(ReplacingFiles, ANewSharedFileHasTheRightsThatTheUmaskLeaves) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        umask(0027);
        EXPECT_FALSE(ReplaceFile(Path(u"shared"), "", Access::Shared));
        EXPECT_FALSE(ReplaceFile(Path(u"private"), "", Access::Private));
    }));
    EXPECT_EQ(Rights("shared"), 0640u);
    EXPECT_EQ(Rights("private"), 0600u);
}

TEST_F(ReplacingFiles, ASharedFileKeepsItsRightsAndItsOwner) {
    std::ofstream(Native("a")) << "old";
    fs::permissions(Native("a"), fs::perms(0604));
    constexpr uid_t kSomeone = 12345;
    const uid_t owner = geteuid() == 0 ? kSomeone : geteuid();
    ASSERT_EQ(chown(Native("a").c_str(), owner, getegid()), 0);
    EXPECT_FALSE(ReplaceFile(Path(u"a"), "new", Access::Shared));
    EXPECT_EQ(Rights("a"), 0604u);
    EXPECT_EQ(Status("a").st_uid, owner);
}

TEST_F(ReplacingFiles, APrivateFileBecomesPrivate) {
    std::ofstream(Native("a")) << "old";
    fs::permissions(Native("a"), fs::perms(0644));
    EXPECT_FALSE(ReplaceFile(Path(u"a"), "new", Access::Private));
    EXPECT_EQ(Rights("a"), 0600u);
}

TEST_F(ReplacingFiles, WhatIsNotAFileStaysAndIsAnError) {
    std::ofstream(Native("target")) << "old";
    fs::create_symlink("target", Native("link"));
    fs::create_directory(Native("folder"));
    ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
    EXPECT_EQ(ReplaceFile(Path(u"link"), "new", Access::Shared),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(ReplaceFile(Path(u"folder"), "new", Access::Shared), std::errc::is_a_directory);
    EXPECT_EQ(ReplaceFile(Path(u"pipe"), "new", Access::Shared), std::errc::invalid_argument);
    EXPECT_EQ(ReplaceFile(Path(u"none\\a"), "new", Access::Shared),
              std::errc::no_such_file_or_directory);
    EXPECT_TRUE(ReplaceFile(u"", "new", Access::Shared));
    EXPECT_TRUE(ReplaceFile(Path(u"new\\"), "new", Access::Shared));
    EXPECT_EQ(Content("target"), "old");
    EXPECT_EQ(EntryCount(), 4u);
}

TEST_F(ReplacingFiles, AFailureLeavesTheOldFileAndNothingBeside) {
    std::ofstream(Native("a")) << "old";
    EXPECT_TRUE(PassesInAChildProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {1000, 1000};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_EQ(ReplaceFile(Path(u"a"), std::string(1001, 'x'), Access::Shared),
                  std::errc::file_too_large);
    }));
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(ReplacingFiles, AFolderThatMayNotBeWrittenIsAnError) {
    std::ofstream(Native("a")) << "old";
    fs::permissions(Native("a"), fs::perms(0666));
    fs::permissions(m_folder.Native(), fs::perms(0555));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(ReplaceFile(Path(u"a"), "new", Access::Shared), std::errc::permission_denied);
    }));
    fs::permissions(m_folder.Native(), fs::perms(0755));
    EXPECT_EQ(Content("a"), "old");
}

TEST_F(ReplacingFiles, ANameAsLongAsTheSystemAllowsIsReplaced) {
    const std::string name(255, 'n');
    EXPECT_FALSE(ReplaceFile(Path(CString(255, u'n')), "new", Access::Shared));
    EXPECT_EQ(Content(name), "new");
}

TEST_F(ReplacingFiles, AReaderSeesOneOfTheFilesWhole) {
    const std::string first(200'000, '1');
    const std::string second(300'000, '2');
    EXPECT_FALSE(ReplaceFile(Path(u"a"), first, Access::Shared));
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        for (int i = 0; i < 40; ++i)
            ReplaceFile(Path(u"a"), i % 2 ? first : second, Access::Shared);
        std::_Exit(0);
    }
    int status = 0;
    while (waitpid(writer, &status, WNOHANG) == 0) {
        std::string bytes;
        EXPECT_FALSE(Platform::ReadFile(Path(u"a"), bytes));
        EXPECT_TRUE(bytes == first || bytes == second);
    }
    EXPECT_EQ(EntryCount(), 1u);
}
