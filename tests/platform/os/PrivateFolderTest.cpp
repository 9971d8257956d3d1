// SPDX-License-Identifier: MIT
#include "platform/os/PrivateFolder.h"

#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include <gmock/gmock.h>

using Platform::PrivateFile;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

class PrivateFolder : public testing::Test {
protected:
    PrivateFolder() { fs::permissions(temporary.Native(), fs::perms(0755)); }

    // The number of the error; 0 when it can be opened.
    int Open(const CString& name = u"own") { return folder.Open(temporary.Path() + name).value(); }
    fs::path Native(const std::string& name = "own") const { return temporary.Native() / name; }
    void Fill(const std::string& name, std::string_view bytes) {
        PrivateFile file;
        EXPECT_FALSE(folder.CreateFile(name, file));
        EXPECT_FALSE(file.Append(bytes));
    }
    std::string Bytes(const std::string& name) {
        PrivateFile file;
        std::uint64_t size = 0;
        if (folder.OpenFile(name, file) || file.GetSize(size))
            return "(none)";
        std::string bytes(size, '\0');
        EXPECT_FALSE(file.ReadAt(0, bytes.data(), size));
        return bytes;
    }
    std::vector<std::string> Names() {
        std::vector<Platform::PrivateFolder::Entry> entries;
        EXPECT_FALSE(folder.List(entries));
        std::vector<std::string> names;
        for (const auto& entry : entries)
            names.push_back(entry.name + " " + std::to_string(entry.sizeBytes));
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder temporary;
    Platform::PrivateFolder folder;
};

struct stat StatusOf(const fs::path& path) {
    struct stat status = {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

fs::perms Rights(const fs::path& path) {
    return fs::perms(StatusOf(path).st_mode & 07777);
}

} // namespace

TEST_F(PrivateFolder, IsMadeForItsUserAlone) {
    EXPECT_FALSE(folder.IsOpen());
    EXPECT_TRUE(PassesInAChildProcess([&] {
        umask(0);
        EXPECT_EQ(Open(), 0);
        EXPECT_TRUE(folder.IsOpen());
    }));
    EXPECT_EQ(Rights(Native()), fs::perms(0700));
    EXPECT_EQ(StatusOf(Native()).st_uid, geteuid());
}

TEST_F(PrivateFolder, MissingParentsAreMadeForItsUserAloneToo) {
    EXPECT_EQ(Open(u"one\\two\\own\\"), 0);
    for (const char* level : {"one", "one/two", "one/two/own"})
        EXPECT_EQ(Rights(Native(level)), fs::perms(0700)) << level;
}

TEST_F(PrivateFolder, TakesTheRightsOfOthersAwayAndKeepsWhatItHolds) {
    fs::create_directory(Native());
    std::ofstream(Native() / "file") << "123";
    for (const unsigned rights : {0777u, 0750u, 0701u}) {
        fs::permissions(Native(), fs::perms(rights));
        EXPECT_EQ(Open(), 0);
        EXPECT_EQ(Rights(Native()), fs::perms(0700)) << rights;
    }
    EXPECT_THAT(Names(), ElementsAre("file 3"));
}

TEST_F(PrivateFolder, RightsOfItsUserThatAreFewerStayAsTheyAre) {
    fs::create_directory(Native());
    fs::permissions(Native(), fs::perms(0500));
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(Rights(Native()), fs::perms(0500));
}

TEST_F(PrivateFolder, ALinkInItsPlaceIsNotFollowed) {
    fs::create_directory(Native("elsewhere"));
    fs::permissions(Native("elsewhere"), fs::perms(0755));
    fs::create_directory_symlink(Native("elsewhere"), Native());
    for (const char16_t* name : {u"own", u"own\\", u"own\\\\"}) {
        EXPECT_THAT(Open(name), testing::AnyOf(ELOOP, ENOTDIR));
        EXPECT_FALSE(folder.IsOpen());
    }
    EXPECT_EQ(Rights(Native("elsewhere")), fs::perms(0755));
}

TEST_F(PrivateFolder, ALinkToNothingMakesNothing) {
    fs::create_directory_symlink(Native("elsewhere"), Native());
    EXPECT_THAT(Open(), testing::AnyOf(ELOOP, ENOTDIR));
    EXPECT_FALSE(fs::exists(Native("elsewhere")));
}

TEST_F(PrivateFolder, AFileInItsPlaceOrInAParentsIsTold) {
    std::ofstream(Native()) << "text";
    EXPECT_EQ(Open(), ENOTDIR);
    EXPECT_EQ(Open(u"own\\below"), ENOTDIR);
    EXPECT_TRUE(fs::is_regular_file(Native()));
}

TEST_F(PrivateFolder, OfAnotherUserIsLeftAlone) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can give a folder to somebody else";
    constexpr uid_t kSomebody = 12345;
    fs::create_directory(Native());
    fs::permissions(Native(), fs::perms(0777));
    ASSERT_EQ(chown(Native().c_str(), kSomebody, kSomebody), 0);
    // Also of a user who could take it.
    EXPECT_EQ(Open(), EPERM);
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(Open(), EPERM);
        EXPECT_FALSE(folder.IsOpen());
    }));
    EXPECT_EQ(Rights(Native()), fs::perms(0777));
    EXPECT_EQ(StatusOf(Native()).st_uid, kSomebody);
}

