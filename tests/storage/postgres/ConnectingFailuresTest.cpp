// SPDX-License-Identifier: MIT
// Each way in which a server cannot be reached or does not let somebody in: the user is told
// what, where and what to do.
#include "ServerFailure.h"
#include "support/TlsAuthority.h"

#include <arpa/inet.h>
#include <chrono>
#include <fstream>
#include <libpq-fe.h>
#include <list>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Storage {
namespace {

namespace fs = std::filesystem;

void ExpectNoConnection(const std::string& uri, Problem problem, MessageNumber number,
                        const std::string& reason) {
    SCOPED_TRACE(uri);
    ExpectTold([&] { OpenRepository(AddressOf(uri)); }, problem, number, uri, reason);
}

// Takes connections, which the kernel does for it, and never says a word.
class SilentServer {
public:
    SilentServer() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        if (bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            listen(m_socket, 8) != 0)
            throw std::runtime_error("nobody can listen at the port");
    }
    ~SilentServer() { close(m_socket); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    int port = FreePort();

private:
    int m_socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

// A file of passwords, with one line for everything.
class PasswordFile {
public:
    explicit PasswordFile(const std::string& password) {
        std::ofstream(Path()) << "*:*:*:*:" << password << '\n';
        fs::permissions(Path(), fs::perms(0600));
    }
    fs::path Path() const { return m_folder.Native() / "pgpass"; }
    std::string Parameter() const { return "&passfile=" + EncodedForUri(Path()); }

private:
    TemporaryFolder m_folder;
};

class ConnectingFailures : public ServerTest {};

TEST_F(ConnectingFailures, NobodyAtThatPort) {
    const std::string port = std::to_string(FreePort());
    ExpectNoConnection("postgresql://ana@127.0.0.1:" + port + "/gis", Problem::Unreachable,
                       MessageNumber::NoServerThere, "Connection refused");
    ExpectNoConnection("postgresql://ana@/gis?host=%2Fnowhere", Problem::Unreachable,
                       MessageNumber::NoServerThere, "No such file");
}

TEST_F(ConnectingFailures, AServerThatNobodyKnows) {
    ExpectNoConnection("postgresql://ana@no-such-server.invalid/gis", Problem::Unreachable,
                       MessageNumber::UnknownServer, "no-such-server.invalid");
}

TEST_F(ConnectingFailures, AServiceThatIsNotDescribed) {
    ExpectNoConnection("postgresql://?service=no_such_service", Problem::Configuration,
                       MessageNumber::NoService, "no_such_service");
}

TEST_F(ConnectingFailures, AServerThatTakesTheConnectionAndNeverAnswers) {
    const SilentServer silent;
    const auto begin = std::chrono::steady_clock::now();
    ExpectNoConnection("postgresql://ana@127.0.0.1:" + std::to_string(silent.port) +
                           "/gis?connect_timeout=2",
                       Problem::Unreachable, MessageNumber::ServerDoesNotAnswer, "timeout");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(ConnectingFailures, WithoutAWordInTheAddressASilentServerIsGivenUpAfterTenSeconds) {
    const SilentServer silent;
    const auto begin = std::chrono::steady_clock::now();
    ExpectNoConnection("postgresql://ana@127.0.0.1:" + std::to_string(silent.port) + "/gis",
                       Problem::Unreachable, MessageNumber::ServerDoesNotAnswer, "timeout");
    const auto time = std::chrono::steady_clock::now() - begin;
    EXPECT_GT(time, std::chrono::seconds(8));
    EXPECT_LT(time, std::chrono::seconds(13));
}

TEST_F(ConnectingFailures, APasswordThatIsWrongOrMissing) {
    const PrivateServer server({.access = "scram-sha-256"});
    server.Run("ALTER ROLE keeper PASSWORD 'the right one'");
    const PasswordFile right("the right one"), wrong("the wrong one");
    EXPECT_EQ(RunAt(server.TcpUri() + right.Parameter(), "SELECT 1"), "1");
    ExpectNoConnection(server.TcpUri() + wrong.Parameter(), Problem::NotAllowed,
                       MessageNumber::WrongPassword, "keeper");
    ExpectNoConnection(server.TcpUri() + "&passfile=%2Fnowhere", Problem::NotAllowed,
                       MessageNumber::NoPassword, "keeper");
}

TEST_F(ConnectingFailures, AUserWhoIsUnknownOrMayNotLogIn) {
    const TestSchema schema;
    const TestServer& server = TestServer::Shared();
    ExpectNoConnection(server.Uri(schema.Name() + "_nobody"), Problem::NotAllowed,
                       MessageNumber::NotLetIn, "does not exist");
    server.Run("CREATE ROLE " + schema.Name() + "_group NOLOGIN");
    ExpectNoConnection(server.Uri(schema.Name() + "_group"), Problem::NotAllowed,
                       MessageNumber::NotLetIn, "not permitted to log in");
}

TEST_F(ConnectingFailures, AUserWhomTheServersRulesKeepOut) {
    const PrivateServer server({.access = "reject"});
    ExpectNoConnection(server.TcpUri(), Problem::NotAllowed, MessageNumber::NotLetIn, "pg_hba");
}

TEST_F(ConnectingFailures, ADatabaseThatIsNotThereOrNotForEverybody) {
    const PrivateServer server;
    ExpectNoConnection(server.Uri("keeper", {}, "no_such_database"), Problem::Missing,
                       MessageNumber::NoServerDatabase, "no_such_database");
    server.Run("CREATE DATABASE private");
    server.Run("REVOKE CONNECT ON DATABASE private FROM PUBLIC");
    ExpectNoConnection(server.Uri("keeper", {}, "private"), Problem::NotAllowed,
                       MessageNumber::NotLetIn, "permission denied");
}

TEST_F(ConnectingFailures, AServerWithoutAConnectionLeft) {
    const PrivateServer server(
        {.settings = {"max_connections = 5", "superuser_reserved_connections = 0",
                      "max_wal_senders = 0"}});
    using Connection = std::unique_ptr<PGconn, decltype(&PQfinish)>;
    std::list<Connection> others;
    for (int i = 0; i < 5; ++i)
        others.emplace_back(PQconnectdb(server.Uri().c_str()), &PQfinish);
    ExpectNoConnection(server.Uri(), Problem::Unreachable, MessageNumber::NoMoreConnections,
                       "too many");
}

TEST_F(ConnectingFailures, AServerThatIsStarting) {
    const PrivateServer primary;
    // A standby that may not be asked is starting for as long as it lives.
    PrivateServer standby({.upstream = primary.Uri("postgres")});
    std::ofstream(standby.Data() / "zebx.conf", std::ios::app) << "hot_standby = off\n";
    standby.Stop();
    standby.StartToListen();
    ExpectNoConnection(standby.Uri(), Problem::Unreachable, MessageNumber::ServerStarting,
                       "the database system is");
}

TEST_F(ConnectingFailures, OnlyAStandbyWhereAPrimaryIsWanted) {
    const PrivateServer primary;
    const PrivateServer standby({.upstream = primary.Uri("postgres")});
    ExpectNoConnection(standby.Uri() + "&target_session_attrs=read-write", Problem::Unreachable,
                       MessageNumber::NoFittingServer, "session is read-only");
}

TEST_F(ConnectingFailures, AnOptionThatTheServerDoesNotHave) {
    ExpectNoConnection(TestServer::Shared().Uri() + "&options=-cno_such_setting%3D1",
                       Problem::Configuration, MessageNumber::OptionRefused, "no_such_setting");
}

class TlsFailures : public ServerTest {
protected:
    // The name stands in the address, and the server is the private one all the same.
    static std::string Uri(const PrivateServer& server, const std::string& more) {
        return server.TcpUri("keeper", {}, "&hostaddr=127.0.0.1" + more, "db.example.org");
    }
    static std::string Trusting(const TlsAuthority& authority) {
        return "&sslrootcert=" + EncodedForUri(authority.Certificate());
    }
    static ServerOptions With(const TlsAuthority::Server& tls) {
        ServerOptions options;
        options.certificate = tls.certificate;
        options.key = tls.key;
        return options;
    }
};

TEST_F(TlsFailures, AServerThatDoesNotEncrypt) {
    const PrivateServer server;
    const TlsAuthority authority;
    ExpectNoConnection(Uri(server, Trusting(authority)), Problem::Unreachable,
                       MessageNumber::ServerWithoutTls, "SSL was required");
    EXPECT_NO_THROW(CreateRepository(AddressOf(Uri(server, "&sslmode=disable"))));
}

TEST_F(TlsFailures, ACertificateThatIsAnothersOrOfAnUnknownSigner) {
    const TlsAuthority authority, stranger;
    const PrivateServer right(With(authority.Sign("db.example.org")));
    const PrivateServer another(With(authority.Sign("other.example.org")));
    EXPECT_NO_THROW(CreateRepository(AddressOf(Uri(right, Trusting(authority)))));
    ExpectNoConnection(Uri(another, Trusting(authority)), Problem::Unreachable,
                       MessageNumber::CertificateOfAnother, "other.example.org");
    ExpectNoConnection(Uri(right, Trusting(stranger)), Problem::Unreachable,
                       MessageNumber::CertificateNotTrusted, "certificate verify failed");
    ExpectNoConnection(Uri(right, "&sslrootcert=%2Fnowhere%2Froot.crt"), Problem::Configuration,
                       MessageNumber::NoRootCertificate, "/nowhere/root.crt");
    // What the address says outright is done.
    EXPECT_NO_THROW(OpenRepository(AddressOf(Uri(right, "&sslmode=require"))));
}

} // namespace
} // namespace Storage
