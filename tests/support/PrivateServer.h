// SPDX-License-Identifier: MIT
// A PostgreSQL server of the tests' own, in a temporary folder, as an ordinary user, reached by
// a Unix socket and by TCP on a port of 127.0.0.1.  No other server is ever touched.
//
// It has the superuser "postgres" and the database "gis", in which "keeper", who is no superuser
// but may make schemas and roles, makes the repositories.  Everybody is let in without a password
// unless the options say otherwise.  It sorts as Croatian does, so that what relies on the
// database's order is found out.
//
// A server ends with the thread that started it.
#pragma once

#include "support/ServerProcess.h"

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

struct ServerOptions {
    Words settings = {};                              // lines of postgresql.conf
    std::string access = "trust";                     // the last word of the lines of pg_hba.conf
    std::filesystem::path certificate = {}, key = {}; // with both it speaks TLS too
    std::string upstream = {};                        // a URI: it is a standby of that server
};

class PrivateServer {
public:
    // Why there can be none on this machine; empty when there can.
    static std::string WhyNot();

    // Makes it and starts it.  Throws std::runtime_error with the server's words.
    explicit PrivateServer(ServerOptions options = {});
    ~PrivateServer();
    PrivateServer(const PrivateServer&) = delete;
    PrivateServer& operator=(const PrivateServer&) = delete;

    // Each waits until it is so.
    void Start();
    // Until it says at least that it is starting.
    void StartToListen();
    // Ends the sessions, too.
    void Stop();
    // As a machine that loses its power.
    void Kill();
    void Restart() { Stop(), Start(); }
    // As a machine that hangs: connections stand, and nothing answers.
    void Freeze() const { m_process->SignalAll(SIGSTOP); }
    void Thaw() const { m_process->SignalAll(SIGCONT); }
    // Makes a standby the primary.
    void Promote() const;

    // "postgresql://keeper@/gis?host=...&port=...", by its Unix socket.  With a schema that is
    // named by "options".
    std::string Uri(const std::string& user = "keeper", const std::string& schema = {},
                    const std::string& database = "gis") const;
    // The same by TCP: the address is "127.0.0.1" unless told, and nothing is encrypted unless
    // `more` ("&sslmode=verify-full") says so.
    std::string TcpUri(const std::string& user = "keeper", const std::string& schema = {},
                       const std::string& more = "&sslmode=disable",
                       const std::string& host = "127.0.0.1") const;
    int Port() const { return m_port; }
    // Of the Unix socket.
    const std::filesystem::path& Folder() const { return m_folder; }
    std::filesystem::path Data() const { return m_folder / "data"; }

    // As the superuser; the first column of the first row of the last statement.
    std::string Run(const std::string& sql, const std::string& database = "gis") const;
    // What the server has logged so far.
    std::string Log() const;
    // Of the server's first process.
    pid_t ProcessId() const { return m_process->Id(); }

private:
    void MakeData() const;
    void ChoosePort();
    void Launch();
    bool TryToStart();
    bool WaitUntilItAnswers();

    ServerOptions m_options;
    std::filesystem::path m_folder;
    int m_port = 0;
    std::unique_ptr<ServerProcess> m_process;
};

// "%2F" for "/": a value as it stands in a URI.
std::string EncodedForUri(const std::string& value);
// A temporary folder that everybody can reach, of the server's user, with a name short enough for
// a Unix socket in it.
std::filesystem::path NewServerFolder();
// A port of 127.0.0.1 that nobody uses at the moment.
int FreePort();
// Runs statements at a URI; throws the server's words.
std::string RunAt(const std::string& uri, const std::string& sql);