TEST_F(PrivateFolder, AParentThatTakesNoFolderIsTold) {
    fs::create_directory(Native("closed"));
    fs::permissions(Native("closed"), fs::perms(0555));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(Open(u"closed\\own"), ENOENT);
        EXPECT_FALSE(folder.IsOpen());
    }));
}

TEST_F(PrivateFolder, WhatCannotBeOpenedLeavesTheOneThatWas) {
    ASSERT_EQ(Open(), 0);
    Fill("file", "1");
    std::ofstream(Native("text")) << "text";
    EXPECT_EQ(Open(u"text"), ENOTDIR);
    EXPECT_THAT(Names(), ElementsAre("file 1"));
}

TEST_F(PrivateFolder, WhatTakesItsPlaceLaterIsNotTouched) {
    ASSERT_EQ(Open(), 0);
    fs::rename(Native(), Native("moved"));
    fs::create_directory(Native());
    Fill("file", "123");
    EXPECT_TRUE(fs::exists(Native("moved") / "file"));
    EXPECT_TRUE(fs::is_empty(Native()));
}

TEST_F(PrivateFolder, ItsFilesAreMadeOnceForItsUserAloneAndReadBack) {
    ASSERT_EQ(Open(), 0);
    EXPECT_TRUE(PassesInAChildProcess([&] {
        umask(0);
        Fill("file", "0123456789");
    }));
    EXPECT_EQ(Rights(Native() / "file"), fs::perms(0600));
    EXPECT_EQ(Bytes("file"), "0123456789");
    PrivateFile file;
    EXPECT_EQ(folder.CreateFile("file", file).value(), EEXIST);
    EXPECT_FALSE(file.IsOpen());
    ASSERT_FALSE(folder.OpenFile("file", file));
    char some[4] = {};
    EXPECT_FALSE(file.ReadAt(6, some, 4));
    EXPECT_EQ(std::string_view(some, 4), "6789");
    EXPECT_EQ(file.ReadAt(7, some, 4).value(), EIO);
}

TEST_F(PrivateFolder, FilesTakeOthersNamesAndGo) {
    ASSERT_EQ(Open(), 0);
    Fill("a", "1");
    Fill("b", "22");
    EXPECT_THAT(Names(), ElementsAre("a 1", "b 2"));
    EXPECT_FALSE(folder.Rename("b", "a"));
    EXPECT_THAT(Names(), ElementsAre("a 2"));
    EXPECT_FALSE(folder.Remove("a"));
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_EQ(folder.Remove("a").value(), ENOENT);
    EXPECT_EQ(folder.Rename("a", "b").value(), ENOENT);
}

TEST_F(PrivateFolder, LinksPipesFoldersAndFilesOfOthersAreNoneOfItsFiles) {
    ASSERT_EQ(Open(), 0);
    std::ofstream(Native("outside")) << "outside";
    fs::create_symlink(Native("outside"), Native() / "link");
    fs::create_directory(Native() / "folder");
    ASSERT_EQ(mkfifo((Native() / "pipe").c_str(), 0600), 0);
    std::vector<std::string> names = {"link", "folder", "pipe"};
    if (geteuid() == 0) {
        Fill("another", "1");
        ASSERT_EQ(chown((Native() / "another").c_str(), 12345, 12345), 0);
        names.emplace_back("another");
    }
    EXPECT_THAT(Names(), IsEmpty());
    PrivateFile file;
    for (const std::string& name : names) {
        EXPECT_TRUE(folder.OpenFile(name, file)) << name;
        EXPECT_FALSE(file.IsOpen()) << name;
    }
    EXPECT_EQ(folder.CreateFile("link", file).value(), EEXIST);
}

TEST_F(PrivateFolder, TellsWhenANameCameOrWent) {
    ASSERT_EQ(Open(), 0);
    std::int64_t before = 0, after = 0;
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(Native(), longAgo);
    EXPECT_FALSE(folder.GetChange(before));
    EXPECT_FALSE(folder.GetChange(after));
    EXPECT_EQ(before, after);
    Fill("a", "1");
    EXPECT_FALSE(folder.GetChange(after));
    EXPECT_GT(after, before);
}
