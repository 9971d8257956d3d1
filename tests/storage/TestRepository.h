// SPDX-License-Identifier: MIT
// An empty repository of a test's own, on the engine that the test runs over.
#pragma once

#include "storage/Engine.h"
#include "storage/Store.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace Storage {

class TestRepository {
public:
    virtual ~TestRepository() = default;
    // A connection of its own each time, as another workstation would have.
    virtual std::unique_ptr<SqlConnection> Connect() = 0;
};

class SqliteTestRepository : public TestRepository {
public:
    SqliteTestRepository() { CreateRepository(m_address); }
    std::unique_ptr<SqlConnection> Connect() override { return OpenRepository(m_address); }

private:
    TemporaryFolder m_folder;
    Address m_address{m_folder.Path() + u"repository.db"};
};

using RepositoryFactory = std::unique_ptr<TestRepository> (*)();

struct EngineUnderTest {
    const char* name;
    RepositoryFactory make;
};

inline const EngineUnderTest kEngines[] = {
    {"SQLite", [] { return std::unique_ptr<TestRepository>(new SqliteTestRepository); }}};

// A test of the store that every engine must pass.
class StoreTest : public testing::TestWithParam<EngineUnderTest> {
protected:
    std::unique_ptr<TestRepository> repository = GetParam().make();
    std::vector<StorageError> leftOut;
    Stamp stamp{u"2026-11-21T08:05:19Z", u"ana", u"station-1", u"test 1.2.3.4"};
    std::unique_ptr<Store> store = OpenStore();

    std::unique_ptr<Store> OpenStore(std::uint64_t maxFileBytes = kMaxFileBytes) {
        StoreOptions options;
        options.stamp = [this] { return stamp; };
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
