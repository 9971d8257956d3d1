// SPDX-License-Identifier: MIT
// Fetched files that do not arrive on the disk as they were fetched, each for a reason of
// its own: all count as failed and each leaves its line, for drawings and for
// configuration files alike.
#include "client/manager/ManagerTest.h"
#include "support/InAChildProcess.h"

#include <csignal>
#include <grp.h>
#include <sys/resource.h>

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::Return;
using testing::SetArgReferee;

namespace {

constexpr uid_t kNobody = 65534;

// Whether drawings or configuration files are loaded.
class FailedWrite : public ManagerTest, public testing::WithParamInterface<int> {
protected:
    FailedWrite() {
        ForgetKinds();
        manager.RegisterNCFMetadata(boost::make_shared<CNCFMetadata>(
            u"K", 1, BaseFolderSupport, u"sub", NCFTypePattern, u"*", 0));
        manager.RegisterFOCMetadata(
            boost::make_shared<CFOCMetadata>(u"K", 1, BaseFolderSupport, u"sub", u"", 0));
    }

    // Loads one stored file "a.dwg" with these bytes.
    int Load(std::string_view bytes) {
        EXPECT_CALL(backend, GetRepositoryFileIds(GetParam(), TextIs(u"K"), _))
            .WillOnce(DoAll(SetArgReferee<2>(std::vector<CString>{u"1"}), Return(1)));
        EXPECT_CALL(backend, GetRepositoryFile(_)).WillOnce(Return(Stored(u"a.dwg", bytes)));
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillRepeatedly(Return(1));
        const int result =
            GetParam() == kContentNCF ? manager.LoadNCF(u"K") : manager.LoadFOC(u"K", 0);
        testing::Mock::VerifyAndClearExpectations(&backend);
        return result;
    }
    void ExpectFailure(std::string_view bytes) {
        EXPECT_EQ(Load(bytes), 0);
        EXPECT_EQ(log.Lines(), Lines{Failure(10334, u"a.dwg")});
    }

    std::filesystem::path Target() const { return SupportFolder() / "sub/a.dwg"; }

    // Lets every user reach everything of this test.
    void OpenToEveryone() const {
        using std::filesystem::perms;
        std::filesystem::permissions(workstation.Folder().Native(), perms::all);
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(workstation.Folder().Native()))
            if (entry.is_directory())
                std::filesystem::permissions(entry.path(), perms::all);
    }
    // The superuser may write anything, so the work goes on as somebody else.
    static void StopBeingSuperuser() {
        if (geteuid() != 0)
            return;
        ASSERT_EQ(setgroups(0, nullptr), 0);
        ASSERT_EQ(setgid(kNobody), 0);
        ASSERT_EQ(setuid(kNobody), 0);
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, FailedWrite, testing::Values(kContentNCF, kContentFOC),
                         [](const auto& kind) {
                             return kind.param == kContentNCF ? "Drawings" : "ConfigurationFiles";
                         });

TEST_P(FailedWrite, AFolderInTheFilesPlace) {
    std::filesystem::create_directories(Target());
    ExpectFailure("new");
    EXPECT_TRUE(std::filesystem::is_directory(Target()));
}

TEST_P(FailedWrite, ALinkInTheFilesPlace) {
    Write(SupportFolder() / "elsewhere", "old");
    std::filesystem::create_directories(Target().parent_path());
    std::filesystem::create_symlink(SupportFolder() / "elsewhere", Target());
    ExpectFailure("new");
    EXPECT_EQ(Read(SupportFolder() / "elsewhere"), "old");
}

TEST_P(FailedWrite, AFileInTheFoldersPlace) {
    Write(SupportFolder() / "sub", "in the way");
    ExpectFailure("new");
    EXPECT_EQ(Read(SupportFolder() / "sub"), "in the way");
}

// What stands there afterwards has the right size, and so would pass a look at the size.
TEST_P(FailedWrite, AnOldReadOnlyFileOfTheSameSize) {
    Write(Target(), "old");
    std::filesystem::permissions(Target(), std::filesystem::perms(0444));
    OpenToEveryone();

    EXPECT_TRUE(PassesInAChildProcess([&] {
        StopBeingSuperuser();
        ExpectFailure("new");
        EXPECT_EQ(Read(Target()), "old");
    }));
}

TEST_P(FailedWrite, AFolderWithoutTheRightToWrite) {
    std::filesystem::create_directories(Target().parent_path());
    OpenToEveryone();
    std::filesystem::permissions(Target().parent_path(), std::filesystem::perms(0555));

    EXPECT_TRUE(PassesInAChildProcess([&] {
        StopBeingSuperuser();
        ExpectFailure("new");
        EXPECT_EQ(Read(Target()), "(no file)");
    }));
    std::filesystem::permissions(Target().parent_path(), std::filesystem::perms::all);
}

TEST_P(FailedWrite, AFileThatTheDiskTakesOnlyInPart) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        ExpectFailure(std::string(1001, 'x'));
    }));
}

TEST_P(FailedWrite, ButNotAFileThatFitsExactly) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_EQ(Load(std::string(1000, 'x')), 1);
        EXPECT_EQ(log.Lines(), Lines{Success(u"a.dwg")});
        EXPECT_EQ(Read(Target()), std::string(1000, 'x'));
    }));
}
