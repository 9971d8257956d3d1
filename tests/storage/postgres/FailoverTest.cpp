// SPDX-License-Identifier: MIT
// Two servers, the second a standby of the first, and both in the address: the first dies while
// stations push and load, the second takes its place, and the stations go on as they are.
#include "WorkingStation.h"

#include <set>
#include <thread>

namespace Storage {
namespace {

using namespace std::chrono_literals;

std::string UriOf(const PrivateServer& first, const PrivateServer& second) {
    return "postgresql://keeper@/gis?host=" + EncodedForUri(first.Folder()) + "," +
           EncodedForUri(second.Folder()) + "&port=" + std::to_string(first.Port()) + "," +
           std::to_string(second.Port()) + "&target_session_attrs=read-write";
}

// Each call replaces both files of a kind by the same, new content.
void Push(SqlBackend& backend, Notes& notes, const CString& kind) {
    for (std::int64_t number = 1; !notes.ShallEnd(); ++number) {
        const std::string bytes = Platform::ToUtf8(kind) + std::to_string(number);
        const int kept = backend.AddRepositoryFiles(
            {MakeFile(u"a.dwg", bytes, kind), MakeFile(u"b.dwg", bytes, kind)});
        notes.Write(kept ? "kept" : "failed", number);
    }
}

// Both files are of one call, and a call that was seen is not undone, but where a standby may
// lack the last ones.
void Load(SqlBackend& backend, Notes& notes, const CString& kind, bool mayLackTheLast) {
    const auto numberOf = [&](const RepositoryFilePtr& file) {
        return std::stoll(BytesOf(file).substr(kind.size()));
    };
    std::int64_t last = 0;
    while (!notes.ShallEnd()) {
        std::vector<CString> ids;
        const int listed = backend.GetRepositoryFileIds(4, kind.c_str(), ids);
        if (!listed || ids.empty())
            continue;
        ASSERT_EQ(ids.size(), 2u);
        const auto a = backend.GetRepositoryFile(ids[0].c_str());
        const auto b = backend.GetRepositoryFile(ids[1].c_str());
        if (!a || !b)
            continue;
        ASSERT_EQ(BytesOf(a), BytesOf(b));
        ASSERT_TRUE(mayLackTheLast || numberOf(a) >= last) << numberOf(a) << " after " << last;
        last = numberOf(a);
        notes.Write("loaded", last);
    }
}

const CString kKinds[] = {u"K1_", u"K2_"};

std::string StationName(const char* what, const CString& kind) {
    return what + Platform::ToUtf8(kind);
}

class Failover : public ServerTest {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        first = std::make_unique<PrivateServer>();
        second = std::make_unique<PrivateServer>(ServerOptions{.upstream = first->Uri("postgres")});
        uri = UriOf(*first, *second);
        CreateRepository(AddressOf(uri));
    }
    void WorkWhileTheFirstDies() {
        for (const CString& kind : kKinds) {
            stations.Start(StationName("push", kind), uri,
                           [&](auto& backend, auto& notes) { Push(backend, notes, kind); });
            stations.Start(StationName("load", kind), uri, [&](auto& backend, auto& notes) {
                Load(backend, notes, kind, mayLackTheLast);
            });
        }
        std::this_thread::sleep_for(1500ms);
        first->Kill();
        second->Promote();
        keptBefore = Kept();
        loadedBefore = Loaded();
        std::this_thread::sleep_for(4s);
        EXPECT_TRUE(stations.End(30s));
    }
    std::size_t Kept() const {
        std::size_t count = 0;
        for (const CString& kind : kKinds)
            count += stations.Noted(StationName("push", kind), "kept").size();
        return count;
    }
    std::size_t Loaded() const {
        std::size_t count = 0;
        for (const CString& kind : kKinds)
            count += stations.Noted(StationName("load", kind), "loaded").size();
        return count;
    }

    std::unique_ptr<PrivateServer> first, second;
    std::string uri;
    WorkingStations stations;
    bool mayLackTheLast = false;
    std::size_t keptBefore = 0, loadedBefore = 0;
};

TEST_F(Failover, WithSynchronousReplicationNothingThatWasToldIsMissing) {
    first->Run("ALTER SYSTEM SET synchronous_standby_names = '*'");
    first->Run("SELECT pg_reload_conf()");
    WorkWhileTheFirstDies();
    EXPECT_GT(keptBefore, 10u);
    EXPECT_GT(Kept(), keptBefore + 10);
    EXPECT_GT(loadedBefore, 10u);
    EXPECT_GT(Loaded(), loadedBefore + 10);
    const auto store = StoreAt(uri);
    for (const CString& kind : kKinds) {
        const auto kept = stations.Noted(StationName("push", kind), "kept");
        std::set<std::string> there;
        const auto rows = store->Connection().Query(
            "SELECT c.bytes FROM stored_file f JOIN content c ON c.hash = f.hash "
            "WHERE f.origin_id = $1",
            {std::string_view(Platform::ToUtf8(kind))});
        while (rows->Next())
            there.emplace(rows->Bytes(0));
        for (const std::int64_t number : kept)
            EXPECT_TRUE(there.contains(Platform::ToUtf8(kind) + std::to_string(number))) << number;
        // One call was under way on each when the server died; a few more found it dead.
        EXPECT_LE(stations.Noted(StationName("push", kind), "failed").size(), 3u);
    }
    const auto rows = store->Connection().Query("SELECT COUNT(*), MAX(number) FROM revision", {});
    ASSERT_TRUE(rows->Next());
    EXPECT_EQ(rows->Integer(0), rows->Integer(1));
    EXPECT_EQ(RevisionOf(*store), rows->Integer(1));
}

TEST_F(Failover, WithoutItTheStationsGoOnAllTheSame) {
    mayLackTheLast = true;
    WorkWhileTheFirstDies();
    EXPECT_GT(Kept(), keptBefore + 10);
    EXPECT_GT(Loaded(), loadedBefore + 10);
    const auto store = StoreAt(uri);
    const auto rows = store->Connection().Query("SELECT COUNT(*), MAX(number) FROM revision", {});
    ASSERT_TRUE(rows->Next());
    EXPECT_EQ(rows->Integer(0), rows->Integer(1));
}

} // namespace
} // namespace Storage
