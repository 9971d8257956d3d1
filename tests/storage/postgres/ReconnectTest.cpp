// SPDX-License-Identifier: MIT
// A connection that breaks between two calls is made again within the next one; one that breaks
// inside a call fails that call whole.
#include "FaultySqlConnection.h"
#include "ServerFailure.h"
#include "WorkspaceLog.h"
#include "platform/host/Interruption.h"
#include "storage/SqlBackend.h"
#include "support/InAChildProcess.h"
#include "support/Workstation.h"

#include <chrono>
#include <linux/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace Storage {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::IsEmpty;
using testing::SizeIs;

// A connection that can be cut.
class CutConnection : public FaultySqlConnection {
public:
    CutConnection(std::unique_ptr<SqlConnection> sql, FaultPlan& plan, const bool& isCut)
        : FaultySqlConnection(std::move(sql), plan), m_isCut(isCut) {}
    bool IsAlive() override { return !m_isCut; }

private:
    const bool& m_isCut;
};

// A server that is played by a file, so that each attempt to reach it can be counted.
class ReconnectTest : public testing::Test {
protected:
    ReconnectTest() {
        CreateRepository(file);
        access->SetMsgProvider(&messages);
        access->SetSettingsPath(workstation.Folder().Path());
        access->Connect(u"postgresql://ana@db.example.org/gis", false);
        attempts.clear();
    }
    std::unique_ptr<SqlConnection> Connect() {
        attempts.push_back(Clock::now());
        if (failures == 0) {
            isCut = false;
            return std::make_unique<CutConnection>(OpenRepository(file), plan, isCut);
        }
        --failures;
        throw StorageError(problem, MessageNumber::NoServerThere, {u"there", u"refused"});
    }
    void Cut(int howManyAttemptsFail) {
        isCut = true;
        failures = howManyAttemptsFail;
        attempts.clear();
    }

    static constexpr int kAlways = -1;

    Workstation workstation;
    EnglishMessages messages;
    WorkspaceLog log;
    FaultPlan plan;
    bool isCut = false;
    int failures = 0;
    Problem problem = Problem::Unreachable;
    std::vector<Clock::time_point> attempts;
    Address file{.path = workstation.Folder().Path() + u"repository.db"};
    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>(
        [this](const Address&) { return Connect(); }, Patience{50ms, 1000ms});
    SqlBackend backend{access};
};

TEST_F(ReconnectTest, TheNextCallWaitsForAServerThatComesBackAndSaysNothingOfIt) {
    Cut(3);
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
    ASSERT_THAT(attempts, SizeIs(4));
    EXPECT_GE(attempts[1] - attempts[0], 50ms);
    EXPECT_GE(attempts[2] - attempts[1], 100ms);
    EXPECT_GE(attempts[3] - attempts[2], 200ms);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ReconnectTest, AServerThatStaysAwayIsWaitedForOnceAndThenTriedOnceACallUntilItIsBack) {
    Cut(kAlways);
    const auto begin = Clock::now();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_GE(Clock::now() - begin, 950ms);
    EXPECT_LT(Clock::now() - begin, 1900ms);
    EXPECT_GT(attempts.size(), 4u);
    EXPECT_THAT(log.Take(), SizeIs(1));
    attempts.clear();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_THAT(attempts, SizeIs(2));
    EXPECT_THAT(log.Take(), IsEmpty());
    failures = 0;
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
    // It worked again, and so it is waited for again.
    Cut(2);
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
}

TEST_F(ReconnectTest, WhatWaitingDoesNotMendIsToldAtOnce) {
    for (const Problem kind : {Problem::NotAllowed, Problem::Configuration, Problem::Missing}) {
        problem = kind;
        Cut(1);
        EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
        EXPECT_THAT(attempts, SizeIs(1));
        EXPECT_THAT(log.Take(), SizeIs(1));
        EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
    }
}

TEST_F(ReconnectTest, TheUserCanEndTheWaiting) {
    ASSERT_TRUE(PassesInAChildProcess([&] {
        const Platform::InterruptionGuard guard;
        Platform::RequestInterruption();
        Cut(kAlways);
        const auto begin = Clock::now();
        EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
        EXPECT_LT(Clock::now() - begin, 500ms);
    }));
}

TEST_F(ReconnectTest, ACallInWhichTheConnectionBreaksFailsWholeAndIsNotRepeated) {
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    attempts.clear();
    plan = {2, Problem::Unreachable};
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "2")}), 0);
    EXPECT_THAT(attempts, IsEmpty());
    EXPECT_THAT(log.Take(), SizeIs(1));
    plan = {};
    std::vector<CString> ids;
    EXPECT_EQ(backend.GetRepositoryFileIds(4, u"001_LABEL", ids), 1);
    ASSERT_THAT(ids, SizeIs(1));
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(ids[0].c_str())), "1");
    EXPECT_THAT(attempts, SizeIs(1));
}

