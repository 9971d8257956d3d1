// SPDX-License-Identifier: MIT
// Making a repository on a server, and bringing an older one up.
#include "ServerRepository.h"
#include "storage/store/Schema.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

class PostgresCreate : public ServerRepository {
protected:
    std::string Server(const std::string& sql) const { return TestServer::Shared().Run(sql); }
    bool IsThere() const {
        return Server("SELECT count(*) FROM pg_namespace WHERE nspname = '" + schema.Name() +
                      "'") != "0";
    }
    std::optional<StorageError> Error(const std::string& user) const {
        return ErrorOf([&] { CreateRepository(At(user)); });
    }
    // The tables as they were before they had indexes on their revisions.
    void MakeOld() const {
        std::string sql = "UPDATE " + Table("head") + " SET schema_version = 1";
        for (const char* table :
             {"kind", "stored_file", "general_settings", "repository_item", "catalogue_item"})
            for (const char* end : {"_since", "_until"})
                sql += "; DROP INDEX " + Table(table + std::string(end));
        Server(sql);
    }
    std::string Indexes() const {
        return Server("SELECT string_agg(indexdef, '|' ORDER BY indexname) FROM pg_indexes "
                      "WHERE schemaname = '" +
                      schema.Name() + "'");
    }
};

TEST_F(PostgresCreate, WhereThereIsNoneConnectingMakesNone) {
    const auto error = ErrorOf([&] { OpenRepository(At()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Missing);
    EXPECT_FALSE(IsThere());
}

TEST_F(PostgresCreate, NobodyHasToBeASuperuserAndWhatIsMissingIsToldWithTheStatementForIt) {
    const std::string maker = schema.MakeUser("maker");
    auto error = Error(maker);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::NotAllowed);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::MayNotMakeSchema);
    Server(Platform::ToUtf8(error->Messages()[0].values.at(2)));

    error = Error(maker);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::MayNotMakeRoles);
    EXPECT_FALSE(IsThere());
    Server(Platform::ToUtf8(error->Messages()[0].values.at(2)));

    EXPECT_FALSE(Error(maker));
    OpenStore(maker)->AddFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(Server("SELECT tableowner FROM pg_tables WHERE schemaname = '" + schema.Name() +
                     "' AND tablename = 'head'"),
              maker);
}

TEST_F(PostgresCreate, ASchemaOfSomebodyElseIsLeftAlone) {
    Server("CREATE SCHEMA " + schema.Name());
    const auto error = Error("keeper");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::NotAllowed);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::SchemaOfAnother);
    EXPECT_EQ(Server("SELECT count(*) FROM pg_class WHERE relnamespace = '" + schema.Name() +
                     "'::regnamespace"),
              "0");
}

TEST_F(PostgresCreate, ASchemaInWhichSomethingElseIsKeptIsLeftAlone) {
    Server("CREATE SCHEMA " + schema.Name() + " AUTHORIZATION keeper; CREATE TABLE " +
           Table("invoices") + " (x int)");
    const auto error = Error("keeper");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Configuration);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::SchemaInUse);
    EXPECT_EQ(Server("SELECT count(*) FROM pg_class WHERE relnamespace = '" + schema.Name() +
                     "'::regnamespace"),
              "1");
}

TEST_F(PostgresCreate, ASchemaThatIsReadyAndEmptyIsFilled) {
    Server("CREATE SCHEMA " + schema.Name() + " AUTHORIZATION keeper");
    EXPECT_FALSE(Error("keeper"));
    OpenStore()->AddFiles({MakeFile(u"a.dwg", "1")});
}

TEST_F(PostgresCreate, OneOfAnotherVersionIsUsedOrRefusedAsAFileIs) {
    Create();
    OpenStore()->AddFiles({MakeFile(u"a.dwg", "1")});
    MakeOld();
    const auto store = OpenStore();
    EXPECT_EQ(CheckSchema(store->Connection()), 1);
    store->AddFiles({MakeFile(u"b.dwg", "2")});
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 2u);
    Server("UPDATE " + Table("head") + " SET schema_version = 7");
    const auto error = ErrorOf([&] { OpenStore(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::NewerVersion);
    EXPECT_EQ(error->Messages()[0].values.at(1), u"7");
}

TEST_F(PostgresCreate, AnUpgradeMakesTheIndexesOfANewOneAndOnlyItsMakerMayDoIt) {
    Create();
    const std::string fresh = Indexes();
    MakeOld();
    ASSERT_NE(Indexes(), fresh);
    const std::string admin = schema.MakeUser("iva");
    Server("GRANT " + schema.Name() + "_admin TO " + admin);
    const auto error = ErrorOf([&] { UpgradeSchema(*OpenRepository(At(admin))); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::NotAllowed);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::MayNotUpgrade);
    EXPECT_EQ(error->Messages()[0].values.at(0), Platform::FromUtf8(admin));

    EXPECT_EQ(UpgradeSchema(*OpenRepository(At())), 1);
    EXPECT_EQ(CheckSchema(*OpenRepository(At(admin))), kSchemaVersion);
    EXPECT_EQ(Indexes(), fresh);
    EXPECT_EQ(UpgradeSchema(*OpenRepository(At(admin))), kSchemaVersion);
}

} // namespace
} // namespace Storage
