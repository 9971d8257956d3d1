// SPDX-License-Identifier: MIT
// What "zebx status" shows of a connection that is not simply one to a server.
#include "../Documents.h"
#include "../Station.h"
#include "support/Pooler.h"
#include "support/TestServer.h"
#include "support/TlsAuthority.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace AppTest;
using nlohmann::json;
using testing::Contains;
using testing::MatchesRegex;

namespace {

class ServerFacts : public testing::Test {
protected:
    void SetUp() override { ZEBX_NEEDS_SERVER(); }
    void Connect(const std::string& uri, const std::string& option = "--create") const {
        const Ended run = station.Zebx({"connect", option, uri});
        ASSERT_EQ(run.status, 0) << run;
    }
    std::vector<std::string> Lines() const {
        const Ended run = station.Zebx({"status"});
        EXPECT_EQ(run.status, 0) << run;
        std::istringstream out(run.out);
        std::vector<std::string> lines;
        for (std::string line; std::getline(out, line);)
            lines.push_back(line);
        return lines;
    }
    json Result() const { return DocumentOf(station.Zebx({"status", "--json"}))["result"]; }

    Station station;
};

std::string LocalServer(const PrivateServer& server) {
    return "127\\.0\\.0\\.1:" + std::to_string(server.Port());
}

TEST_F(ServerFacts, TellOfAStandbyFromWhichOneMayOnlyRead) {
    const PrivateServer primary;
    Connect(primary.Uri());
    const PrivateServer standby({.upstream = primary.Uri("postgres")});
    Connect(standby.TcpUri(), "--quiet");
    const auto lines = Lines();
    EXPECT_THAT(lines, Contains(MatchesRegex("Server +" + LocalServer(standby) +
                                             " \\(a standby: it takes no writes\\)")));
    EXPECT_THAT(lines, Contains(MatchesRegex("Encryption +none")));
    EXPECT_THAT(lines, Contains(MatchesRegex("Rights +you may read only")));
    const json result = Result();
    EXPECT_EQ(result["mayWrite"], false);
    EXPECT_EQ(result["server"]["isStandby"], true);
    EXPECT_EQ(result["server"]["isPooled"], false);
    EXPECT_EQ(result["server"]["encryption"], nullptr);
}

TEST_F(ServerFacts, TellOfAPoolerThatLendsASessionForEachTransaction) {
    if (const std::string why = Pooler::WhyNot(); !why.empty())
        GTEST_SKIP() << why;
    const PrivateServer server;
    const Pooler pooler(server, "transaction");
    Connect(pooler.Uri());
    EXPECT_THAT(Lines(),
                Contains(MatchesRegex("Server +127\\.0\\.0\\.1:[0-9]+ \\(through a pooler\\)")));
    const json result = Result();
    EXPECT_EQ(result["mayWrite"], true);
    EXPECT_EQ(result["server"]["isStandby"], false);
    EXPECT_EQ(result["server"]["isPooled"], true);
}

TEST_F(ServerFacts, TellOfTheEncryption) {
    const TlsAuthority authority;
    const auto tls = authority.Sign("db.example.org");
    const PrivateServer server({.certificate = tls.certificate, .key = tls.key});
    Connect(server.TcpUri(
        "keeper", {}, "&hostaddr=127.0.0.1&sslrootcert=" + EncodedForUri(authority.Certificate()),
        "db.example.org"));
    const auto lines = Lines();
    const std::string at = ":" + std::to_string(server.Port());
    EXPECT_THAT(lines, Contains(MatchesRegex("Server +db\\.example\\.org" + at)));
    EXPECT_THAT(lines, Contains(MatchesRegex("Encryption +TLSv1\\.[23].*")));
    const json result = Result();
    EXPECT_EQ(result["server"]["server"], "db.example.org" + at);
    EXPECT_THAT(result["server"]["encryption"].get<std::string>(), MatchesRegex("TLSv1\\.[23].*"));
}

} // namespace