TEST_F(ReconnectTest, AnotherAddressThatWasNeverReachedIsNotWaitedFor) {
    Cut(kAlways);
    access->LoadSettings();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_THAT(attempts, SizeIs(1));
}

// The same with a real server.
class ReconnectToServer : public ServerTest {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        server = std::make_unique<PrivateServer>();
        Connect(server->Uri());
    }
    void Connect(const std::string& uri) {
        access->SetMsgProvider(&messages);
        access->SetSettingsPath(workstation.Folder().Path());
        access->Connect(Platform::FromUtf8(uri), true);
        ASSERT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    }
    std::vector<CString> Ids() {
        std::vector<CString> ids;
        EXPECT_EQ(backend.GetRepositoryFileIds(4, u"001_LABEL", ids), 1);
        return ids;
    }
    std::string Content(const CString& id) {
        return BytesOf(backend.GetRepositoryFile(id.c_str()));
    }

    Workstation workstation;
    EnglishMessages messages;
    WorkspaceLog log;
    std::unique_ptr<PrivateServer> server;
    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>();
    SqlBackend backend{access};
};

TEST_F(ReconnectToServer, ARestartBetweenTwoCallsIsNotNoticed) {
    const auto ids = Ids();
    ASSERT_THAT(ids, SizeIs(1));
    server->Restart();
    EXPECT_EQ(Content(ids[0]), "1");
    server->Restart();
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "2")}), 1);
    EXPECT_EQ(Content(Ids()[0]), "2");
    // A listing stands for what it listed, also with another session.
    EXPECT_EQ(Content(ids[0]), "1");
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ReconnectToServer, AServerThatComesBackAfterAWhileIsWaitedFor) {
    server->Kill();
    // The server ends with the thread that starts it, so this one has to wait.
    std::thread waiting([&] {
        EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
        EXPECT_THAT(Ids(), SizeIs(1));
    });
    std::this_thread::sleep_for(1s);
    server->Start();
    waiting.join();
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ReconnectToServer, AServerThatStaysAwayIsGivenUpAfterTenSecondsAndThenAtOnce) {
    server->Stop();
    auto begin = Clock::now();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_GT(Clock::now() - begin, 9s);
    EXPECT_LT(Clock::now() - begin, 14s);
    begin = Clock::now();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(backend.AmIAdmin(), 0);
    EXPECT_LT(Clock::now() - begin, 1s);
    const auto told = log.Take();
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_THAT(Platform::ToUtf8(told[0]), testing::StartsWith("No server answers at"));
    server->Start();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
}

// Nothing goes through any more, and nothing says so.
void SwitchLoopback(bool on) {
    const int any = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    request.ifr_name[0] = 'l';
    request.ifr_name[1] = 'o';
    ASSERT_EQ(ioctl(any, SIOCGIFFLAGS, &request), 0);
    request.ifr_flags =
        static_cast<short>(on ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP);
    ASSERT_EQ(ioctl(any, SIOCSIFFLAGS, &request), 0);
    close(any);
}

TEST_F(ReconnectToServer, AServerThatVanishesWithoutAWordIsNoticedWithinTenSeconds) {
    server.reset();
    const auto isolate = [] { return unshare(CLONE_NEWNET) == 0; };
    if (!PassesInAChildProcess([&] { ASSERT_TRUE(isolate()); }))
        GTEST_SKIP() << "this process may have no network of its own";
    ASSERT_TRUE(PassesInAChildProcess([&] {
        ASSERT_TRUE(isolate());
        SwitchLoopback(true);
        server = std::make_unique<PrivateServer>();
        access->Disconnect();
        Connect(server->TcpUri());
        EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
        SqlConnection& connection = access->Use().Connection();
        SwitchLoopback(false);
        const auto begin = Clock::now();
        auto asked = begin;
        // What IsRepositoryAccessible asks first.
        for (; connection.IsAlive() && asked - begin < 15s; asked = Clock::now())
            std::this_thread::sleep_for(50ms);
        EXPECT_GT(asked - begin, 2s);
        EXPECT_LT(asked - begin, 10500ms);
        EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
        SwitchLoopback(true);
        EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
        EXPECT_THAT(Ids(), SizeIs(1));
        server.reset();
    }));
}

} // namespace
} // namespace Storage
