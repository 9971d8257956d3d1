// SPDX-License-Identifier: MIT
// A pgbouncer in front of a test's server.
#pragma once

#include "support/PrivateServer.h"

class Pooler {
public:
    // Empty when pgbouncer is installed.
    static std::string WhyNot();

    // `mode` "session" or "transaction"; `more`: lines of its configuration.
    Pooler(const PrivateServer& server, const std::string& mode, const Words& more = {});
    ~Pooler();

    // By TCP, not encrypted.
    std::string Uri(const std::string& user = "keeper", const std::string& more = {}) const;
    std::string Log() const;

private:
    std::filesystem::path m_folder;
    int m_port = 0;
    std::unique_ptr<ServerProcess> m_process;
};
