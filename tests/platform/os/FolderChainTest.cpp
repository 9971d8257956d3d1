// SPDX-License-Identifier: MIT
#include "platform/os/File.h"

#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include <gtest/gtest.h>

using Platform::Access;
using Platform::CreateFolderChain;
namespace fs = std::filesystem;

namespace {

class FolderChain : public testing::Test {
protected:
    fs::path Native(const std::string& name) const { return m_folder.Native() / name; }

    TemporaryFolder m_folder;
};

fs::perms Rights(const fs::path& path) {
    return fs::status(path).permissions();
}

} // namespace

TEST_F(FolderChain, EveryLevelIsCreated) {
    EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"one\\two\\three"));
    EXPECT_TRUE(fs::is_directory(Native("one/two/three")));
}

TEST_F(FolderChain, ASeparatorAtTheEndMakesNoDifference) {
    EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"one\\two\\"));
    EXPECT_TRUE(fs::is_directory(Native("one/two")));
    EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"three/four/"));
    EXPECT_TRUE(fs::is_directory(Native("three/four")));
}

TEST_F(FolderChain, LevelsThatExistAreFine) {
    EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"one\\two"));
    EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"one\\two"));
    EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"ONE\\Two\\three"));
    EXPECT_TRUE(fs::is_directory(Native("one/two/three")));
    EXPECT_FALSE(fs::exists(Native("ONE")));
    EXPECT_TRUE(CreateFolderChain(u"\\"));
}

TEST_F(FolderChain, AFileOnTheWayIsAFailure) {
    std::ofstream(Native("file")) << "text";
    EXPECT_FALSE(CreateFolderChain(m_folder.Path() + u"file\\two"));
    EXPECT_FALSE(CreateFolderChain(m_folder.Path() + u"file"));
    EXPECT_TRUE(fs::is_regular_file(Native("file")));
}

TEST_F(FolderChain, TheEmptyPathIsAFailure) {
    EXPECT_FALSE(CreateFolderChain(u""));
}

TEST_F(FolderChain, PrivateFoldersAreOpenToNobodyElse) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        umask(0002);
        EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"shared\\two"));
        EXPECT_TRUE(CreateFolderChain(m_folder.Path() + u"shared\\private\\two", Access::Private));
    }));
    EXPECT_EQ(Rights(Native("shared")), fs::perms(0775));
    EXPECT_EQ(Rights(Native("shared/two")), fs::perms(0775));
    EXPECT_EQ(Rights(Native("shared/private")), fs::perms(0700));
    EXPECT_EQ(Rights(Native("shared/private/two")), fs::perms(0700));
}

TEST_F(FolderChain, ALevelThatMayNotBeCreatedIsAFailure) {
    fs::permissions(m_folder.Native(), fs::perms(0555));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_FALSE(CreateFolderChain(m_folder.Path() + u"one\\two"));
    }));
    fs::permissions(m_folder.Native(), fs::perms(0755));
}

TEST_F(FolderChain, ARelativePathCountsFromTheCurrentFolder) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        fs::current_path(m_folder.Native());
        EXPECT_TRUE(CreateFolderChain(u"one\\two"));
    }));
    EXPECT_TRUE(fs::is_directory(Native("one/two")));
}
