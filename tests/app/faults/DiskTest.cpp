// SPDX-License-Identifier: MIT
// Disks that are full, files that may not grow, folders without rights, repositories on
// network file systems, and a clock that goes back.
#include "FaultyRun.h"
#include "Workplace.h"

#include "support/InAChildProcess.h"

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

// A disk of its own that takes no more than that; as root only.
class SmallDisk {
public:
    SmallDisk(const fs::path& folder, std::size_t bytes) : m_folder(folder) {
        fs::create_directories(folder);
        const std::string options = "size=" + std::to_string(bytes);
        m_isMounted = mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
    }
    ~SmallDisk() {
        if (m_isMounted)
            umount2(m_folder.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    bool IsMounted() const { return m_isMounted; }

private:
    fs::path m_folder;
    bool m_isMounted = false;
};

class Disks : public testing::Test {
protected:
    Station station;

    void SetUpEverything() {
        ASSERT_EQ(station.Zebx({"init"}).status, 0);
        ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
        WriteFiles(station.Support(), Generation(1));
        ASSERT_EQ(station.Zebx({"push"}).status, 0);
    }
};

constexpr std::size_t kMegabyte = 1'000'000;

} // namespace

#define ZEBX_NEEDS_A_SMALL_DISK(disk)                                                              \
    if (!(disk).IsMounted())                                                                       \
    GTEST_SKIP() << "a small disk cannot be mounted: needs root"

TEST_F(Disks, AFullOneEndsAPushWithStatusNineAndChangesNothing) {
    SetUpEverything();
    const SmallDisk disk(station.Folder() / "small", 8 * kMegabyte);
    ZEBX_NEEDS_A_SMALL_DISK(disk);
    const fs::path repository = station.Folder() / "small/net.db";
    ASSERT_EQ(station.Zebx({"connect", "--create", "sqlite:" + repository.string()}).status, 0);
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    Write(station.Support() / "nodes/large.dwg", std::string(16 * kMegabyte, 'x'));
    const Ended run = station.Zebx({"push", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("no space left"), HasSubstr(repository.string())));
    EXPECT_EQ(FilesOf(repository), Generation(1));
    fs::remove(station.Support() / "nodes/large.dwg");
    EXPECT_EQ(station.Zebx({"push"}).status, 0);
}

TEST_F(Disks, AFullOneEndsACopyWithStatusNineAfterThePartsThatFitted) {
    SetUpEverything();
    for (const char letter : {'x', 'y', 'z'}) {
        Write(station.Support() / "nodes/large.dwg", std::string(40 * kMegabyte, letter));
        ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    }
    const fs::path copy = station.Folder() / "small/net.db";
    {
        const SmallDisk disk(station.Folder() / "small", 120 * kMegabyte);
        ZEBX_NEEDS_A_SMALL_DISK(disk);
        const Ended run = station.Zebx({"repo", "export", copy.string()});
        EXPECT_EQ(run.status, 9) << run;
        EXPECT_THAT(run.err, AllOf(HasSubstr("no space left"), HasSubstr(copy.string())));
        EXPECT_THAT(run.out, HasSubstr("The copy has the revisions up to"));
        EXPECT_GT(FilesOf(copy).size(), 0U);
        fs::copy(copy.parent_path(), station.Folder() / "larger"); // with what "-wal" holds
    }
    const fs::path larger = station.Folder() / "larger/net.db";
    const Ended run = station.Zebx({"repo", "export", larger.string()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("The copy is whole"));
}

TEST_F(Disks, AFullOneFailsAPullFileByFileAndLeavesWholeFiles) {
    SetUpEverything();
    const SmallDisk disk(station.Folder() / "small", 100'000);
    ZEBX_NEEDS_A_SMALL_DISK(disk);
    const fs::path support = station.Folder() / "small/support";
    const Ended run = station.Zebx({"pull", "ncf", "--support", support.string()});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, HasSubstr("Failure: Could not be written"));
    EXPECT_EQ(WhyNotWhole(FilesIn(support), true), "");
}

TEST_F(Disks, AFullOneKeepsOldSettingsAndIsTold) {
    const SmallDisk disk(station.Folder() / "config", 4096);
    ZEBX_NEEDS_A_SMALL_DISK(disk);
    Write(station.Folder() / "config/full", std::string(4096, 'x'));
    const Ended run = station.Zebx({"init"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, HasSubstr("zebx: Could not be made: "));
    EXPECT_FALSE(fs::exists(station.Ini()));
}

TEST_F(Disks, AFullOneForTheLogsStopsNoTransfer) {
    SetUpEverything();
    fs::remove_all(station.Folder() / "state");
    const SmallDisk disk(station.Folder() / "state", 4096);
    ZEBX_NEEDS_A_SMALL_DISK(disk);
    EXPECT_EQ(station.Zebx({"pull"}).status, 0);
    EXPECT_EQ(FilesIn(station.Support()), Generation(1));
}

// More than SQLite's own small files take.
constexpr rlim_t kLimit = 50'000;

TEST_F(Disks, AFileSizeLimitIsAnErrorOfTheFileAndNoSilentEnd) {
    SetUpEverything();
    Write(station.Support() / "nodes/large.dwg", std::string(2 * kLimit, 'x'));
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    for (const auto& [path, bytes] : FilesIn(station.Support()))
        fs::remove(station.Support() / path);
    EXPECT_TRUE(PassesInAChildProcess([&] {
        const rlimit limit = {kLimit, kLimit};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        const Ended run = station.Zebx({"pull", "ncf"});
        EXPECT_EQ(run.status, 9) << run;
        EXPECT_THAT(run.err, HasSubstr("Failure: Could not be written"));
        EXPECT_THAT(run.err, HasSubstr("large.dwg"));
    }));
    EXPECT_EQ(station.Zebx({"pull", "foc", "gs"}).status, 0);
    fs::remove(station.Support() / "nodes/large.dwg");
    EXPECT_EQ(FilesIn(station.Support()), Generation(1));
}

TEST_F(Disks, AFileSizeLimitEndsAPushWithAWord) {
    SetUpEverything();
    WriteFiles(station.Support(), Generation(2));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        const rlimit limit = {kLimit, kLimit};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        const Ended run = station.Zebx({"push"});
        EXPECT_GT(run.status, 0) << run;
        EXPECT_THAT(run.err, HasSubstr("Failure: The repository " + station.Repository().string()));
    }));
    EXPECT_EQ(station.Zebx({"push"}).status, 0);
    EXPECT_EQ(FilesOf(station.Repository()), Generation(2));
}

TEST_F(Disks, ANetworkFileSystemIsWarnedOfOnce) {
    SetUpEverything();
    constexpr std::uint32_t kNfs = 0x6969;
    const FaultyEnd run =
        RunFaulty(station, {"pull"}, [&](FailingCalls& calls) { calls.PretendFileSystem(kNfs); });
    EXPECT_EQ(run.status, 0) << run;
    const std::string warning = "Warning: The repository " + station.Repository().string() +
                                " lies on a network file system (NFS)";
    const std::size_t at = run.err.find(warning);
    EXPECT_NE(at, std::string::npos) << run;
    EXPECT_EQ(run.err.find("network file system", at + warning.size()), std::string::npos) << run;
    EXPECT_EQ(RunFaulty(station, {"pull"}).err.find("network"), std::string::npos);
}
