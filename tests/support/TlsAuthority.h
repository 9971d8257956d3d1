// SPDX-License-Identifier: MIT
// Certificates for a test's server, made on the fly.
#pragma once

#include "support/TemporaryFolder.h"

#include <string>

// Somebody who signs certificates.
class TlsAuthority {
public:
    TlsAuthority();

    struct Server {
        std::filesystem::path certificate, key;
    };
    // For a server of that name; the files belong to the server's user.
    Server Sign(const std::string& host) const;
    // The authority's own, for clients to trust.
    std::filesystem::path Certificate() const { return m_folder.Native() / "ca.crt"; }

private:
    TemporaryFolder m_folder;
};
