// SPDX-License-Identifier: MIT
// What breaks while a repository is used: the call fails whole, the user is told why, and the
// next one works when the reason is gone.
#include "ServerFailure.h"
#include "storage/postgres/PostgresConnection.h"
#include "support/SmallDisk.h"

#include <fstream>
#include <thread>

namespace Storage {
namespace {

namespace fs = std::filesystem;

std::int64_t Number(const PrivateServer& server, const std::string& sql) {
    return std::stoll(server.Run(sql));
}

void Grant(const PrivateServer& server, const std::string& user, const std::string& right) {
    server.Run("CREATE ROLE " + user + " LOGIN; GRANT zebx_" + right + " TO " + user);
}

class CallFailures : public ServerTest {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        server = std::make_unique<PrivateServer>();
        uri = server->Uri();
    }
    void Create() {
        CreateRepository(AddressOf(uri));
        store = StoreAt(uri);
        store->AddFiles({MakeFile(u"a.dwg", "1")});
    }
    void ExpectToTell(const std::function<void()>& work, Problem problem, MessageNumber number,
                      const std::string& reason) const {
        ExpectTold(work, problem, number, uri, reason);
    }
    void Add(const char* bytes) const { store->AddFiles({MakeFile(u"a.dwg", bytes)}); }
    std::string Content() const {
        const auto ids = store->FileIds(4, u"001_LABEL");
        return ids.size() == 1 ? BytesOf(store->File(ids[0])) : "(not one file)";
    }

    std::unique_ptr<PrivateServer> server;
    std::string uri;
    std::unique_ptr<Store> store;
};

TEST_F(CallFailures, TheServersDiskIsFull) {
    const SmallDisk disk("size=6m");
    if (!disk.IsMounted())
        GTEST_SKIP() << "this process may mount no small disk";
    disk.HoldTablesOf("keeper", *server);
    Create();
    std::string large;
    for (unsigned n = 1; large.size() < 16'000'000; n = n * 1664525 + 1013904223)
        large.append(reinterpret_cast<const char*>(&n), sizeof n);
    const auto add = [&] { store->AddFiles({MakeFile(u"large.dwg", large)}); };
    ExpectToTell(add, Problem::ServerFull, MessageNumber::ServerDiskFull, "No space left");
    EXPECT_EQ(RevisionOf(*store), 1);
    EXPECT_EQ(Content(), "1");
    disk.Resize("size=64m");
    add();
    EXPECT_EQ(RevisionOf(*store), 2);
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 2u);
}

TEST_F(CallFailures, SomebodyElseHoldsTheLockForTooLong) {
    Create();
    const auto other = OpenRepository(AddressOf(uri));
    store = StoreOf(OpenPostgres(AddressOf(uri), {.busyTimeoutMs = 300}));
    {
        WriteCall half(*other, {}, "half", u"a call");
        half.TakeTurn();
        ExpectToTell([&] { Add("2"); }, Problem::Busy, MessageNumber::Busy, "Try again");
        EXPECT_EQ(Content(), "1");
    }
    Add("2");
    EXPECT_EQ(Content(), "2");
}

TEST_F(CallFailures, AStatementTakesLongerThanTheServerAllows) {
    Create();
    server->Run("ALTER ROLE keeper SET statement_timeout = 300");
    const auto other = OpenRepository(AddressOf(uri));
    store = StoreAt(uri);
    {
        WriteCall half(*other, {}, "half", u"a call");
        half.TakeTurn();
        ExpectToTell([&] { Add("2"); }, Problem::Busy, MessageNumber::StatementEnded,
                     "statement timeout");
        EXPECT_EQ(Content(), "1");
    }
    Add("2");
    EXPECT_EQ(Content(), "2");
}

TEST_F(CallFailures, TheServerIsRestartedInTheMiddleOfACall) {
    Create();
    {
        WriteCall call(store->Connection(), {}, "half", u"a call");
        call.Revision();
        server->Restart();
        ExpectToTell([&] { RevisionOf(*store); }, Problem::Unreachable,
                     MessageNumber::ServerStopped, "administrator command");
    }
    EXPECT_FALSE(store->Connection().IsAlive());
    store = StoreAt(uri);
    EXPECT_EQ(RevisionOf(*store), 1);
    EXPECT_EQ(Number(*server, "SELECT count(*) FROM zebx.revision"), 1);
}

