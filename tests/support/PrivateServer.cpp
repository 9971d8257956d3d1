// SPDX-License-Identifier: MIT
#include "support/PrivateServer.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <libpq-fe.h>
#include <sstream>
#include <stdexcept>
#include <sys/shm.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::size_t kMaxSocketFolder = 80; // a socket's path has at most 107 bytes
constexpr int kTries = 5;

std::string FolderOfPrograms() {
    const std::string debian = "/usr/lib/postgresql/15/bin";
    if (fs::exists(debian + "/initdb"))
        return debian;
    std::string line(4096, '\0');
    FILE* output = popen("pg_config --bindir 2>/dev/null", "re");
    line.resize(output ? fread(line.data(), 1, line.size(), output) : 0);
    if (output)
        pclose(output);
    while (!line.empty() && line.back() == '\n')
        line.pop_back();
    return line;
}

std::string Program(const std::string& name) {
    static const std::string folder = FolderOfPrograms();
    return folder + "/" + name;
}

fs::path Template() {
    return fs::path(ZEBX_BUILD_DIR) / "test-server" / ("data-" + std::to_string(ServerUser()));
}

// What initdb makes is the same for all servers, and takes a second.
void MakeTemplate() {
    if (fs::exists(Template()))
        return;
    const fs::path folder = NewServerFolder();
    const std::string data = folder / "data";
    RunServerProgram({Program("initdb"), "--no-sync", "--pgdata=" + data, "--username=postgres",
                      "--auth=trust", "--data-checksums", "--encoding=UTF8", "--locale=C.UTF-8",
                      "--locale-provider=icu", "--icu-locale=hr"});
    RunServerProgram({Program("postgres"), "--single", "-F", "-D", data, "postgres"},
                     "CREATE ROLE keeper LOGIN CREATEROLE\n"
                     "CREATE DATABASE gis\n"
                     "GRANT CREATE ON DATABASE gis TO keeper\n");
    fs::create_directories(Template().parent_path());
    const fs::path own = Template().string() + "-" + std::to_string(getpid());
    fs::copy(data, own, fs::copy_options::recursive);
    fs::remove_all(folder);
    std::error_code another;
    fs::rename(own, Template(), another);
    if (another)
        fs::remove_all(own);
}

std::string ReadWhole(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// What the kernel keeps for a server that was killed.
void RemoveSharedMemory(const fs::path& data) {
    std::ifstream file(data / "postmaster.pid");
    std::string line;
    for (int number = 1; std::getline(file, line); ++number)
        if (int key = 0, id = -1; number == 7 && std::istringstream(line) >> key >> id)
            shmctl(id, IPC_RMID, nullptr);
}

} // namespace

