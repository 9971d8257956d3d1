// SPDX-License-Identifier: MIT
// What libpq alone needs for the work of a load and of a push: the least that a program over
// PostgreSQL can do, which scripts/bench --server measures beside this system.
//
// usage: zebx_bench_server stream FOLDER QUERY   rows of QUERY, (name, bytes), become files
//        zebx_bench_server insert FOLDER TABLE   the folder's files become rows of TABLE (name
//                                                text, bytes bytea) in one transaction
//
// The server is the environment's (PGHOST, PGPORT, ...).
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <libpq-fe.h>
#include <memory>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace {

using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;

class Server {
public:
    Server() : m_connection(PQconnectdb("")) { Require(PQstatus(m_connection) == CONNECTION_OK); }
    ~Server() { PQfinish(m_connection); }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    PGconn* Get() const { return m_connection; }
    void Require(bool isSo) const {
        if (!isSo)
            throw std::runtime_error(PQerrorMessage(m_connection));
    }
    // Empty: nothing more of this statement.
    Result Next() const {
        Result result(PQgetResult(m_connection), PQclear);
        const ExecStatusType status = PQresultStatus(result.get());
        Require(!result || (status != PGRES_FATAL_ERROR && status != PGRES_PIPELINE_ABORTED));
        return result;
    }

private:
    PGconn* m_connection;
};

void WriteFile(const std::string& path, const char* bytes, std::size_t size) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    if (file < 0 || write(file, bytes, size) != static_cast<ssize_t>(size) || close(file))
        throw std::runtime_error(path + ": " + std::strerror(errno));
}

int Stream(const Server& server, const std::string& folder, const char* query) {
    std::filesystem::create_directory(folder);
    constexpr int kBinary = 1;
    server.Require(
        PQsendQueryParams(server.Get(), query, 0, nullptr, nullptr, nullptr, nullptr, kBinary) &&
        PQsetSingleRowMode(server.Get()));
    int files = 0;
    while (const Result row = server.Next()) {
        if (PQresultStatus(row.get()) != PGRES_SINGLE_TUPLE)
            continue;
        WriteFile(folder + '/' + PQgetvalue(row.get(), 0, 0), PQgetvalue(row.get(), 0, 1),
                  static_cast<std::size_t>(PQgetlength(row.get(), 0, 1)));
        ++files;
    }
    return files;
}

class Inserts {
public:
    Inserts(const Server& server, const std::string& table) : m_server(server) {
        PGconn* connection = server.Get();
        const std::string insert = "INSERT INTO " + table + " (name, bytes) VALUES ($1, $2)";
        constexpr Oid kTypes[] = {25, 17}; // text, bytea
        server.Require(!PQsetnonblocking(connection, 1) && PQenterPipelineMode(connection));
        Run("BEGIN");
        server.Require(PQsendPrepare(connection, "insert", insert.c_str(), 2, kTypes));
    }

    void Add(const std::string& name, const std::string& bytes) {
        const char* values[] = {name.data(), bytes.data()};
        const int lengths[] = {static_cast<int>(name.size()), static_cast<int>(bytes.size())};
        constexpr int kFormats[] = {1, 1};
        m_server.Require(
            PQsendQueryPrepared(m_server.Get(), "insert", 2, values, lengths, kFormats, 0));
        Flush();
    }

    void Commit() {
        Run("COMMIT");
        m_server.Require(PQpipelineSync(m_server.Get()));
        Flush();
        // Between two statements' results there is an empty one.
        for (Result result = m_server.Next();
             !result || PQresultStatus(result.get()) != PGRES_PIPELINE_SYNC;
             result = m_server.Next())
            continue;
    }

private:
    void Run(const char* statement) {
        m_server.Require(
            PQsendQueryParams(m_server.Get(), statement, 0, nullptr, nullptr, nullptr, nullptr, 0));
    }

    // Takes what the server answers meanwhile, or both sides would wait for each other.
    void Flush() {
        while (const int more = PQflush(m_server.Get())) {
            m_server.Require(more > 0);
            pollfd wait{PQsocket(m_server.Get()), POLLIN | POLLOUT, 0};
            poll(&wait, 1, -1);
            if (wait.revents & POLLIN)
                m_server.Require(PQconsumeInput(m_server.Get()));
        }
    }

    const Server& m_server;
};

int Insert(const Server& server, const std::string& folder, const char* table) {
    Inserts inserts(server, table);
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::string bytes(entry.file_size(), '\0');
        std::ifstream(entry.path(), std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        inserts.Add(entry.path().filename(), bytes);
        ++files;
    }
    inserts.Commit();
    return files;
}

} // namespace

int main(int argc, char** argv) try {
    const std::string verb = argc == 4 ? argv[1] : "";
    if (verb != "stream" && verb != "insert")
        throw std::runtime_error("usage: zebx_bench_server stream|insert FOLDER QUERY|TABLE");
    const Server server;
    std::cout << (verb == "stream" ? Stream : Insert)(server, argv[2], argv[3]) << " files\n";
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
