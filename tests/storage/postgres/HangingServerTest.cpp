// SPDX-License-Identifier: MIT
// A server that hangs while its connections stand: the call that meets it is given up when the
// server was silent for too long, and every later one as soon as no connection can be made.
#include "ServerFailure.h"
#include "WorkspaceLog.h"
#include "storage/SqlBackend.h"
#include "storage/postgres/PostgresConnection.h"
#include "support/Workstation.h"

#include <chrono>

namespace Storage {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class HangingServer : public ServerTest {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        server = std::make_unique<PrivateServer>();
        access->SetMsgProvider(&messages);
        access->SetSettingsPath(workstation.Folder().Path());
        // libpq's shortest.
        access->Connect(Platform::FromUtf8(server->Uri() + "&connect_timeout=2"), true);
        ASSERT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
        ids = Ids();
        ASSERT_THAT(ids, SizeIs(1));
    }
    std::vector<CString> Ids() {
        std::vector<CString> found;
        EXPECT_EQ(backend.GetRepositoryFileIds(4, u"001_LABEL", found), 1);
        return found;
    }
    // Expects that it takes about so long to come to nothing.
    template<typename Work>
    static void ExpectToFail(Work work, Clock::duration after) {
        const auto begin = Clock::now();
        EXPECT_EQ(work(), 0);
        EXPECT_GE(Clock::now() - begin, after - 200ms);
        EXPECT_LT(Clock::now() - begin, after + 1500ms);
    }

    static constexpr auto kSilence = 1000ms;
    static constexpr auto kConnecting = 2000ms;
    static constexpr auto kPatience = 1000ms;

    Workstation workstation;
    EnglishMessages messages;
    WorkspaceLog log;
    std::unique_ptr<PrivateServer> server;
    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>(
        [](const Address& address) {
            return OpenPostgres(address, {.silenceTimeoutMs = int{kSilence.count()}});
        },
        Patience{50ms, kPatience});
    SqlBackend backend{access};
    std::vector<CString> ids;
};

TEST_F(HangingServer, BetweenTwoCallsIsNoticedByTheNextOneThatReads) {
    server->Freeze();
    std::vector<CString> found;
    ExpectToFail([&] { return backend.GetRepositoryFileIds(4, u"001_LABEL", found); }, kSilence);
    const auto told = log.Take();
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_THAT(Platform::ToUtf8(told[0]), HasSubstr("has not said a word for 1 s"));
    // Waited for once, as one that went away is, and told once.
    ExpectToFail([&] { return backend.IsRepositoryAccessible(); }, kConnecting);
    ExpectToFail([&] { return backend.AmIAdmin(); }, kConnecting);
    EXPECT_THAT(log.Take(), SizeIs(1));
    server->Thaw();
    EXPECT_EQ(Ids(), ids);
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(ids[0].c_str())), "1");
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(HangingServer, BetweenTwoCallsIsNoticedByTheNextOneThatWritesWhichIsKeptWholeOrNotAtAll) {
    server->Freeze();
    ExpectToFail([&] { return backend.AddRepositoryFiles({MakeFile(u"a.dwg", "2")}); }, kSilence);
    EXPECT_THAT(log.Take(), SizeIs(1));
    server->Thaw();
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(Ids()[0].c_str())), "1");
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "2")}), 1);
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(Ids()[0].c_str())), "2");
}

TEST_F(HangingServer, AMomentsHangIsWaitedFor) {
    server->Freeze();
    // The server ends with the thread that starts it, so this one has to wait.
    std::thread waiting([&] { EXPECT_EQ(backend.IsRepositoryAccessible(), 1); });
    std::this_thread::sleep_for(kSilence / 2);
    server->Thaw();
    waiting.join();
    EXPECT_THAT(log.Take(), IsEmpty());
}

} // namespace
} // namespace Storage
