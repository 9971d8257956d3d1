// SPDX-License-Identifier: MIT
// The server engine as a connection: what waits, what does not, and who is told of an error.
#include "../TestFiles.h"
#include "../TestRepository.h"

#include "storage/postgres/PostgresConnection.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;

class PostgresConnectionTest : public testing::Test {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        schema = std::make_unique<TestSchema>();
        CreateRepository(Place());
        sql = OpenRepository(Place());
    }
    Address Place(const std::string& user = "keeper") const {
        return {.server = Platform::FromUtf8(schema->Uri(user))};
    }
    std::vector<std::int64_t> Numbers(SqlRows& rows) {
        std::vector<std::int64_t> numbers;
        while (rows.Next())
            numbers.push_back(rows.Integer(0));
        return numbers;
    }
    std::unique_ptr<TestSchema> schema;
    std::unique_ptr<SqlConnection> sql;
};

TEST_F(PostgresConnectionTest, ResultsMayBeReadInAnyOrder) {
    const auto first = sql->Query("SELECT g FROM generate_series(1, 3) g", {});
    const auto second = sql->Query("SELECT g FROM generate_series(10, 12) g", {});
    EXPECT_THAT(Numbers(*second), ElementsAre(10, 11, 12));
    ASSERT_TRUE(first->Next());
    const auto third = sql->Query("SELECT 20", {});
    EXPECT_THAT(Numbers(*third), ElementsAre(20));
    EXPECT_THAT(Numbers(*first), ElementsAre(2, 3));
}

TEST_F(PostgresConnectionTest, OneStatementMayBeOpenSeveralTimes) {
    const auto ask = [&](std::int64_t number) {
        return sql->Query("SELECT CAST($1 AS BIGINT)", {number});
    };
    const auto first = ask(1);
    const auto second = ask(2);
    EXPECT_THAT(Numbers(*second), ElementsAre(2));
    EXPECT_THAT(Numbers(*first), ElementsAre(1));
}

TEST_F(PostgresConnectionTest, AResultOutlivesTheTransactionsAfterIt) {
    const auto rows = sql->Query("SELECT g FROM generate_series(1, 3) g", {});
    sql->BeginWrite();
    sql->Execute("UPDATE head SET revision = revision WHERE id = $1", {1});
    sql->Commit();
    EXPECT_THAT(Numbers(*rows), ElementsAre(1, 2, 3));
}

TEST_F(PostgresConnectionTest, AResultThatNobodyReadsIsNobodysTrouble) {
    (void)sql->Query("SELECT g FROM generate_series(1, 100000) g", {});
    (void)sql->Query("SELECT 1 / (g - 2) FROM generate_series(1, 3) g", {});
    EXPECT_THAT(Numbers(*sql->Query("SELECT 7", {})), ElementsAre(7));
}

TEST_F(PostgresConnectionTest, EveryKindOfValueComesBackAsItWas) {
    const std::string bytes("\0\xFF\x80", 3);
    const auto rows =
        sql->Query("SELECT CAST($1 AS BIGINT), CAST($2 AS BIGINT), $3, $4, "
                   "CAST($5 AS BIGINT), CAST(-2 AS SMALLINT), CAST(-3 AS INTEGER), "
                   "true, false",
                   {std::int64_t(-1), std::int64_t(1) << 62, "Čvor", SqlBytes(bytes), nullptr});
    ASSERT_TRUE(rows->Next());
    EXPECT_EQ(rows->Integer(0), -1);
    EXPECT_EQ(rows->Integer(1), std::int64_t(1) << 62);
    EXPECT_EQ(rows->Text(2), "Čvor");
    EXPECT_EQ(rows->Bytes(3), bytes);
    EXPECT_TRUE(rows->IsNull(4));
    EXPECT_EQ(rows->Integer(5), -2);
    EXPECT_EQ(rows->Integer(6), -3);
    EXPECT_EQ(rows->Integer(7), 1);
    EXPECT_EQ(rows->Integer(8), 0);
}

TEST_F(PostgresConnectionTest, AStatementThatFailedIsToldAtTheLatestByTheCommit) {
    sql->BeginWrite();
    sql->Execute("INSERT INTO revision VALUES ($1, '', '', '', '', '', '')", {1});
    sql->Execute("INSERT INTO revision VALUES ($1, '', '', '', '', '', '')", {1});
    sql->Execute("UPDATE head SET revision = $1", {1});
    const auto error = ErrorOf([&] { sql->Commit(); });
    ASSERT_TRUE(error);
    // The first reason, not that the rest was not done either.
    EXPECT_EQ(error->Messages().at(0).number, MessageNumber::ServerRefusedStatement);
    EXPECT_THAT(Platform::ToUtf8(error->Messages().at(0).values.at(1)),
                testing::HasSubstr("duplicate key"));
    EXPECT_THAT(Numbers(*sql->Query("SELECT revision FROM head", {})), ElementsAre(0));
}

TEST_F(PostgresConnectionTest, OrByTheNextRow) {
    sql->BeginWrite();
    sql->Execute("INSERT INTO revision VALUES ($1, NULL, '', '', '', '', '')", {1});
    const auto rows = sql->Query("SELECT COUNT(*) FROM revision", {});
    const auto error = ErrorOf([&] { rows->Next(); });
    ASSERT_TRUE(error);
    EXPECT_THAT(Platform::ToUtf8(error->Messages().at(0).values.at(1)),
                testing::HasSubstr("made_at"));
    sql->Rollback();
}

