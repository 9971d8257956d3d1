// SPDX-License-Identifier: MIT
#include "support/Pooler.h"

#include <chrono>
#include <fstream>
#include <libpq-fe.h>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace {

constexpr const char* kProgram = "/usr/sbin/pgbouncer";

} // namespace

std::string Pooler::WhyNot() {
    return access(kProgram, X_OK) == 0 ? "" : "pgbouncer is not installed here (Debian: pgbouncer)";
}

Pooler::Pooler(const PrivateServer& server, const std::string& mode, const Words& more)
    : m_folder(NewServerFolder()), m_port(FreePort()) {
    std::ofstream file(m_folder / "pgbouncer.ini");
    // Whoever the server knows is let in, as the server itself does.
    file << "[databases]\n* = host=" << server.Folder().string() << " port=" << server.Port()
         << " auth_user=postgres\n[pgbouncer]\nlisten_addr = 127.0.0.1\nlisten_port = " << m_port
         << "\nunix_socket_dir =\nauth_type = trust\nauth_file = " << (m_folder / "users").string()
         << "\nauth_query = SELECT rolname, '' FROM pg_roles WHERE rolname = $1\n"
            "max_client_conn = 300\npool_mode = "
         << mode << '\n';
    for (const std::string& line : more)
        file << line << '\n';
    file.close();
    std::ofstream(m_folder / "users") << "\"postgres\" \"\"\n\"keeper\" \"\"\n";
    GiveToServerUser(m_folder);
    m_process = std::make_unique<ServerProcess>(
        Words{kProgram, (m_folder / "pgbouncer.ini").string()}, m_folder / "log");
    while (PQping(Uri().c_str()) != PQPING_OK) {
        if (!m_process->IsRunning())
            throw std::runtime_error("pgbouncer does not start: " + Log());
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

Pooler::~Pooler() {
    m_process.reset();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

std::string Pooler::Uri(const std::string& user, const std::string& more) const {
    return "postgresql://" + user + "@127.0.0.1:" + std::to_string(m_port) +
           "/gis?sslmode=disable" + more;
}

std::string Pooler::Log() const {
    std::ostringstream text;
    text << std::ifstream(m_folder / "log").rdbuf();
    return text.str();
}
