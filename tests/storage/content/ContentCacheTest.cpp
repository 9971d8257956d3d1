// SPDX-License-Identifier: MIT
// The cache of contents: it finds what it kept, and whatever somebody does to it is at worst a
// content that is not there.
#include "storage/content/ContentCache.h"

#include "platform/os/File.h"
#include "platform/os/FileSearch.h"
#include "platform/os/Path.h"
#include "storage/content/ContentHash.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace Storage {
namespace {

namespace fs = std::filesystem;

constexpr CacheLimits kSmall{.mostBytes = 100'000, .mostPacks = 10, .packBytes = 1, .leaveFree = 0};

std::string Content(int i, std::size_t size = 1000) {
    return std::string(size, static_cast<char>('a' + i % 26)) + std::to_string(i);
}

class Cache : public testing::Test {
protected:
    CString Path() const { return m_folder.Path() + u"cache\\"; }
    fs::path Native() const { return Platform::NativePath(Path()); }

    static void Keep(ContentCache& cache, int i, std::size_t size = 1000) {
        CacheWriter writer(cache);
        writer.Add(ContentHash(Content(i, size)), Content(i, size));
        writer.FinishList();
    }
    static bool Finds(ContentCache& cache, int i, std::size_t size = 1000) {
        std::string bytes;
        return cache.Read(ContentHash(Content(i, size)), bytes) && bytes == Content(i, size);
    }
    std::vector<fs::path> Packs() const {
        std::vector<fs::path> packs;
        for (const auto& entry : fs::directory_iterator(Native()))
            if (entry.path().extension() == ".contents")
                packs.push_back(entry.path());
        return packs;
    }
    // Of the only pack.
    void Change(const std::function<void(std::string&)>& change) {
        const auto packs = Packs();
        ASSERT_EQ(packs.size(), 1u);
        std::ifstream in(packs[0], std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), {});
        change(bytes);
        std::ofstream(packs[0], std::ios::binary) << bytes;
    }
    std::uint64_t Bytes() const {
        std::uint64_t bytes = 0;
        for (const auto& entry : fs::directory_iterator(Native()))
            bytes += entry.file_size();
        return bytes;
    }

    TemporaryFolder m_folder;
};

TEST_F(Cache, GivesWhatItKeptToThisProcessAndToTheNext) {
    ContentCache cache(Path());
    ASSERT_TRUE(cache.IsOn());
    EXPECT_FALSE(Finds(cache, 1));
    {
        CacheWriter writer(cache);
        for (int i = 0; i < 100; ++i)
            writer.Add(ContentHash(Content(i)), Content(i));
        writer.Add(ContentHash(""), "");
        writer.Add(ContentHash(Content(7, 1'000'000)), Content(7, 1'000'000));
        writer.Add(ContentHash(Content(8)), Content(8));
    }
    for (ContentCache* each : {&cache, std::make_unique<ContentCache>(Path()).release()}) {
        for (int i = 0; i < 100; ++i)
            EXPECT_TRUE(Finds(*each, i)) << i;
        EXPECT_TRUE(Finds(*each, 7, 1'000'000));
        std::string bytes = "x";
        EXPECT_TRUE(each->Read(ContentHash(""), bytes));
        EXPECT_EQ(bytes, "");
        EXPECT_FALSE(Finds(*each, 100));
        if (each != &cache)
            delete each;
    }
    EXPECT_EQ(Packs().size(), 1u);
}

TEST_F(Cache, IsThisUsersAlone) {
    fs::create_directories(Native());
    fs::permissions(Native(), fs::perms(0755));
    ContentCache cache(Path());
    Keep(cache, 1);
    EXPECT_EQ(fs::status(Native()).permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(Packs().at(0)).permissions(), fs::perms(0600));
}

TEST_F(Cache, AChangedByteIsFoundAndThePackRemoved) {
    ContentCache cache(Path());
    Keep(cache, 1);
    Change([](std::string& bytes) { bytes[500] ^= 1; });
    ContentCache other(Path());
    EXPECT_FALSE(Finds(other, 1));
    EXPECT_EQ(other.Counts().damaged, 1);
    EXPECT_TRUE(Packs().empty());
    EXPECT_FALSE(other.Has(ContentHash(Content(1))));
    Keep(other, 1);
    EXPECT_TRUE(Finds(other, 1));
    EXPECT_FALSE(Finds(cache, 1)); // which still knows the removed one
    cache.LookAgain();
    EXPECT_TRUE(Finds(cache, 1));
}

TEST_F(Cache, AChangeToAnyByteIsFound) {
    ContentCache cache(Path());
    Keep(cache, 1, 20);
    std::string whole;
    Change([&](std::string& bytes) { whole = bytes; });
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string changed = whole;
        changed[at] ^= 0x41;
        for (const fs::path& pack : Packs())
            fs::remove(pack);
        std::ofstream(Native() / "1.contents", std::ios::binary) << changed;
        ContentCache other(Path());
        EXPECT_FALSE(Finds(other, 1, 20)) << at;
        EXPECT_EQ(other.Counts().damaged, 1) << at;
    }
}