fs::path NewServerFolder() {
    fs::path parent = fs::temp_directory_path();
    if (parent.string().size() > kMaxSocketFolder)
        parent = "/tmp";
    std::string name = (parent / "zebx-pg-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("cannot create " + name);
    // Ordinary users of a test come to the socket, too.
    fs::permissions(name, fs::perms(0755));
    GiveToServerUser(name);
    return name;
}

std::string EncodedForUri(const std::string& value) {
    static const char* const digits = "0123456789ABCDEF";
    std::string encoded;
    for (const unsigned char byte : value) {
        if (std::isalnum(byte) || byte == '.' || byte == '_' || byte == '-')
            encoded += char(byte);
        else
            encoded += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return encoded;
}

int FreePort() {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    const bool found = bind(listener, any, size) == 0 && getsockname(listener, any, &size) == 0;
    close(listener);
    if (!found)
        throw std::runtime_error("no free port");
    return ntohs(address.sin_port);
}

std::string RunAt(const std::string& uri, const std::string& sql) {
    using Connection = std::unique_ptr<PGconn, decltype(&PQfinish)>;
    using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;
    const Connection connection(PQconnectdb(uri.c_str()), &PQfinish);
    const Result result(PQexec(connection.get(), sql.c_str()), &PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        throw std::runtime_error(PQerrorMessage(connection.get()));
    return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

std::string PrivateServer::WhyNot() {
    if (access(Program("initdb").c_str(), X_OK) == 0 &&
        access(Program("postgres").c_str(), X_OK) == 0)
        return {};
    return "no PostgreSQL server is installed here (Debian: postgresql)";
}

PrivateServer::PrivateServer(ServerOptions options)
    : m_options(std::move(options)), m_folder(NewServerFolder()) {
    try {
        MakeData();
        bool starts = false;
        // Somebody else may have taken the port meanwhile.
        for (int left = kTries; !starts && left > 0; --left) {
            ChoosePort();
            starts = TryToStart();
        }
        if (!starts)
            throw std::runtime_error("the server does not start: " + Log());
    } catch (...) {
        m_process.reset();
        fs::remove_all(m_folder);
        throw;
    }
}

PrivateServer::~PrivateServer() {
    m_process.reset();
    RemoveSharedMemory(Data());
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void PrivateServer::MakeData() const {
    if (!m_options.upstream.empty()) {
        RunServerProgram({Program("pg_basebackup"), "--pgdata=" + Data().string(),
                          "--dbname=" + m_options.upstream, "--write-recovery-conf",
                          "--wal-method=stream", "--checkpoint=fast", "--no-sync"});
        return;
    }
    MakeTemplate();
    fs::copy(Template(), Data(), fs::copy_options::recursive);
    fs::permissions(Data(), fs::perms::owner_all);
    GiveToServerUser(Data());
}

void PrivateServer::ChoosePort() {
    m_port = FreePort();
    std::ofstream file(Data() / "zebx.conf");
    file << "listen_addresses = '127.0.0.1'\nport = " << m_port << "\nunix_socket_directories = '"
         << m_folder.string()
         << "'\nmax_connections = 300\nshared_buffers = 64MB\n"
            "fsync = off\nfull_page_writes = off\ndynamic_shared_memory_type = mmap\n"
            "wal_level = replica\nmax_wal_senders = 10\nhot_standby = on\nlc_messages = 'C'\n";
    if (!m_options.certificate.empty())
        file << "ssl = on\nssl_cert_file = '" << m_options.certificate.string()
             << "'\nssl_key_file = '" << m_options.key.string() << "'\n";
    for (const std::string& line : m_options.settings)
        file << line << '\n';
    std::ofstream(Data() / "postgresql.conf") << "include 'zebx.conf'\n";
    // The superuser, as which the test itself and standbys come, has no password.
    const std::string all = " all 127.0.0.1/32 ";
    std::ofstream(Data() / "pg_hba.conf")
        << "local all postgres trust\nlocal replication postgres trust\n"
        << "local all all " << m_options.access << "\nhost all" << all << m_options.access << '\n';
    GiveToServerUser(Data());
}

void PrivateServer::Launch() {
    m_process = std::make_unique<ServerProcess>(Words{Program("postgres"), "-D", Data().string()},
                                                m_folder / "log");
}

bool PrivateServer::TryToStart() {
    Launch();
    return WaitUntilItAnswers();
}

bool PrivateServer::WaitUntilItAnswers() {
    const std::string uri = Uri("postgres", {}, "postgres");
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (m_process->IsRunning() && std::chrono::steady_clock::now() < end) {
        if (PQping(uri.c_str()) == PQPING_OK)
            return true;
        std::this_thread::sleep_for(20ms);
    }
    return false;
}

void PrivateServer::Start() {
    // What was killed a moment ago may still be ending.
    for (int left = kTries; !TryToStart(); --left)
        if (left == 1)
            throw std::runtime_error("the server does not start again: " + Log());
}

void PrivateServer::StartToListen() {
    Launch();
    while (PQping(Uri("postgres", {}, "postgres").c_str()) == PQPING_NO_RESPONSE &&
           m_process->IsRunning())
        std::this_thread::sleep_for(20ms);
}

void PrivateServer::Stop() {
    m_process->Signal(SIGINT);
    m_process->Wait();
}

void PrivateServer::Kill() {
    m_process->SignalAll(SIGKILL);
    m_process->Wait();
    RemoveSharedMemory(Data());
}

void PrivateServer::Promote() const {
    Run("SELECT pg_promote()");
}

std::string PrivateServer::Uri(const std::string& user, const std::string& schema,
                               const std::string& database) const {
    return "postgresql://" + user + "@/" + database + "?host=" + EncodedForUri(m_folder.string()) +
           "&port=" + std::to_string(m_port) +
           (schema.empty() ? "" : "&options=-czebx.schema%3D" + schema);
}

std::string PrivateServer::TcpUri(const std::string& user, const std::string& schema,
                                  const std::string& more, const std::string& host) const {
    return "postgresql://" + user + "@" + host + ":" + std::to_string(m_port) +
           "/gis?application_name=test" + more +
           (schema.empty() ? "" : "&options=-czebx.schema%3D" + schema);
}

std::string PrivateServer::Run(const std::string& sql, const std::string& database) const {
    return RunAt(Uri("postgres", {}, database), sql);
}

std::string PrivateServer::Log() const {
    return ReadWhole(m_folder / "log");
}
