// SPDX-License-Identifier: MIT
// What the check says of a server's own side of a repository: nothing where all is as it was made,
// and of each change what is missing and what is not expected.
#include "storage/postgres/PostgresCheck.h"
#include "EnglishMessages.h"
#include "platform/text/Utf8.h"
#include "storage/Engine.h"
#include "support/TestServer.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class PostgresCheck : public testing::Test {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        schema = std::make_unique<TestSchema>();
        address.server = Platform::FromUtf8(schema->Uri());
        CreateRepository(address);
    }
    // As the owner, with the schema's own names in place of "reader", "admin" and "{schema}".
    void Run(std::string sql) const {
        for (const auto& [word, name] :
             {std::pair<std::string, std::string>("{schema}", schema->Name()),
              {"reader", schema->Name() + "_reader"},
              {"admin", schema->Name() + "_admin"}})
            for (auto at = sql.find(word); at != std::string::npos;
                 at = sql.find(word, at + name.size()))
                sql.replace(at, word.size(), name);
        TestServer::Shared().Run("SET search_path = \"" + schema->Name() + "\"; " + sql);
    }
    std::vector<std::string> Findings(const CString& server) const {
        std::vector<std::string> findings;
        EnglishMessages english;
        const auto sql = OpenRepository({.server = server});
        sql->CheckEngine([&](const Message& where, const Message& what) {
            findings.push_back(
                Platform::ToUtf8(TextOf(where, &english) + u": " + TextOf(what, &english)));
        });
        return findings;
    }
    std::vector<std::string> Findings() const { return Findings(address.server); }
    static std::string Lacks(const std::string& where, const std::string& what) {
        return where + ": It is missing on the server: " + what + ".";
    }
    static std::string HasMore(const std::string& where, const std::string& what) {
        return where + ": It is not expected on the server: " + what + ".";
    }

    const std::string kKind = "the table \"kind\"";
    const std::string kDatabase = "the whole database";
    std::unique_ptr<TestSchema> schema;
    Address address;
};

