// SPDX-License-Identifier: MIT
// Who may do what with a repository on a server, on the server's own word.
#include "storage/postgres/PostgresRights.h"
#include "ServerRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

const std::vector<std::string> kTables = {
    "head",        "revision",         "content",         "kind",
    "stored_file", "general_settings", "repository_item", "catalogue_item"};

class PostgresRights : public ServerRepository {
protected:
    void SetUp() override {
        ServerRepository::SetUp();
        if (IsSkipped())
            return;
        Create();
        reader = schema.MakeUser("ana");
        admin = schema.MakeUser("iva");
        stranger = schema.MakeUser("eva");
        Grant(reader, Right::Reader);
        Grant(admin, Right::Admin);
        const auto store = OpenStore();
        store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "2")});
        store->SaveGeneralSettings(u"<gs/>", {}, u"");
    }

    void Grant(const std::string& user, Right right, const std::string& by = "keeper") const {
        GrantRight(*OpenRepository(At(by)), Platform::FromUtf8(user), right);
    }
    std::optional<StorageError> GrantError(const std::string& user, Right right,
                                           const std::string& by = "keeper") const {
        return ErrorOf([&] { Grant(user, right, by); });
    }
    std::map<std::string, Right> Users(const std::string& by = "keeper") const {
        std::map<std::string, Right> users;
        for (const RepositoryUser& each : UsersOf(*OpenRepository(At(by))))
            users[Platform::ToUtf8(each.name)] = each.right;
        return users;
    }
    // All that stands in the tables, and what is granted.
    std::string Everything() const {
        std::string sql;
        for (const std::string& table : kTables)
            sql += (sql.empty() ? "SELECT " : " || ") +
                   ("(SELECT COALESCE(string_agg(t::text, '|' ORDER BY t::text), '') FROM " +
                    Table(table) + " t)");
        sql += " || (SELECT string_agg(concat(c.relname, c.relkind) || COALESCE(c.relacl::text, "
               "''), '|' "
               "ORDER BY c.relname) FROM pg_class c WHERE c.relnamespace = '" +
               schema.Name() + "'::regnamespace)";
        return TestServer::Shared().Run(sql);
    }
    // What no user of a repository may do, whatever his right.
    std::vector<std::string> Forbidden() const;
    void ExpectForbidden(const std::string& user, const std::vector<std::string>& statements) const;

    std::string reader;
    std::string admin;
    std::string stranger;
};

std::vector<std::string> PostgresRights::Forbidden() const {
    std::vector<std::string> statements;
    for (const std::string& table : kTables)
        for (const char* statement :
             {"DELETE FROM {}", "TRUNCATE {} CASCADE", "DROP TABLE {} CASCADE",
              "ALTER TABLE {} ADD COLUMN x int", "ALTER TABLE {} DISABLE TRIGGER ALL",
              "ALTER TABLE {} OWNER TO CURRENT_USER", "CREATE INDEX ON {} ((1))",
              ("CREATE TRIGGER t BEFORE INSERT ON {} EXECUTE FUNCTION "
               "suppress_redundant_updates_trigger()"),
              "CREATE RULE r AS ON INSERT TO {} DO INSTEAD NOTHING", "CREATE POLICY p ON {}",
              "COMMENT ON TABLE {} IS 'mine'"}) {
            std::string text = statement;
            text.replace(text.find("{}"), 2, Table(table));
            statements.push_back(text);
        }
    const std::string& name = schema.Name();
    for (const std::string& statement : std::vector<std::string>{
             "CREATE TABLE " + name + ".mine (x int)",
             "CREATE VIEW " + name + ".mine AS SELECT 1",
             "CREATE SEQUENCE " + name + ".mine",
             "CREATE FUNCTION " + name + ".f() RETURNS int LANGUAGE sql AS 'SELECT 1'",
             "CREATE TYPE " + name + ".mine AS (x int)",
             "DROP SCHEMA " + name + " CASCADE",
             "ALTER SCHEMA " + name + " RENAME TO mine",
             "SET ROLE keeper",
             "SET ROLE postgres",
             "SET SESSION AUTHORIZATION keeper",
             "ALTER ROLE CURRENT_USER CREATEROLE",
             "CREATE ROLE " + name + "_mine",
             "ALTER ROLE " + name + "_reader LOGIN",
             "DROP ROLE " + name + "_admin",
             "GRANT " + name + "_admin TO " + stranger,
             "GRANT " + name + "_reader TO " + stranger,
             "REVOKE " + name + "_reader FROM " + reader,
             "REASSIGN OWNED BY keeper TO CURRENT_USER",
             "DROP OWNED BY keeper",
             "UPDATE " + Table("head") + " SET schema_version = 9",
             "INSERT INTO " + Table("head") + " VALUES (2, 2, 0, 0, 0)",
             "UPDATE " + Table("content") + " SET bytes = 'x'",
             "UPDATE " + Table("revision") + " SET user_name = 'x'",
             "UPDATE " + Table("stored_file") + " SET name = 'x'",
             "UPDATE " + Table("kind") + " SET kind_id = 'x'",
             "UPDATE " + Table("general_settings") + " SET name = 'x'",
             "UPDATE " + Table("repository_item") + " SET name = 'x'",
             "UPDATE " + Table("catalogue_item") + " SET name = 'x'",
             std::string("SET session_replication_role = replica"),
             "COPY " + Table("content") + " TO '/tmp/" + name + "'",
             "COPY " + Table("content") + " TO PROGRAM 'cat'"})
        statements.push_back(statement);
    return statements;
}

