// SPDX-License-Identifier: MIT
// An empty repository of a test's own, on the engine that the test runs over.
#pragma once

#include "storage/Engine.h"
#include "storage/store/Store.h"
#include "support/TemporaryFolder.h"
#include "support/TestServer.h"

#include "platform/text/Utf8.h"

#include <gtest/gtest.h>

namespace Storage {

class TestRepository {
public:
    virtual ~TestRepository() = default;
    // A connection of its own each time, as another workstation would have.
    virtual std::unique_ptr<SqlConnection> Connect() = 0;
    // From now on the connection may leave what no rule of the tables allows, as somebody with
    // other tools could.
    virtual void LiftRules(SqlConnection& sql) = 0;
};

class SqliteTestRepository : public TestRepository {
public:
    SqliteTestRepository() { CreateRepository(m_address); }
    std::unique_ptr<SqlConnection> Connect() override { return OpenRepository(m_address); }
    void LiftRules(SqlConnection& sql) override {
        sql.RunScript("PRAGMA foreign_keys = OFF; PRAGMA ignore_check_constraints = ON;");
    }

private:
    TemporaryFolder m_folder;
    Address m_address{m_folder.Path() + u"repository.db"};
};

class PostgresTestRepository : public TestRepository {
public:
    PostgresTestRepository() { CreateRepository(m_address); }
    std::unique_ptr<SqlConnection> Connect() override { return OpenRepository(m_address); }
    void LiftRules(SqlConnection& sql) override {
        sql.RunScript("DO $$ DECLARE rule record; BEGIN FOR rule IN "
                      "SELECT conrelid::regclass AS place, conname FROM pg_constraint "
                      "WHERE connamespace = current_schema()::regnamespace "
                      "AND contype IN ('f', 'c') LOOP "
                      "EXECUTE format('ALTER TABLE %s DROP CONSTRAINT %I', rule.place, "
                      "rule.conname); END LOOP; END $$");
    }

private:
    TestSchema m_schema;
    Address m_address{.server = Platform::FromUtf8(m_schema.Uri())};
};

using RepositoryFactory = std::unique_ptr<TestRepository> (*)();

struct EngineUnderTest {
    const char* name;
    RepositoryFactory make;
    std::string (*whyNot)(); // why there is none on this machine; empty: there is
};

inline void PrintTo(const EngineUnderTest& engine, std::ostream* out) {
    *out << engine.name;
}

inline const EngineUnderTest kEngines[] = {
    {"SQLite", [] { return std::unique_ptr<TestRepository>(new SqliteTestRepository); },
     [] { return std::string(); }},
    {"PostgreSQL", [] { return std::unique_ptr<TestRepository>(new PostgresTestRepository); },
     PrivateServer::WhyNot}};

// A test of the store that every engine must pass.
class StoreTest : public testing::TestWithParam<EngineUnderTest> {
protected:
    void SetUp() final {
        if (const std::string whyNot = GetParam().whyNot(); !whyNot.empty())
            GTEST_SKIP() << whyNot;
        Fill();
    }
    // What a test finds in the repository.
    virtual void Fill() {}

    std::unique_ptr<TestRepository> repository =
        GetParam().whyNot().empty() ? GetParam().make() : nullptr;
    std::vector<StorageError> leftOut;
    Stamp stamp{u"2026-11-21T08:05:19Z", u"ana", u"station-1", u"test 1.2.3.4"};
    std::unique_ptr<Store> store = OpenStore();

    std::unique_ptr<Store> OpenStore(std::uint64_t maxFileBytes = kMaxFileBytes) {
        StoreOptions options;
        options.stamp = [this] { return stamp; };
        if (!repository)
            return nullptr;
        options.leftOut = [this](const StorageError& error) { leftOut.push_back(error); };
        options.maxFileBytes = maxFileBytes;
        return std::make_unique<Store>(repository->Connect(), std::move(options));
    }

    std::int64_t Revision() {
        RepositoryState state;
        store->ReadState(state);
        return state.revision;
    }

    // One number that a query gives.
    std::int64_t Number(SqlText sql) {
        const auto rows = store->Connection().Query(sql, {});
        return rows->Next() ? rows->Integer(0) : -1;
    }
};

#define ZEBX_FOR_EVERY_ENGINE(suite)                                                               \
    INSTANTIATE_TEST_SUITE_P(Every, suite, testing::ValuesIn(kEngines),                            \
                             [](const auto& engine) { return std::string(engine.param.name); })

} // namespace Storage
