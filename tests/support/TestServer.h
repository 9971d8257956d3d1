// SPDX-License-Identifier: MIT
// The one server that all tests of a run share, each with a schema of its own: CTest starts it
// before the first and stops it after the last (ZEBX_TEST_SERVER says where it stands); a test
// program that is started by hand has its own.
#pragma once

#include "support/PrivateServer.h"

#include <gtest/gtest.h>

// Skips the test, visibly, on a machine without a server's programs.  Not for a constructor that
// goes on after it.
#define ZEBX_NEEDS_SERVER()                                                                        \
    if (const std::string whyNot = PrivateServer::WhyNot(); !whyNot.empty())                       \
    GTEST_SKIP() << whyNot

class TestServer {
public:
    // Throws std::runtime_error with the server's words.
    static const TestServer& Shared();

    // See PrivateServer.
    std::string Uri(const std::string& user = "keeper", const std::string& schema = {},
                    const std::string& database = "gis") const;
    std::string Run(const std::string& sql) const { return RunAt(Uri("postgres"), sql); }

    // Of its Unix socket.
    const std::string& Folder() const { return m_folder; }
    int Port() const { return m_port; }

private:
    TestServer();

    std::unique_ptr<PrivateServer> m_own;
    std::string m_folder;
    int m_port = 0;
};

// The name of a schema of the shared server that nobody else has; the schema, the group roles of
// a repository in it, and every role whose name begins with it are dropped at the end.
class TestSchema {
public:
    TestSchema();
    ~TestSchema();
    TestSchema(const TestSchema&) = delete;
    TestSchema& operator=(const TestSchema&) = delete;

    const std::string& Name() const { return m_name; }
    // Of the repository, for one of the server's users; "keeper" makes it.
    std::string Uri(const std::string& user = "keeper") const;
    // Makes a user of the server who can log in and nothing else; gives his name.
    std::string MakeUser(const std::string& suffix) const;

private:
    std::string m_name;
};
