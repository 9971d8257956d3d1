// SPDX-License-Identifier: MIT
// The exit statuses with which the program tells what a server's failure means for a script, and
// what is left of a transfer that broke.
#include "../Documents.h"
#include "../Running.h"
#include "ServerStation.h"
#include "support/SmallDisk.h"
#include "support/TlsAuthority.h"

#include <gmock/gmock.h>
#include <libpq-fe.h>

#include <csignal>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

class ServerStatus : public testing::Test {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        at = std::make_unique<ServerStation>();
        at->Connect();
        at->Draw("first");
    }
    // What went wrong, which server, and what to do.
    void Expect(const std::vector<std::string>& arguments, int status, const std::string& what,
                const std::string& toDo) const {
        const Ended run = at->station.Zebx(arguments);
        EXPECT_EQ(run.status, status) << run;
        EXPECT_THAT(run.err, AllOf(HasSubstr(what), HasSubstr(toDo),
                                   HasSubstr(std::to_string(at->server.Port()))));
    }
    std::size_t StoredFiles() const {
        const auto document = DocumentOf(at->station.Zebx({"ls", "--json"}));
        return document["result"]["files"].get<std::size_t>();
    }

    std::unique_ptr<ServerStation> at;
};

TEST_F(ServerStatus, AServerThatIsNotThereIsNotReachable) {
    at->server.Stop();
    Expect({"push"}, 4, "Connection refused", "Check the server's name and port");
    at->server.Start();
    EXPECT_EQ(at->Transfer("push").status, 0);
}

TEST_F(ServerStatus, AServerThatNeverAnswersIsNotReachable) {
    at->station.Set("PGCONNECT_TIMEOUT", "2");
    at->server.Freeze();
    Expect({"push"}, 4, "does not answer", "check the network");
    at->server.Thaw();
}

TEST_F(ServerStatus, APasswordThatIsWrongOrMissingIsNotAllowed) {
    at->WritePassword("another");
    Expect({"push"}, 5, "does not take the password", "~/.pgpass");
    fs::remove(at->PasswordFile());
    Expect({"push"}, 5, "there is none", "chmod 600 ~/.pgpass");
}

TEST_F(ServerStatus, ADatabaseThatIsNotThereIsNotReachable) {
    const std::string uri = "postgresql://keeper@127.0.0.1:" + std::to_string(at->server.Port()) +
                            "/nowhere?sslmode=disable";
    Expect({"connect", uri}, 4, "no such database", "createdb");
}

TEST_F(ServerStatus, AReaderWhoSendsIsNotAllowed) {
    at->server.Run(std::string("CREATE ROLE reader LOGIN PASSWORD '") + kPassword +
                   "'; GRANT zebx_reader TO reader");
    ASSERT_EQ(at->station.Zebx({"connect", at->server.TcpUri("reader")}).status, 0);
    EXPECT_EQ(at->station.Zebx({"status"}).status, 0);
    const Ended run = at->station.Zebx({"push"});
    EXPECT_EQ(run.status, 5) << run;
    EXPECT_EQ(StoredFiles(), 0u);
}

TEST_F(ServerStatus, ACertificateThatNobodyTrustsIsNotReachable) {
    const TlsAuthority authority, stranger;
    const auto tls = authority.Sign("db.example.org");
    const PrivateServer server({.certificate = tls.certificate, .key = tls.key});
    const Ended run =
        at->station.Zebx({"connect", server.TcpUri("keeper", {},
                                                   "&hostaddr=127.0.0.1&sslrootcert=" +
                                                       EncodedForUri(stranger.Certificate()),
                                                   "db.example.org")});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, HasSubstr("sslrootcert"));
}

TEST_F(ServerStatus, AStatementThatTakesTooLongIsNotReachable) {
    at->server.Run("ALTER ROLE keeper SET statement_timeout = 300");
    using Connection = std::unique_ptr<PGconn, decltype(&PQfinish)>;
    const Connection other(PQconnectdb(at->server.Uri("postgres").c_str()), &PQfinish);
    PQclear(PQexec(other.get(), "BEGIN; UPDATE zebx.head SET revision = revision"));
    Expect({"push"}, 4, "statement timeout", "Try again");
    PQclear(PQexec(other.get(), "ROLLBACK"));
    EXPECT_EQ(StoredFiles(), 0u);
    EXPECT_EQ(at->Transfer("push").status, 0);
}

// The disk is the server's, so that no file of this workstation is to blame.
TEST(AFullServer, IsARepositoryThatCannotBeUsed) {
    ZEBX_NEEDS_SERVER();
    const SmallDisk disk("size=6m");
    if (!disk.IsMounted())
        GTEST_SKIP() << "this process may mount no small disk";
    const ServerStation at;
    disk.HoldTablesOf("keeper", at.server);
    at.Connect();
    std::string large;
    for (unsigned n = 1; large.size() < 16'000'000; n = n * 1664525 + 1013904223)
        large.append(reinterpret_cast<const char*>(&n), sizeof n);
    Write(at.station.Support() / "nodes/large.dwg", large);
    const std::vector<std::string> push = {"push", "ncf:002_NODE"};
    const Ended full = at.station.Zebx(push);
    EXPECT_EQ(full.status, 4) << full;
    EXPECT_THAT(full.err, AllOf(HasSubstr("has no space left"), HasSubstr("make space there")));
    disk.Resize("size=64m");
    const Ended again = at.station.Zebx(push);
    EXPECT_EQ(again.status, 0) << again;
}

TEST_F(ServerStatus, APushThatBreaksHalfWayIsRunAgainAndEndsRight) {
    Running push(at->station, {"push", "ncf:001_LABEL", "ncf:002_NODE", "--progress", "always"});
    ASSERT_TRUE(push.WaitFor(" "));
    push.Signal(SIGSTOP);
    at->server.Kill();
    push.Signal(SIGCONT);
    const Ended broken = push.Finish();
    EXPECT_EQ(broken.status, 4) << broken;
    at->server.Start();
    const Ended again = at->Transfer("push");
    EXPECT_EQ(again.status, 0) << again;
    EXPECT_EQ(StoredFiles(), 40u);
    EXPECT_EQ(at->Transfer("diff").status, 0);
    // Nothing is left to send.
    const std::string revision = at->server.Run("SELECT max(number) FROM zebx.revision");
    EXPECT_EQ(at->Transfer("push").status, 0);
    EXPECT_EQ(at->server.Run("SELECT max(number) FROM zebx.revision"), revision);
}

} // namespace