TEST_F(Cache, ACutPackIsRemovedWhereverItIsCut) {
    ContentCache cache(Path());
    Keep(cache, 1, 20);
    std::string whole;
    Change([&](std::string& bytes) { whole = bytes; });
    fs::remove(Packs().at(0));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        std::ofstream(Native() / "1.contents", std::ios::binary) << whole.substr(0, size);
        ContentCache other(Path());
        EXPECT_FALSE(Finds(other, 1, 20)) << size;
        EXPECT_TRUE(Packs().empty()) << size;
    }
}

TEST_F(Cache, APackThatIsCutOrDeletedWhileItIsKnownIsNotThere) {
    ContentCache cache(Path());
    Keep(cache, 1);
    Change([](std::string& bytes) { bytes.resize(10); });
    EXPECT_FALSE(Finds(cache, 1));
    EXPECT_EQ(cache.Counts().damaged, 1);
    Keep(cache, 2);
    fs::remove_all(Native());
    EXPECT_FALSE(Finds(cache, 2));
    EXPECT_EQ(cache.Counts().damaged, 1);
    Keep(cache, 3); // its folder is gone: kept nowhere
    EXPECT_FALSE(Finds(cache, 3));
}

TEST_F(Cache, HoldsItsBoundAndLetsGoWhatWasNotUsedForLongest) {
    ContentCache cache(Path(), kSmall);
    using namespace std::chrono_literals;
    const auto now = fs::file_time_type::clock::now();
    std::vector<fs::path> before;
    for (int i = 0; i < 4; ++i) {
        Keep(cache, i, 20'000);
        for (const fs::path& pack : Packs())
            if (std::ranges::find(before, pack) == before.end()) {
                fs::last_write_time(pack, now - 100s + i * 1s);
                before.push_back(pack);
            }
    }
    ContentCache other(Path(), kSmall);
    EXPECT_TRUE(Finds(other, 0, 20'000)); // used now
    Keep(other, 4, 20'000);
    ContentCache third(Path(), kSmall);
    EXPECT_TRUE(third.Has(ContentHash(Content(0, 20'000))));
    EXPECT_FALSE(third.Has(ContentHash(Content(1, 20'000))));
    EXPECT_TRUE(third.Has(ContentHash(Content(2, 20'000))));
    EXPECT_TRUE(third.Has(ContentHash(Content(4, 20'000))));
    for (int i = 5; i < 30; ++i) {
        Keep(third, i, static_cast<std::size_t>(i) * 800);
        EXPECT_LE(Bytes(), kSmall.mostBytes);
    }
    Keep(third, 1, 26'000); // more than a quarter of all
    EXPECT_FALSE(Finds(third, 1, 26'000));
}

TEST_F(Cache, HoldsNoMorePacksThanItMay) {
    ContentCache cache(Path(), kSmall);
    for (int i = 0; i < 30; ++i)
        Keep(cache, i, 10);
    EXPECT_LE(Packs().size(), kSmall.mostPacks);
    EXPECT_TRUE(Finds(cache, 29, 10));
}

TEST_F(Cache, LeavesTheDiskTheRoomThatItIsToldTo) {
    CacheLimits limits = kSmall;
    limits.leaveFree = std::uint64_t{1} << 60;
    ContentCache cache(Path(), limits);
    Keep(cache, 1);
    EXPECT_FALSE(Finds(cache, 1));
    EXPECT_TRUE(fs::is_empty(Native()));
}

TEST_F(Cache, AFullDiskKeepsNothingAndLeavesNothing) {
    fs::create_directories(Native());
    if (mount("none", Native().c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "a small disk cannot be mounted: needs root";
    {
        ContentCache cache(Path(), {.mostBytes = 100 << 20, .packBytes = 1000, .leaveFree = 0});
        Keep(cache, 1, 10'000);
        EXPECT_TRUE(Finds(cache, 1, 10'000));
        Keep(cache, 2, 1'000'000);
        EXPECT_FALSE(Finds(cache, 2, 1'000'000));
        EXPECT_TRUE(Finds(cache, 1, 10'000));
        EXPECT_EQ(Packs().size(), 1u);
        Keep(cache, 3, 10'000);
        EXPECT_TRUE(Finds(cache, 3, 10'000));
    }
    umount2(Native().c_str(), MNT_DETACH);
}

TEST_F(Cache, WhatAKilledProcessLeftGoesAfterAWhile) {
    ContentCache cache(Path());
    std::ofstream(Native() / "0123456789abcdef.new") << "half";
    using namespace std::chrono_literals;
    Keep(cache, 1);
    EXPECT_TRUE(fs::exists(Native() / "0123456789abcdef.new"));
    fs::last_write_time(Native() / "0123456789abcdef.new", fs::file_time_type::clock::now() - 2h);
    Keep(cache, 2);
    EXPECT_FALSE(fs::exists(Native() / "0123456789abcdef.new"));
}

TEST_F(Cache, FilesOfOthersInItsFolderAreLeftAlone) {
    fs::create_directories(Native());
    std::ofstream(Native() / "notes.txt") << std::string(200'000, 'x');
    ContentCache cache(Path(), kSmall);
    Keep(cache, 1);
    EXPECT_TRUE(fs::exists(Native() / "notes.txt"));
}

TEST_F(Cache, ALinkInItsFoldersPlaceTurnsItOff) {
    const fs::path elsewhere = fs::path(Platform::NativePath(m_folder.Path())) / "elsewhere";
    fs::create_directories(elsewhere);
    fs::create_directory_symlink(elsewhere,
                                 fs::path(Platform::NativePath(m_folder.Path())) / "cache");
    ContentCache cache(Path());
    EXPECT_FALSE(cache.IsOn());
    Keep(cache, 1);
    EXPECT_FALSE(Finds(cache, 1));
    EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(Cache, LinksPipesAndFoldersInAPacksPlaceAreNotTouched) {
    ContentCache cache(Path());
    const fs::path victim = fs::path(Platform::NativePath(m_folder.Path())) / "victim";
    std::ofstream(victim) << "precious";
    fs::create_symlink(victim, Native() / "aaaa.contents");
    fs::create_directories(Native() / "bbbb.contents");
    ASSERT_EQ(mkfifo((Native() / "cccc.contents").c_str(), 0600), 0);
    ContentCache other(Path());
    Keep(other, 1);
    EXPECT_TRUE(Finds(other, 1));
    // And one in the place of a pack that is known.
    fs::path pack;
    for (const fs::path& each : Packs())
        if (fs::is_regular_file(fs::symlink_status(each)))
            pack = each;
    fs::remove(pack);
    fs::create_symlink(victim, pack);
    ContentCache third(Path());
    EXPECT_FALSE(Finds(third, 1));
    EXPECT_EQ(fs::file_size(victim), 8u);
}

TEST_F(Cache, AFolderThatCannotBeMadeOrReadTurnsItOff) {
    std::ofstream(fs::path(Platform::NativePath(m_folder.Path())) / "cache") << "a file";
    ContentCache cache(Path());
    EXPECT_FALSE(cache.IsOn());
    ContentCache none(u"");
    EXPECT_FALSE(none.IsOn());
    Keep(none, 1);
    EXPECT_FALSE(Finds(none, 1));
}

TEST_F(Cache, AFolderThatTakesNoFilesKeepsNothing) {
    fs::create_directories(Native());
    EXPECT_TRUE(PassesInAChildProcess([&] {
        if (geteuid() == 0) {
            ASSERT_EQ(chown(Native().c_str(), 65534, 65534), 0);
        }
        fs::permissions(Native(), fs::perms(0500));
        fs::permissions(m_folder.Native(), fs::perms(0711));
        BecomeOrdinaryUser();
        ContentCache cache(Path());
        EXPECT_TRUE(cache.IsOn());
        Keep(cache, 1);
        EXPECT_FALSE(Finds(cache, 1));
    }));
    fs::permissions(Native(), fs::perms(0700));
}

TEST_F(Cache, WhatAnotherProcessKeptIsFoundAfterTheNextLook) {
    ContentCache cache(Path());
    EXPECT_TRUE(PassesInAChildProcess([&] {
        ContentCache other(Path());
        Keep(other, 1);
    }));
    EXPECT_FALSE(Finds(cache, 1));
    cache.LookAgain();
    EXPECT_TRUE(Finds(cache, 1));
}

TEST_F(Cache, SeveralProcessesAtOnceKeepAndFindWhole) {
    std::vector<std::thread> threads;
    std::atomic<int> wrong = 0;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            // Objects of their own share nothing but the folder, as processes do.
            ContentCache cache(Path(), kSmall);
            for (int i = 0; i < 50; ++i) {
                Keep(cache, i * 4 + t, 5000);
                cache.LookAgain();
                for (int k = 0; k < 200; ++k) {
                    std::string bytes;
                    const std::string hash = ContentHash(Content(k, 5000));
                    if (cache.Has(hash) && cache.Read(hash, bytes) && bytes != Content(k, 5000))
                        ++wrong;
                }
                if (cache.Counts().damaged > 0)
                    ++wrong;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_LE(Bytes(), kSmall.mostBytes + 4 * 5100);
}

} // namespace
} // namespace Storage