TEST_F(PostgresCheck, FindsNothingInANewRepository) {
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(PostgresCheck, FindsAsMuchForAReader) {
    const std::string reader = schema->MakeUser("_ana");
    Run("GRANT reader TO \"" + reader + "\"; ALTER TABLE kind ALTER COLUMN kind_id DROP NOT NULL");
    EXPECT_EQ(Findings(Platform::FromUtf8(schema->Uri(reader))), Findings());
    EXPECT_EQ(Findings().size(), 2U);
}

TEST_F(PostgresCheck, TellsColumnsThatChanged) {
    Run("ALTER TABLE kind ALTER COLUMN kind_id DROP NOT NULL;"
        "ALTER TABLE kind ALTER COLUMN message_number TYPE integer;"
        "ALTER TABLE kind ADD COLUMN mine text");
    EXPECT_THAT(Findings(), UnorderedElementsAre(Lacks(kKind, "kind_id text COLLATE C NOT NULL"),
                                                 HasMore(kKind, "kind_id text COLLATE C"),
                                                 Lacks(kKind, "message_number bigint NOT NULL"),
                                                 HasMore(kKind, "message_number integer NOT NULL"),
                                                 HasMore(kKind, "mine text")));
}

TEST_F(PostgresCheck, TellsConstraintsThatAreGoneOrNeverLookedAtTheRows) {
    Run("ALTER TABLE kind DROP CONSTRAINT kind_check;"
        "ALTER TABLE kind DROP CONSTRAINT kind_since_revision_fkey;"
        "ALTER TABLE kind ADD FOREIGN KEY (since_revision) REFERENCES revision (number) NOT VALID");
    const std::string key = "FOREIGN KEY (since_revision) REFERENCES revision(number)";
    EXPECT_THAT(Findings(),
                UnorderedElementsAre(Lacks(kKind, "CHECK ((until_revision > since_revision))"),
                                     Lacks(kKind, key), HasMore(kKind, key + " NOT VALID")));
}

TEST_F(PostgresCheck, TellsIndexesThatAreGoneOrNotValid) {
    const std::string current =
        "UNIQUE INDEX kind_current (content_code, kind_id) WHERE (until_revision IS NULL)";
    Run("DROP INDEX kind_since; UPDATE pg_index SET indisvalid = false "
        "WHERE indexrelid = 'kind_current'::regclass");
    EXPECT_THAT(Findings(),
                UnorderedElementsAre(Lacks(kKind, "INDEX kind_since (since_revision)"),
                                     Lacks(kKind, current), HasMore(kKind, current + " INVALID")));
}

TEST_F(PostgresCheck, TellsWhatWouldChangeTheMeaningOfWriting) {
    Run("CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NULL; END';"
        "CREATE TRIGGER mine BEFORE INSERT ON kind FOR EACH ROW EXECUTE FUNCTION f();"
        "CREATE RULE quiet AS ON INSERT TO revision DO INSTEAD NOTHING;"
        "ALTER TABLE stored_file ENABLE ROW LEVEL SECURITY;"
        "ALTER TABLE general_settings DISABLE TRIGGER ALL");
    EXPECT_THAT(Findings(),
                UnorderedElementsAre(
                    HasMore(kKind, "TRIGGER mine"), HasMore("the table \"revision\"", "RULE quiet"),
                    HasMore("the table \"stored_file\"", "ROW LEVEL SECURITY"),
                    HasMore("the table \"general_settings\"", "FOREIGN KEY DISABLED")));
}

TEST_F(PostgresCheck, TellsATableThatACrashWouldEmpty) {
    Run("ALTER TABLE kind SET UNLOGGED");
    EXPECT_THAT(Findings(), ElementsAre(HasMore(kKind, "UNLOGGED")));
}

TEST_F(PostgresCheck, TellsATableThatIsGoneOnce) {
    Run("DROP TABLE kind");
    EXPECT_THAT(Findings(), ElementsAre(Lacks(kKind, "TABLE")));
}

TEST_F(PostgresCheck, TellsWhatEverybodyAndTheGroupRolesMayBeyondTheirs) {
    Run("GRANT USAGE ON SCHEMA \"{schema}\" TO PUBLIC; GRANT SELECT ON kind TO PUBLIC;"
        "GRANT UPDATE (kind_id) ON kind TO \"reader\";"
        "GRANT DELETE ON kind TO \"admin\" WITH GRANT OPTION");
    EXPECT_THAT(Findings(),
                UnorderedElementsAre(HasMore(kDatabase, "PUBLIC: USAGE"),
                                     HasMore(kKind, "PUBLIC: SELECT"),
                                     HasMore(kKind, "reader: UPDATE (kind_id)"),
                                     HasMore(kKind, "admin: DELETE WITH GRANT OPTION")));
}

TEST_F(PostgresCheck, TellsRightsThatWereTakenAway) {
    Run("REVOKE SELECT ON kind FROM \"reader\"; REVOKE UPDATE (until_revision) ON kind "
        "FROM \"admin\"; ALTER ROLE \"reader\" LOGIN");
    EXPECT_THAT(Findings(), UnorderedElementsAre(Lacks(kKind, "reader: SELECT"),
                                                 Lacks(kKind, "admin: UPDATE (until_revision)"),
                                                 Lacks(kDatabase, "role reader"),
                                                 HasMore(kDatabase, "role reader LOGIN")));
    CreateRepository(address);
    EXPECT_THAT(Findings(), ElementsAre(Lacks(kDatabase, "role reader"),
                                        HasMore(kDatabase, "role reader LOGIN")));
}

TEST_F(PostgresCheck, LeavesRightsOfOthersToTheOwner) {
    const std::string other = schema->MakeUser("_backup");
    Run("GRANT SELECT ON ALL TABLES IN SCHEMA \"{schema}\" TO \"" + other + "\"");
    EXPECT_THAT(Findings(), IsEmpty());
}

} // namespace
} // namespace Storage
