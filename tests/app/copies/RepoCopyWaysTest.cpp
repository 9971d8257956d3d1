// SPDX-License-Identifier: MIT
// Whole repositories copied from and to a server that is not simply there: behind a pooler, a
// standby, encrypted.
#include "app/ConnectedStation.h"
#include "app/Documents.h"
#include "support/Pooler.h"
#include "support/TestServer.h"
#include "support/TlsAuthority.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

class RepoCopyWays : public ConnectedStation {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        Push("first");
        Push("second");
    }
    void Push(const std::string& bytes) const {
        for (const char* name : {"a.dwg", "b.dwg"})
            Write(Node(name), name + bytes);
        const Ended run = station.Zebx({"push", "ncf:002_NODE", "--quiet"});
        ASSERT_EQ(run.status, 0) << run;
    }
    Ended Copy(const std::string& from, const std::string& to) const {
        return station.Zebx({"repo", "copy", from, to});
    }
    void ExpectDone(const std::vector<std::string>& arguments) const {
        const Ended run = station.Zebx(arguments);
        EXPECT_EQ(run.status, 0) << run;
    }
    static std::string Address(const fs::path& file) { return "sqlite:" + file.string(); }
    std::string Original() const { return Address(station.Repository()); }
    fs::path CopyFile() const { return station.Folder() / "copy.db"; }

    // What people see of the repository that a workstation has, and that it is whole.
    static nlohmann::json Seen(const Station& by) {
        const Ended checked = by.Zebx({"repo", "check"});
        EXPECT_EQ(checked.status, 0) << checked;
        return {DocumentOf(by.Zebx({"log", "--limit", "100", "--json"}))["result"],
                DocumentOf(by.Zebx({"ls", "--json"}))["result"]};
    }
    static nlohmann::json SeenAt(const std::string& address, const std::string& schema = "zebx") {
        Station other;
        other.Set("ZEBX_SCHEMA", schema);
        EXPECT_EQ(other.Zebx({"init"}).status, 0);
        const Ended connected = other.Zebx({"connect", address});
        EXPECT_EQ(connected.status, 0) << connected;
        return Seen(other);
    }
    void ExpectSameAsOriginal(const std::string& address,
                              const std::string& schema = "zebx") const {
        EXPECT_EQ(SeenAt(address, schema), SeenAt(Original()));
    }
};

TEST_F(RepoCopyWays, ThroughAPoolerThatLendsASessionForEachTransaction) {
    if (const std::string why = Pooler::WhyNot(); !why.empty())
        GTEST_SKIP() << why;
    const PrivateServer server;
    const Pooler pooler(server, "transaction", {"default_pool_size = 5"});
    ExpectDone({"repo", "copy", Original(), pooler.Uri()});
    ExpectSameAsOriginal(pooler.Uri());
    ExpectDone({"connect", pooler.Uri()});
    ExpectDone({"repo", "export", CopyFile().string()});
    ExpectSameAsOriginal(Address(CopyFile()));
    station.Set("ZEBX_SCHEMA", "water");
    ExpectDone({"connect", "--create", pooler.Uri()});
    ExpectDone({"repo", "import", CopyFile().string()});
    ExpectSameAsOriginal(pooler.Uri(), "water");
}

TEST_F(RepoCopyWays, AStandbyGivesWhatItHas) {
    const PrivateServer primary;
    ExpectDone({"repo", "copy", Original(), primary.Uri()});
    const PrivateServer standby({.upstream = primary.Uri("postgres")});
    ExpectDone({"repo", "copy", standby.Uri(), Address(CopyFile())});
    ExpectSameAsOriginal(Address(CopyFile()));
    ExpectDone({"connect", standby.Uri()});
    const fs::path exported = station.Folder() / "exported.db";
    ExpectDone({"repo", "export", exported.string()});
    ExpectSameAsOriginal(Address(exported));
}

TEST_F(RepoCopyWays, AStandbyTakesNoCopy) {
    const PrivateServer primary;
    ExpectDone({"repo", "copy", Original(), primary.Uri()});
    const PrivateServer standby({.upstream = primary.Uri("postgres")});
    ExpectDone({"connect", standby.Uri()});
    const nlohmann::json before = Seen(station);
    ExpectDone({"connect"});
    Push("third");
    const auto refusal = AllOf(HasSubstr("takes no writes"), HasSubstr("Name the primary"),
                               HasSubstr(standby.Uri()));
    const Ended copied = Copy(Original(), standby.Uri());
    EXPECT_EQ(copied.status, 5) << copied;
    EXPECT_THAT(copied.err, refusal);
    ExpectDone({"connect", standby.Uri()});
    const Ended imported = station.Zebx({"repo", "import", station.Repository().string()});
    EXPECT_EQ(imported.status, 5) << imported;
    EXPECT_THAT(imported.err, refusal);
    EXPECT_EQ(Seen(station), before);
}

TEST_F(RepoCopyWays, AStandbyWithoutTheRepositoryIsNotWhereOneIsMade) {
    const PrivateServer primary;
    const PrivateServer standby({.upstream = primary.Uri("postgres")});
    const Ended run = Copy(Original(), standby.Uri());
    EXPECT_EQ(run.status, 5) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("takes no writes"), HasSubstr("Name the primary")));
}

TEST_F(RepoCopyWays, EncryptedToAServerThatProvesWhoItIsAndToNoOther) {
    const TlsAuthority authority, stranger;
    const auto tls = authority.Sign("db.example.org");
    const PrivateServer server({.certificate = tls.certificate, .key = tls.key});
    const auto uri = [&](const TlsAuthority& trusted) {
        return server.TcpUri(
            "keeper", {}, "&hostaddr=127.0.0.1&sslrootcert=" + EncodedForUri(trusted.Certificate()),
            "db.example.org");
    };
    const Ended refused = Copy(Original(), uri(stranger));
    EXPECT_EQ(refused.status, 4) << refused;
    EXPECT_THAT(refused.err, HasSubstr("sslrootcert"));
    EXPECT_EQ(server.Run("SELECT count(*) FROM pg_namespace WHERE nspname = 'zebx'"), "0");
    ExpectDone({"repo", "copy", Original(), uri(authority)});
    ExpectSameAsOriginal(uri(authority));
    ExpectDone({"repo", "copy", uri(authority), Address(CopyFile())});
    ExpectSameAsOriginal(Address(CopyFile()));
}

} // namespace
