// SPDX-License-Identifier: MIT
// A repository that moves from a file to a server and back, with the real program.
#include "app/ConnectedStation.h"
#include "app/Content.h"
#include "app/Documents.h"
#include "support/TestServer.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::HasSubstr;

namespace {

class RepoCopyServer : public testing::Test {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        schema = std::make_unique<TestSchema>();
        ASSERT_EQ(station.Zebx({"init"}).status, 0);
        ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
        GenerateContent(station.Support());
        ASSERT_EQ(station.Zebx({"push", "--quiet"}).status, 0);
        Write(station.Support() / "nodes/a.dwg", "another");
        ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE", "--quiet"}).status, 0);
    }

    static std::string Address(const fs::path& file) { return "sqlite:" + file.string(); }
    std::string File() const { return Address(station.Repository()); }

    // What people see of a repository, and that it is whole.
    static nlohmann::json Holds(const std::string& address) {
        Station other;
        EXPECT_EQ(other.Zebx({"init"}).status, 0);
        const Ended connected = other.Zebx({"connect", address});
        EXPECT_EQ(connected.status, 0) << connected;
        const Ended checked = other.Zebx({"repo", "check"});
        EXPECT_EQ(checked.status, 0) << checked;
        return {{"log", DocumentOf(other.Zebx({"log", "--limit", "1000", "--json"}))["result"]},
                {"ls", DocumentOf(other.Zebx({"ls", "--json"}))["result"]}};
    }

    Station station;
    std::unique_ptr<TestSchema> schema;
};

TEST_F(RepoCopyServer, AFilesRepositoryComesBackFromAServerAsItWas) {
    const Ended there = station.Zebx({"repo", "copy", File(), schema->Uri()});
    ASSERT_EQ(there.status, 0) << there;
    const auto original = Holds(File());
    EXPECT_EQ(Holds(schema->Uri()), original);
    const std::string back = Address(station.Folder() / "back.db");
    const Ended here = station.Zebx({"repo", "copy", schema->Uri(), back});
    ASSERT_EQ(here.status, 0) << here;
    EXPECT_EQ(Holds(back), original);
    const Ended again = station.Zebx({"repo", "copy", File(), back});
    EXPECT_EQ(again.status, 0) << again;
    EXPECT_THAT(again.out, HasSubstr("Copied revisions: 0, contents: 0 (bytes: 0)."));
}

TEST_F(RepoCopyServer, ACopyToAServerThatIsKilledGoesOn) {
    for (const char letter : {'x', 'y', 'z'}) {
        std::string bytes;
        bytes.resize(40'000'000, letter);
        Write(station.Support() / "nodes/large.dwg", bytes);
        ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE", "--quiet"}).status, 0);
    }
    for (const int ms : {50, 150, 300, 500, 700})
        (void)station.ZebxKilledAfter(std::chrono::milliseconds(ms),
                                      {"repo", "copy", File(), schema->Uri()});
    const Ended run = station.Zebx({"repo", "copy", File(), schema->Uri()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(Holds(schema->Uri()), Holds(File()));
}

TEST_F(RepoCopyServer, WhoMayOnlyReadCopiesFromThereAndNotToIt) {
    ASSERT_EQ(station.Zebx({"repo", "copy", File(), schema->Uri()}).status, 0);
    const std::string reader = schema->MakeUser("_ana");
    TestServer::Shared().Run("GRANT \"" + schema->Name() + "_reader\" TO \"" + reader + "\"");
    const std::string copy = Address(station.Folder() / "copy.db");
    EXPECT_EQ(station.Zebx({"repo", "copy", schema->Uri(reader), copy}).status, 0);
    Write(station.Support() / "nodes/a.dwg", "one more");
    ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE", "--quiet"}).status, 0);
    const Ended run = station.Zebx({"repo", "copy", File(), schema->Uri(reader)});
    EXPECT_EQ(run.status, 5) << run;
}

TEST_F(RepoCopyServer, WhoMayWriteNeedsNotOwnTheTables) {
    ASSERT_EQ(station.Zebx({"connect", schema->Uri(), "--create"}).status, 0);
    ASSERT_EQ(station.Zebx({"connect"}).status, 0);
    const std::string admin = schema->MakeUser("_ivo");
    TestServer::Shared().Run("GRANT \"" + schema->Name() + "_admin\" TO \"" + admin + "\"");
    const Ended run = station.Zebx({"repo", "copy", File(), schema->Uri(admin)});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(Holds(schema->Uri(admin)), Holds(File()));
}

} // namespace
