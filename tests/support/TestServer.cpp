// SPDX-License-Identifier: MIT
#include "support/TestServer.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <libpq-fe.h>
#include <unistd.h>

const TestServer& TestServer::Shared() {
    static const TestServer server;
    return server;
}

TestServer::TestServer() {
    const char* where = getenv("ZEBX_TEST_SERVER");
    std::ifstream file(where ? where : "");
    if (file >> m_folder >> m_port && PQping(Uri("postgres").c_str()) == PQPING_OK)
        return;
    m_own = std::make_unique<PrivateServer>();
    m_folder = m_own->Folder();
    m_port = m_own->Port();
}

std::string TestServer::Uri(const std::string& user, const std::string& schema,
                            const std::string& database) const {
    return "postgresql://" + user + "@/" + database + "?host=" + EncodedForUri(m_folder) +
           "&port=" + std::to_string(m_port) +
           (schema.empty() ? "" : "&options=-czebx.schema%3D" + schema);
}

TestSchema::TestSchema() {
    static std::atomic<int> count = 0;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    m_name = "t" + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(now).count()) +
             "_" + std::to_string(getpid()) + "_" + std::to_string(++count);
}

TestSchema::~TestSchema() {
    // A test that was skipped made nothing.
    if (!PrivateServer::WhyNot().empty())
        return;
    try {
        TestServer::Shared().Run("DO $$ DECLARE name text; BEGIN "
                                 "SET LOCAL client_min_messages = error; "
                                 "EXECUTE 'DROP SCHEMA IF EXISTS " +
                                 m_name +
                                 " CASCADE'; "
                                 "FOR name IN SELECT rolname FROM pg_roles WHERE rolname LIKE '" +
                                 m_name +
                                 "\\_%' LOOP "
                                 "EXECUTE 'DROP OWNED BY ' || quote_ident(name) || ' CASCADE'; "
                                 "EXECUTE 'DROP ROLE ' || quote_ident(name); "
                                 "END LOOP; END $$");
    } catch (const std::exception& error) {
        ADD_FAILURE() << "the schema " << m_name << " stays: " << error.what();
    }
}

std::string TestSchema::Uri(const std::string& user) const {
    return TestServer::Shared().Uri(user, m_name);
}

std::string TestSchema::MakeUser(const std::string& suffix) const {
    const std::string user = m_name + "_" + suffix;
    TestServer::Shared().Run("CREATE ROLE " + user + " LOGIN");
    return user;
}