void PostgresRights::ExpectForbidden(const std::string& user,
                                     const std::vector<std::string>& statements) const {
    const std::string before = Everything();
    for (const std::string& statement : statements)
        EXPECT_THAT(ComplaintOf(user, statement),
                    AnyOf(HasSubstr("permission denied"), HasSubstr("must be owner"),
                          HasSubstr("must be superuser"), HasSubstr("must be member"),
                          HasSubstr("must have admin option")))
            << statement;
    EXPECT_EQ(Everything(), before);
}

TEST_F(PostgresRights, ReadersReadEverything) {
    const auto store = OpenStore(reader);
    const auto ids = store->FileIds(4, u"001_LABEL");
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(BytesOf(store->File(ids[0])), "1");
    EXPECT_EQ(store->LoadGeneralSettings(u"")->xml, u"<gs/>");
    EXPECT_EQ(store->Revisions(0, 9).size(), 2u);
    CheckCounts counts;
    store->Check([](const Message&, const Message&) { ADD_FAILURE(); }, counts);
    EXPECT_EQ(counts.files, 2);
    EXPECT_FALSE(store->Connection().MayWrite());
}

TEST_F(PostgresRights, ReadersDoNothingElseWhateverStatementTheyWrite) {
    std::vector<std::string> statements = Forbidden();
    for (const std::string& table : kTables) {
        statements.push_back("INSERT INTO " + Table(table) + " SELECT * FROM " + Table(table));
        statements.push_back("SELECT 1 FROM " + Table(table) + " FOR UPDATE");
        statements.push_back("SELECT 1 FROM " + Table(table) + " FOR KEY SHARE");
        statements.push_back("BEGIN; LOCK TABLE " + Table(table) + " IN ROW EXCLUSIVE MODE");
        statements.push_back("BEGIN; LOCK TABLE " + Table(table) + " IN ACCESS EXCLUSIVE MODE");
        statements.push_back("COPY " + Table(table) + " FROM PROGRAM 'true'");
    }
    for (const char* column : {"revision", "last_id", "content_bytes"})
        statements.push_back("UPDATE " + Table("head") + " SET " + column + " = 0");
    for (const char* table :
         {"kind", "stored_file", "general_settings", "repository_item", "catalogue_item"})
        statements.push_back("UPDATE " + Table(table) + " SET until_revision = 2");
    statements.push_back("SET ROLE " + schema.Name() + "_admin");
    ExpectForbidden(reader, statements);
}

TEST_F(PostgresRights, WhatAReaderGivesOnIsNothing) {
    const std::string before = Everything();
    (void)ComplaintOf(reader, "GRANT ALL ON ALL TABLES IN SCHEMA " + schema.Name() + " TO PUBLIC");
    (void)ComplaintOf(reader, "GRANT ALL ON SCHEMA " + schema.Name() + " TO PUBLIC");
    EXPECT_EQ(Everything(), before);
    EXPECT_THAT(ComplaintOf(stranger, "SELECT 1 FROM " + Table("head")),
                HasSubstr("permission denied"));
}

TEST_F(PostgresRights, AReadersCallsAreRefusedByTheStoreToo) {
    const std::string before = Everything();
    const auto store = OpenStore(reader);
    EXPECT_EQ(ProblemOf([&] { store->AddFiles({MakeFile(u"c.dwg", "3")}); }), Problem::NotAllowed);
    EXPECT_EQ(ProblemOf([&] { store->SaveGeneralSettings(u"<x/>", {}, u""); }),
              Problem::NotAllowed);
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 2u);
    EXPECT_EQ(Everything(), before);
}

