// SPDX-License-Identifier: MIT
// The tests' own server is what the tests rely on.
#include "support/TestServer.h"

#include <csignal>
#include <sys/stat.h>

namespace {

class TheTestsServer : public testing::Test {
protected:
    void SetUp() override { ZEBX_NEEDS_SERVER(); }
};

TEST_F(TheTestsServer, IsAnOrdinaryUsersAndHasAKeeperWhoIsNoSuperuser) {
    const TestServer& server = TestServer::Shared();
    struct stat folder {};
    ASSERT_EQ(stat((server.Folder() + "/data").c_str(), &folder), 0);
    EXPECT_NE(folder.st_uid, 0u);
    EXPECT_EQ(RunAt(server.Uri(), "SELECT current_user || ' ' || current_database()"),
              "keeper gis");
    EXPECT_EQ(RunAt(server.Uri(), "SHOW is_superuser"), "off");
    EXPECT_EQ(server.Run("SHOW server_encoding"), "UTF8");
}

TEST_F(TheTestsServer, GivesEachTestASchemaOfItsOwnAndTakesItAwayAgain) {
    std::string name;
    {
        const TestSchema schema, another;
        EXPECT_NE(schema.Name(), another.Name());
        name = schema.Name();
        EXPECT_EQ(RunAt(schema.Uri(), "SHOW zebx.schema"), name);
        RunAt(schema.Uri(), "CREATE SCHEMA " + name + "; CREATE TABLE " + name + ".t(); " +
                                "CREATE ROLE " + name + "_reader; GRANT USAGE ON SCHEMA " + name +
                                " TO " + name + "_reader");
        EXPECT_EQ(RunAt(schema.Uri(schema.MakeUser("ana")), "SELECT 1"), "1");
    }
    const TestServer& server = TestServer::Shared();
    EXPECT_EQ(server.Run("SELECT count(*) FROM pg_namespace WHERE nspname = '" + name + "'"), "0");
    EXPECT_EQ(server.Run("SELECT count(*) FROM pg_roles WHERE rolname LIKE '" + name + "%'"), "0");
}

TEST_F(TheTestsServer, ComesBackAfterItWasStoppedOrKilled) {
    PrivateServer server;
    server.Run("CREATE TABLE t(n int)");
    server.Restart();
    server.Run("INSERT INTO t VALUES (7)");
    server.Kill();
    EXPECT_ANY_THROW(server.Run("SELECT 1"));
    server.Start();
    EXPECT_EQ(RunAt(server.TcpUri("postgres"), "SELECT n FROM t"), "7");
}

TEST_F(TheTestsServer, HasStandbysThatCanTakeItsPlace) {
    PrivateServer primary(
        {.settings = {"synchronous_standby_names = '*'", "synchronous_commit = local"}});
    PrivateServer standby({.upstream = primary.Uri("postgres")});
    primary.Run("SET synchronous_commit = on; CREATE TABLE t(n int); INSERT INTO t VALUES (7)");
    EXPECT_EQ(standby.Run("SELECT pg_is_in_recovery()"), "t");
    primary.Kill();
    standby.Promote();
    EXPECT_EQ(standby.Run("INSERT INTO t VALUES (8) RETURNING n"), "8");
    EXPECT_EQ(standby.Run("SELECT sum(n) FROM t"), "15");
}

TEST_F(TheTestsServer, AnswersNothingWhileItIsFrozen) {
    const PrivateServer server;
    server.Freeze();
    EXPECT_ANY_THROW(RunAt(server.TcpUri() + "&connect_timeout=2", "SELECT 1"));
    server.Thaw();
    EXPECT_EQ(RunAt(server.TcpUri(), "SELECT 1"), "1");
}

} // namespace
