// SPDX-License-Identifier: MIT
#include "storage/Engine.h"

#include "storage/postgres/PostgresConnection.h"
#include "storage/sqlite/SqliteConnection.h"
#include "storage/store/Schema.h"

namespace Storage {

std::unique_ptr<SqlConnection> OpenRepository(const Address& address) {
    auto connection = address.IsServer() ? OpenPostgres(address) : OpenSqlite(address.path);
    CheckSchema(*connection);
    return connection;
}

std::unique_ptr<SqlConnection>
LookIntoRepository(const Address& address,
                   const std::function<void(const ServerConnection&)>& onSignedIn) {
    // Looking at a server changes nothing there.
    auto connection = address.IsServer() ? OpenPostgres(address, {.onSignedIn = onSignedIn})
                                         : OpenSqlite(address.path, {.isTrial = true});
    CheckSchema(*connection);
    return connection;
}

void CheckMayCreate(const Address& address) {
    if (!address.IsServer())
        CheckMayCreateSqlite(address.path);
}

void CreateRepository(const Address& address) {
    if (address.IsServer())
        CreatePostgres(address, CreateSchema);
    else
        CreateSqlite(address.path, CreateSchema);
}

} // namespace Storage
