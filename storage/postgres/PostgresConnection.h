// SPDX-License-Identifier: MIT
// The server engine: a repository in a schema of its own in a database of a PostgreSQL server.
//
// What libpq can be told by URI, environment, service file and ~/.pgpass works as in psql.
// Where nobody said otherwise a server elsewhere must prove who it is (sslmode=verify-full).
#pragma once

#include "storage/Address.h"
#include "storage/SqlConnection.h"

#include <functional>

namespace Storage {

// Of a schema's name; the group roles' names begin with it, and a name has at most 63 bytes.
inline constexpr std::size_t kMaxSchemaName = 51;

struct PostgresOptions {
    int busyTimeoutMs = 10'000;    // how long a writer waits for another
    int silenceTimeoutMs = 60'000; // how long the server may say nothing while it is asked
    // Told when the server let the user in, before the repository is looked for.
    std::function<void(const ServerConnection&)> onSignedIn = {};
};

// Connects to the repository of a server's address; never makes one.  Problems: Configuration,
// Missing (no such server database, or no repository in it), NotAllowed, Unreachable.
std::unique_ptr<SqlConnection> OpenPostgres(const Address& address,
                                            const PostgresOptions& options = {});

// Makes the schema, what `fill` puts into it, and the two group roles, in one transaction; what
// is there already is left alone, but for rights that the roles are missing.
void CreatePostgres(const Address& address, const std::function<void(SqlConnection&)>& fill);

} // namespace Storage
