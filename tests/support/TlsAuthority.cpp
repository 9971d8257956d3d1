// SPDX-License-Identifier: MIT
#include "support/TlsAuthority.h"

#include "support/ServerProcess.h"

namespace {

Words Request(const std::string& name) {
    return {"/usr/bin/openssl",
            "req",
            "-x509",
            "-newkey",
            "ec",
            "-pkeyopt",
            "ec_paramgen_curve:prime256v1",
            "-nodes",
            "-days",
            "2",
            "-subj",
            "/CN=" + name};
}

} // namespace

TlsAuthority::TlsAuthority() {
    GiveToServerUser(m_folder.Native());
    Words words = Request("the test's authority");
    words.insert(words.end(), {"-keyout", (m_folder.Native() / "ca.key").string(), "-out",
                               Certificate().string()});
    RunServerProgram(words);
}

TlsAuthority::Server TlsAuthority::Sign(const std::string& host) const {
    const Server server{m_folder.Native() / (host + ".crt"), m_folder.Native() / (host + ".key")};
    Words words = Request(host);
    words.insert(words.end(),
                 {"-CA", Certificate().string(), "-CAkey", (m_folder.Native() / "ca.key").string(),
                  "-addext", "subjectAltName=DNS:" + host, "-addext", "basicConstraints=CA:FALSE",
                  "-keyout", server.key.string(), "-out", server.certificate.string()});
    RunServerProgram(words);
    std::filesystem::permissions(server.key, std::filesystem::perms(0600));
    return server;
}