TEST_F(PostgresRights, AdministratorsWriteThroughTheStore) {
    const auto store = OpenStore(admin);
    EXPECT_TRUE(store->Connection().MayWrite());
    store->RegisterContent(4, u"002_NODE", 5);
    store->AddFiles({MakeFile(u"a.dwg", "other"), MakeFile(u"c.dwg", "3")});
    store->SaveGeneralSettings(u"<new/>", {}, u"");
    const auto ids = store->FileIds(4, u"001_LABEL");
    ASSERT_EQ(ids.size(), 3u);
    EXPECT_EQ(BytesOf(store->File(ids[0])), "other");
    EXPECT_EQ(store->Revisions(0, 9).size(), 5u);
}

TEST_F(PostgresRights, AdministratorsOverwriteAndRemoveNothingWhateverStatementTheyWrite) {
    ExpectForbidden(admin, Forbidden());
}

TEST_F(PostgresRights, AStrangerSeesNothing) {
    const auto error = ErrorOf([&] { OpenRepository(At(stranger)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::NotAllowed);
    std::vector<std::string> statements = Forbidden();
    for (const std::string& table : kTables)
        statements.push_back("SELECT 1 FROM " + Table(table));
    statements.push_back("SET ROLE " + schema.Name() + "_reader");
    ExpectForbidden(stranger, statements);
}

TEST_F(PostgresRights, OnlyAdministratorsAndTheMakerMayWriteSaysTheServer) {
    EXPECT_TRUE(OpenRepository(At())->MayWrite());
    EXPECT_TRUE(OpenRepository(At(admin))->MayWrite());
    EXPECT_FALSE(OpenRepository(At(reader))->MayWrite());
    const auto open = OpenRepository(At(admin));
    Grant(admin, Right::Reader);
    EXPECT_FALSE(open->MayWrite());
}

TEST_F(PostgresRights, EachUserIsListedWithHisRight) {
    const auto users = Users();
    EXPECT_EQ(users.at(reader), Right::Reader);
    EXPECT_EQ(users.at(admin), Right::Admin);
    EXPECT_EQ(users.at("keeper"), Right::Admin);
    EXPECT_EQ(users.at("postgres"), Right::Admin);
    EXPECT_FALSE(users.contains(stranger));
    EXPECT_FALSE(users.contains(schema.Name() + "_reader"));
    EXPECT_EQ(Users(reader), users);
}

TEST_F(PostgresRights, AGrantedRightIsTheOnlyOne) {
    Grant(reader, Right::Admin);
    EXPECT_EQ(Users().at(reader), Right::Admin);
    Grant(reader, Right::Reader);
    EXPECT_EQ(Users().at(reader), Right::Reader);
    EXPECT_EQ(ProblemOf([&] { OpenStore(reader)->AddFiles({MakeFile(u"c", "3")}); }),
              Problem::NotAllowed);
    Grant(reader, Right::None);
    EXPECT_FALSE(Users().contains(reader));
    EXPECT_EQ(ProblemOf([&] { OpenRepository(At(reader)); }), Problem::NotAllowed);
    Grant(reader, Right::None);
}

TEST_F(PostgresRights, AUserWhomTheServerDoesNotKnowIsRefusedByName) {
    for (const std::string& user :
         {schema.Name() + "_nobody", std::string("public"),
          std::string("x\"; DROP SCHEMA " + schema.Name() + " CASCADE; --")}) {
        const auto error = GrantError(user, Right::Reader);
        ASSERT_TRUE(error) << user;
        EXPECT_EQ(error->Kind(), Problem::Refused);
        EXPECT_EQ(error->Messages()[0].number, MessageNumber::NoSuchUser);
        EXPECT_EQ(error->Messages()[0].values.at(1), Platform::FromUtf8(user));
    }
    EXPECT_EQ(Users().at(reader), Right::Reader);
}

TEST_F(PostgresRights, ANameWithQuotesAndBlanksIsAName) {
    const std::string odd = schema.Name() + "_O\"Čvor; x";
    TestServer::Shared().Run("CREATE ROLE \"" + schema.Name() + "_O\"\"Čvor; x\" LOGIN");
    Grant(odd, Right::Reader);
    EXPECT_EQ(Users().at(odd), Right::Reader);
}

TEST_F(PostgresRights, WhoMayNotGrantIsToldWhoMay) {
    for (const std::string& user : {reader, admin}) {
        const auto error = GrantError(stranger, Right::Reader, user);
        ASSERT_TRUE(error) << user;
        EXPECT_EQ(error->Kind(), Problem::NotAllowed);
        EXPECT_EQ(error->Messages()[0].number, MessageNumber::MayNotGrant);
    }
    EXPECT_FALSE(Users().contains(stranger));
}

TEST_F(PostgresRights, ARightThatTheServerWouldNotTakeAwayIsNotSaidToBeGone) {
    const auto error = GrantError("postgres", Right::None);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Refused);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::OtherRight);
    EXPECT_THAT(error->Messages()[0].values, testing::ElementsAre(u"postgres", u"none", u"admin"));
    EXPECT_EQ(TestServer::Shared().Run("SELECT count(*) FROM pg_auth_members m JOIN pg_roles r ON "
                                       "r.oid = m.member WHERE r.rolname = 'postgres' AND "
                                       "m.roleid = '" +
                                       schema.Name() + "_reader'::regrole"),
              "0");
}