TEST_F(PostgresConnectionTest, AStatementThatWasSkippedBehindAnErrorRunsTheNextTime) {
    const auto count = [&] { return sql->Query("SELECT COUNT(*) FROM kind WHERE id > $1", {0}); };
    sql->BeginWrite();
    sql->Execute("INSERT INTO revision VALUES ($1, NULL, '', '', '', '', '')", {1});
    const auto skipped = count();
    EXPECT_TRUE(ErrorOf([&] { skipped->Next(); }));
    sql->Rollback();
    EXPECT_THAT(Numbers(*count()), ElementsAre(0));
}

TEST_F(PostgresConnectionTest, AFailedQueryLeavesNoTraceInTheNextTransaction) {
    const auto failed = sql->Query("SELECT 1 / (CAST($1 AS BIGINT) - 1)", {1});
    EXPECT_TRUE(ErrorOf([&] { failed->Next(); }));
    sql->BeginWrite();
    sql->Execute("INSERT INTO revision VALUES ($1, '', '', '', '', '', '')", {1});
    EXPECT_FALSE(ErrorOf([&] { sql->Commit(); }));
    EXPECT_THAT(Numbers(*sql->Query("SELECT COUNT(*) FROM revision", {})), ElementsAre(1));
}

TEST_F(PostgresConnectionTest, ContentsLargerThanAnyBufferGoAndCome) {
    std::string bytes;
    bytes.resize(40'000'000, 'x');
    sql->BeginWrite();
    for (char hash : {'a', 'b', 'c'})
        sql->Execute("INSERT INTO content VALUES ($1, $2, $3)",
                     {SqlBytes({&hash, 1}), std::int64_t(bytes.size()), SqlBytes(bytes)});
    sql->Commit();
    const auto rows = sql->Query("SELECT bytes FROM content", {});
    int count = 0;
    for (; rows->Next(); ++count)
        EXPECT_TRUE(rows->Bytes(0) == bytes);
    EXPECT_EQ(count, 3);
}

TEST_F(PostgresConnectionTest, TablesOfThatNameElsewhereAreNotLookedAt) {
    sql->RunScript("CREATE TEMPORARY TABLE head AS SELECT CAST(99 AS BIGINT) AS revision");
    EXPECT_THAT(Numbers(*sql->Query("SELECT revision FROM head", {})), ElementsAre(0));
}

TEST_F(PostgresConnectionTest, AScriptFailsWhole) {
    EXPECT_TRUE(ErrorOf(
        [&] { sql->RunScript("CREATE TABLE one (id BIGINT); CREATE TABLE one (id BIGINT)"); }));
    EXPECT_THAT(Numbers(*sql->Query("SELECT COUNT(*) FROM pg_class WHERE relname = 'one'", {})),
                ElementsAre(0));
}

TEST_F(PostgresConnectionTest, TheServersAdministratorsSeeWhoIsConnected) {
    Address place = Place();
    place.application = u"zebx 1.2.3 push";
    const auto named = OpenRepository(place);
    EXPECT_EQ(named->DescribeServer().application, u"zebx 1.2.3 push");
    EXPECT_EQ(TestServer::Shared().Run("SELECT COUNT(*) FROM pg_stat_activity "
                                       "WHERE application_name = 'zebx 1.2.3 push'"),
              "1");
}

TEST_F(PostgresConnectionTest, AnApplicationThatTheAddressNamesWins) {
    Address place = Place();
    place.server += u"&application_name=office";
    place.application = u"zebx 1.2.3 push";
    EXPECT_EQ(OpenRepository(place)->DescribeServer().application, u"office");
}

TEST_F(PostgresConnectionTest, AServerThatSaysNothingIsGivenUp) {
    const auto quick = OpenPostgres(Place(), {.silenceTimeoutMs = 200});
    const auto rows = quick->Query("SELECT pg_sleep(30)", {});
    const auto error = ErrorOf([&] { rows->Next(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Unreachable);
    EXPECT_EQ(error->Messages().at(0).number, MessageNumber::ServerSilent);
    EXPECT_FALSE(quick->IsAlive());
}

TEST_F(PostgresConnectionTest, AWriterWaitsForAnotherOnlySoLong) {
    const auto quick = OpenPostgres(Place(), {.busyTimeoutMs = 100});
    sql->BeginWrite();
    sql->Query("UPDATE head SET revision = revision WHERE id = 1 RETURNING revision", {})->Next();
    quick->BeginWrite();
    const auto rows =
        quick->Query("UPDATE head SET revision = revision WHERE id = 1 RETURNING revision", {});
    const auto error = ErrorOf([&] { rows->Next(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Busy);
    quick->Rollback();
    sql->Rollback();
    EXPECT_TRUE(quick->IsAlive());
}

TEST_F(PostgresConnectionTest, ACommitOfAnotherConnectionBecomesKnownWithoutAsking) {
    const auto other = OpenRepository(Place());
    sql->WatchChanges();
    EXPECT_FALSE(sql->WasChanged());
    other->BeginWrite();
    other->Execute("UPDATE head SET revision = $1", {5});
    other->Commit();
    // The server tells on its own; a question that it answers comes after.
    const auto answered = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!sql->WasChanged() && std::chrono::steady_clock::now() < answered)
        sql->Query("SELECT 1", {})->Next();
    EXPECT_TRUE(sql->WasChanged());
    sql->WatchChanges();
    EXPECT_FALSE(sql->WasChanged());
}

TEST_F(PostgresConnectionTest, AReadOrACallThatWasUndoneIsNoChange) {
    const auto other = OpenRepository(Place());
    sql->WatchChanges();
    {
        const ReadTransaction read(*other);
        other->Query("SELECT revision FROM head", {})->Next();
    }
    other->BeginWrite();
    other->Execute("UPDATE head SET revision = $1", {5});
    other->Rollback();
    sql->Query("SELECT 1", {})->Next();
    EXPECT_FALSE(sql->WasChanged());
}

} // namespace
} // namespace Storage
