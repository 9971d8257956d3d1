// SPDX-License-Identifier: MIT
// Two hundred stations load while two administrators push.
#include "ServerFailure.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace Storage {
namespace {

using namespace std::chrono_literals;

constexpr int kStations = 200;
constexpr int kFiles = 20;
constexpr int kLoads = 3;

Repository::RepositoryFiles FilesOf(const std::string& call) {
    Repository::RepositoryFiles files;
    for (int i = 0; i < kFiles; ++i)
        files.push_back(
            MakeFile(u"drawing" + Platform::FromUtf8(std::to_string(i)) + u".dwg", call));
    return files;
}

class ManyStations : public ServerTest {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        server = std::make_unique<PrivateServer>();
        CreateRepository(AddressOf(server->Uri()));
        StoreAt(server->Uri())->AddFiles(FilesOf("first"));
    }
    void Push(const std::string& administrator) {
        const auto store = StoreAt(server->Uri());
        for (int call = 0; !loaded; ++call) {
            store->AddFiles(FilesOf(administrator + std::to_string(call)));
            ++pushed;
        }
    }
    // Everything that one listing names is of one call.
    void Load() {
        const auto store = StoreAt(server->Uri());
        std::int64_t revision = 0;
        for (int load = 0; load < kLoads; ++load) {
            const auto ids = store->FileIds(4, u"001_LABEL");
            if (ids.size() != kFiles)
                throw std::runtime_error("half a listing");
            const std::string call = BytesOf(store->File(ids[0]));
            for (const CString& id : ids)
                if (BytesOf(store->File(id)) != call)
                    throw std::runtime_error("half a call: " + call);
            const std::int64_t now = RevisionOf(*store);
            if (now < revision)
                throw std::runtime_error("back in time");
            revision = now;
        }
    }
    void Run(const std::function<void()>& work) {
        try {
            work();
        } catch (const StorageError& error) {
            Fail(ToldBy(error));
        } catch (const std::exception& error) {
            Fail(error.what());
        }
    }
    void Fail(const std::string& why) {
        const std::lock_guard lock(mutex);
        ADD_FAILURE() << why;
    }

    std::unique_ptr<PrivateServer> server;
    std::atomic<bool> loaded = false;
    std::atomic<int> pushed = 0;
    std::mutex mutex;
};

TEST_F(ManyStations, SeeWholeCallsOnlyAndNobodyWaitsForEver) {
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::thread> administrators, stations;
    for (const char* name : {"ana", "ivo"})
        administrators.emplace_back([this, name] { Run([&] { Push(name); }); });
    for (int i = 0; i < kStations; ++i)
        stations.emplace_back([this] { Run([&] { Load(); }); });
    for (std::thread& station : stations)
        station.join();
    loaded = true;
    for (std::thread& administrator : administrators)
        administrator.join();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 120s);
    EXPECT_GT(pushed, 2);
    // Gapless, and in the order in which they were made: the rows that one call ends are those
    // that the call before it made.
    const auto store = StoreAt(server->Uri());
    EXPECT_EQ(RevisionOf(*store), 1 + pushed);
    EXPECT_EQ(server->Run("SELECT count(*) || ' ' || min(number) || ' ' || max(number) "
                          "FROM zebx.revision"),
              std::to_string(1 + pushed) + " 1 " + std::to_string(1 + pushed));
    EXPECT_EQ(server->Run("SELECT count(*) FROM zebx.stored_file "
                          "WHERE until_revision <> since_revision + 1"),
              "0");
}

} // namespace
} // namespace Storage
