// SPDX-License-Identifier: MIT
// A file system for a server's tables that holds so much and no more; nothing where this process
// may mount none.
#pragma once

#include "support/PrivateServer.h"

#include <sys/mount.h>

class SmallDisk {
public:
    explicit SmallDisk(const char* size) : m_folder(NewServerFolder()) {
        m_mounted = mount("none", m_folder.c_str(), "tmpfs", 0, size) == 0;
        GiveToServerUser(m_folder);
    }
    ~SmallDisk() {
        if (m_mounted)
            umount2(m_folder.c_str(), MNT_DETACH);
        std::filesystem::remove_all(m_folder);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool IsMounted() const { return m_mounted; }
    void Resize(const char* size) const {
        mount("none", m_folder.c_str(), "tmpfs", MS_REMOUNT, size);
    }
    // Whatever tables that user makes from now on lie on it.
    void HoldTablesOf(const std::string& user, const PrivateServer& server) const {
        server.Run("CREATE TABLESPACE small LOCATION '" + m_folder.string() + "'");
        server.Run("GRANT CREATE ON TABLESPACE small TO " + user + "; ALTER ROLE " + user +
                   " SET default_tablespace = small");
    }

private:
    std::filesystem::path m_folder;
    bool m_mounted = false;
};
