// SPDX-License-Identifier: MIT
// Repositories that earlier programs made: used as they are, and brought to this program's tables.
#include "FaultySqlConnection.h"
#include "TestFiles.h"
#include "storage/Engine.h"
#include "storage/sqlite/SqliteConnection.h"
#include "storage/store/Schema.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace Storage {
namespace {

class SchemaUpgrade : public testing::Test {
protected:
    SchemaUpgrade() {
        std::ostringstream script;
        script << std::ifstream(ZEBX_TEST_DATA "/version_1.sql").rdbuf();
        CreateSqlite(old.path, [&](SqlConnection& sql) { sql.RunScript(script.str()); });
        CreateRepository(fresh);
    }
    static std::unique_ptr<Store> OpenStore(const Address& address) {
        StoreOptions options;
        options.stamp = [] { return Stamp{u"now", u"ana", u"here", u"test"}; };
        return std::make_unique<Store>(OpenRepository(address), std::move(options));
    }
    // Everything that the schema holds, as its own statements.
    static std::vector<std::string> DefinitionsOf(SqlConnection& sql) {
        std::vector<std::string> definitions;
        const auto rows = sql.Query("SELECT sql FROM sqlite_master WHERE sql IS NOT NULL "
                                    "ORDER BY name",
                                    {});
        while (rows->Next())
            definitions.emplace_back(rows->Text(0));
        return definitions;
    }

    TemporaryFolder folder;
    Address old = AddressOf(u"old.db");
    Address fresh = AddressOf(u"fresh.db");

private:
    Address AddressOf(CStringView name) const {
        Address address;
        address.path = folder.Path() + CString(name);
        return address;
    }
};

TEST_F(SchemaUpgrade, AnOlderRepositoryIsReadAndWrittenAsItIs) {
    const auto store = OpenStore(old);
    EXPECT_EQ(CheckSchema(store->Connection()), 1);
    EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "22");
    store->AddFiles({MakeFile(u"b.dwg", "333")});
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 2u);
    CheckCounts counts;
    store->Check([](const Message&, const Message&) { ADD_FAILURE(); }, counts);
    EXPECT_EQ(counts.files, 3);
    EXPECT_EQ(CheckSchema(store->Connection()), 1);
}

TEST_F(SchemaUpgrade, AfterwardsItsTablesAreThoseOfANewOneAndItsRowsAreThere) {
    const auto store = OpenStore(old);
    EXPECT_EQ(UpgradeSchema(store->Connection()), 1);
    EXPECT_EQ(CheckSchema(store->Connection()), kSchemaVersion);
    EXPECT_EQ(DefinitionsOf(store->Connection()), DefinitionsOf(*OpenRepository(fresh)));
    EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "22");
    EXPECT_EQ(store->Revisions(0, 9).size(), 2u);
    CheckCounts counts;
    store->Check([](const Message&, const Message&) { ADD_FAILURE(); }, counts);
}

TEST_F(SchemaUpgrade, ASecondOneFindsNothingToDo) {
    const auto connection = OpenRepository(old);
    EXPECT_EQ(UpgradeSchema(*connection), 1);
    EXPECT_EQ(UpgradeSchema(*connection), kSchemaVersion);
}

TEST_F(SchemaUpgrade, WhereverItIsCutShortTheRepositoryIsTheOldOne) {
    int faults = 0;
    for (;; ++faults) {
        ASSERT_LT(faults, 50);
        FaultPlan plan{.failAt = faults, .problem = Problem::Full};
        FaultySqlConnection faulty(OpenRepository(old), plan);
        const Problem problem = ProblemOf([&] { UpgradeSchema(faulty); });
        if (problem == Problem::None)
            break;
        EXPECT_EQ(problem, Problem::Full) << faults;
        EXPECT_EQ(CheckSchema(*OpenRepository(old)), 1) << faults;
    }
    // One at least for each of: question, begin, lock, script, version, commit.
    EXPECT_GE(faults, 6);
    EXPECT_EQ(CheckSchema(*OpenRepository(old)), kSchemaVersion);
}

TEST_F(SchemaUpgrade, ItWaitsForAWriterAndGivesUpWhenThatOneStays) {
    const auto writer = OpenRepository(old);
    writer->BeginWrite();
    const auto connection = OpenSqlite(old.path, {.busyTimeoutMs = 1});
    EXPECT_EQ(ProblemOf([&] { UpgradeSchema(*connection); }), Problem::Busy);
    writer->Rollback();
    EXPECT_EQ(UpgradeSchema(*connection), 1);
}

TEST_F(SchemaUpgrade, WhatANewerProgramMadeMeanwhileIsLeftAlone) {
    const auto connection = OpenRepository(old);
    OpenRepository(old)->RunScript("UPDATE head SET schema_version = 7");
    EXPECT_EQ(ProblemOf([&] { UpgradeSchema(*connection); }), Problem::NewerVersion);
}

TEST_F(SchemaUpgrade, WhatARevisionChangedIsFoundThroughAnIndex) {
    const auto connection = OpenRepository(fresh);
    const auto planOf = [](std::unique_ptr<SqlRows> rows) {
        std::string plan;
        while (rows->Next())
            plan += std::string(rows->Text(3)) + "\n";
        return plan;
    };
    EXPECT_THAT(planOf(connection->Query("EXPLAIN QUERY PLAN SELECT id FROM stored_file "
                                         "WHERE since_revision = $1",
                                         {std::int64_t(1)})),
                testing::HasSubstr("stored_file_since"));
    EXPECT_THAT(planOf(connection->Query("EXPLAIN QUERY PLAN SELECT id FROM catalogue_item "
                                         "WHERE until_revision BETWEEN $1 AND $2",
                                         {std::int64_t(1), std::int64_t(2)})),
                testing::HasSubstr("catalogue_item_until"));
}

} // namespace
} // namespace Storage