TEST_F(CallFailures, TheServerDiesInTheMiddleOfAQuery) {
    Create();
    server->Kill();
    ExpectToTell([&] { store->FileIds(4, u"001_LABEL"); }, Problem::Unreachable,
                 MessageNumber::ConnectionBroke, "server closed the connection");
    EXPECT_FALSE(store->Connection().IsAlive());
}

TEST_F(CallFailures, AnAdministratorEndsTheSession) {
    Create();
    server->Run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename = 'keeper'");
    ExpectToTell([&] { store->FileIds(4, u"001_LABEL"); }, Problem::Unreachable,
                 MessageNumber::ServerStopped, "administrator command");
}

TEST_F(CallFailures, TheServerStopsAnswering) {
    Create();
    store = StoreOf(OpenPostgres(AddressOf(uri), {.silenceTimeoutMs = 1000}));
    server->Freeze();
    const auto error = ErrorOf([&] { store->FileIds(4, u"001_LABEL"); });
    server->Thaw();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Unreachable);
    EXPECT_THAT(NumbersOf(*error), testing::ElementsAre(MessageNumber::ServerSilent));
    EXPECT_FALSE(store->Connection().IsAlive());
}

TEST_F(CallFailures, AStandbyTakesNoWritesButGivesWhatItHas) {
    Create();
    const PrivateServer standby({.upstream = server->Uri("postgres")});
    uri = standby.Uri();
    store = StoreAt(uri);
    EXPECT_EQ(Content(), "1");
    ExpectToTell([&] { Add("2"); }, Problem::NotAllowed, MessageNumber::ServerTakesNoWrites,
                 "during recovery");
    EXPECT_FALSE(store->Connection().MayWrite());
}

TEST_F(CallFailures, AReaderMayNotWrite) {
    Create();
    Grant(*server, "reader", "reader");
    uri = server->Uri("reader");
    store = StoreAt(uri);
    EXPECT_EQ(Content(), "1");
    ExpectToTell([&] { Add("2"); }, Problem::NotAllowed, MessageNumber::ServerForbids,
                 "permission denied");
    EXPECT_EQ(RevisionOf(*store), 1);
}

TEST_F(CallFailures, TheRepositoryIsRemovedMeanwhile) {
    Create();
    server->Run("DROP SCHEMA zebx CASCADE");
    ExpectToTell([&] { store->FileIds(4, u"001_LABEL"); }, Problem::Missing,
                 MessageNumber::NoTables, "does not exist");
}

TEST_F(CallFailures, TheServersFilesAreDamaged) {
    Create();
    const fs::path table =
        server->Data() / server->Run("SELECT pg_relation_filepath('zebx.stored_file')");
    server->Stop();
    {
        std::fstream file(table, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(8000);
        file.put('\x55');
    }
    server->Start();
    store = StoreAt(uri);
    ExpectToTell([&] { store->FileIds(4, u"001_LABEL"); }, Problem::Integrity,
                 MessageNumber::ServerDamaged, "invalid page");
}

// The server keeps the call and dies before it can say so.
TEST_F(CallFailures, WhetherACommitWasKeptIsNotKnownAndTheSameCallAgainIsRight) {
    Create();
    server->Run("ALTER SYSTEM SET synchronous_standby_names = 'nobody'");
    server->Restart();
    store = StoreAt(uri);
    std::thread killer([&] {
        // Commits wait for the standby that never comes.
        while (server->Run("SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'SyncRep'") !=
               "1")
            std::this_thread::yield();
        server->Kill();
    });
    const auto error = ErrorOf([&] { Add("2"); });
    killer.join();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Unreachable);
    EXPECT_THAT(NumbersOf(*error), testing::ElementsAre(MessageNumber::CommitUnanswered));
    server->Start();
    server->Run("ALTER SYSTEM RESET synchronous_standby_names");
    server->Restart();
    store = StoreAt(uri);
    EXPECT_EQ(RevisionOf(*store), 2);
    Add("2");
    EXPECT_EQ(RevisionOf(*store), 2);
    EXPECT_EQ(Content(), "2");
}

} // namespace
} // namespace Storage
