// SPDX-License-Identifier: MIT
// The way to a server: what libpq is told beside the user's URI.
#pragma once

#include "storage/Address.h"

#include <libpq-fe.h>
#include <memory>

namespace Storage {

struct EndPostgres {
    void operator()(PGconn* connection) const { PQfinish(connection); }
};
using PostgresHandle = std::unique_ptr<PGconn, EndPostgres>;

// Connects, waiting at most for what the user or libpq's settings say (else 10 s a host).
// Throws what ThrowNoPostgresConnection does.
PostgresHandle LogIn(const Address& address);

// libpq's word for how much the server has to prove: "prefer", "verify-full".
CString TlsMode(PGconn* connection);

// Throws Configuration when libpq does not take the URI, or when there is a password in it.
void CheckServerUri(const CString& uri);

} // namespace Storage