TEST_F(PostgresRights, AGroupOfTheServersOwnIsGrantedForItsMembers) {
    const std::string group = schema.Name() + "_office";
    TestServer::Shared().Run("CREATE ROLE " + group + " NOLOGIN; GRANT " + group + " TO " +
                             stranger);
    Grant(group, Right::Reader);
    EXPECT_EQ(Users().at(group), Right::Reader);
    EXPECT_EQ(Users().at(stranger), Right::Reader);
    EXPECT_EQ(OpenStore(stranger)->FileIds(4, u"001_LABEL").size(), 2u);
}

TEST_F(PostgresRights, MakingItAgainRestoresWhatWasTakenAndTakesWhatWasAdded) {
    const std::string before = Everything();
    TestServer::Shared().Run("REVOKE SELECT ON " + Table("content") + " FROM " + schema.Name() +
                             "_reader; REVOKE INSERT ON " + Table("kind") + " FROM " +
                             schema.Name() + "_admin; GRANT DELETE ON " + Table("kind") + " TO " +
                             schema.Name() + "_reader; GRANT ALL ON " + Table("head") +
                             " TO PUBLIC");
    EXPECT_NE(Everything(), before);
    Create();
    ExpectForbidden(reader, Forbidden());
    const auto store = OpenStore(reader);
    EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "1");
    OpenStore(admin)->RegisterContent(4, u"003", 5);
}

TEST_F(PostgresRights, MakingItAgainMakesARoleThatIsGone) {
    const std::string role = schema.Name() + "_reader";
    TestServer::Shared().Run("DROP OWNED BY " + role + "; DROP ROLE " + role);
    const auto error = GrantError(reader, Right::Reader);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::NoGroupRoles);
    Create();
    Grant(reader, Right::Reader);
    EXPECT_EQ(OpenStore(reader)->FileIds(4, u"001_LABEL").size(), 2u);
}

TEST_F(PostgresRights, MakingItAgainHarmsNothingWhoeverDoesIt) {
    const std::string before = Everything();
    for (const std::string& user :
         {std::string("keeper"), admin, reader, std::string("postgres")}) {
        CreateRepository(At(user));
        EXPECT_EQ(Everything(), before) << user;
    }
}

TEST_F(PostgresRights, TwoRepositoriesOfOneDatabaseKnowNothingOfEachOther) {
    const TestSchema other;
    const Address there = ParseAddress(Platform::FromUtf8(other.Uri()), {});
    CreateRepository(there);
    StoreOptions options;
    options.stamp = [] { return Stamp{u"now", u"x", u"y", u"z"}; };
    Store(OpenRepository(there), options).RegisterContent(4, u"009", 1);
    EXPECT_EQ(OpenStore()->Revisions(0, 9).size(), 2u);
    EXPECT_EQ(OpenStore(reader)->FileIds(4, u"001_LABEL").size(), 2u);
    const std::string user = Platform::ToUtf8(Platform::FromUtf8(reader));
    EXPECT_EQ(
        ProblemOf([&] { OpenRepository(ParseAddress(Platform::FromUtf8(other.Uri(user)), {})); }),
        Problem::NotAllowed);
    EXPECT_THAT(ComplaintOf(admin, "SELECT 1 FROM " + other.Name() + ".head"),
                HasSubstr("permission denied"));
}

} // namespace
} // namespace Storage
