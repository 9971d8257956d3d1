// SPDX-License-Identifier: MIT
// A workstation with a repository on a private server, whose users need passwords.
#pragma once

#include "../Station.h"
#include "support/TestServer.h"

#include <fstream>

namespace AppTest {

inline constexpr char kPassword[] = "tajna-Zaporka-4711";

class ServerStation {
public:
    explicit ServerStation(ServerOptions options = {.access = "scram-sha-256"})
        : server(std::move(options)) {
        server.Run(std::string("ALTER ROLE keeper PASSWORD '") + kPassword + "'");
        station.Set("PGPASSFILE", PasswordFile());
        WritePassword(kPassword);
    }
    void WritePassword(const std::string& password) const {
        std::ofstream(PasswordFile()) << "*:*:*:*:" << password << '\n';
        fs::permissions(PasswordFile(), fs::perms(0600));
    }
    fs::path PasswordFile() const { return station.Folder() / "pgpass"; }
    std::string Uri() const { return server.TcpUri(); }
    void Connect() const {
        const Ended run = station.Zebx({"connect", "--create", Uri()});
        EXPECT_EQ(run.status, 0) << run;
    }
    // Sends or loads what Draw draws.
    Ended Transfer(const std::string& verb) const {
        return station.Zebx({verb, "ncf:001_LABEL", "ncf:002_NODE", "--verbose"});
    }
    // Files of two kinds.
    void Draw(const std::string& what, int count = 20) const {
        for (int i = 0; i < count; ++i) {
            const std::string name = "block" + std::to_string(i) + ".dwg";
            Write(station.Support() / "nodes" / name, what + std::to_string(i));
            Write(station.Support() / "label" / name, what + std::to_string(i));
        }
    }

    Station station;
    PrivateServer server;
};

} // namespace AppTest
