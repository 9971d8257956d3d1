// SPDX-License-Identifier: MIT
#include "storage/Engine.h"

#include "storage/Schema.h"
#include "storage/sqlite/SqliteConnection.h"

namespace Storage {

std::unique_ptr<SqlConnection> OpenRepository(const Address& address) {
    auto connection = OpenSqlite(address.path);
    CheckSchema(*connection);
    return connection;
}

std::unique_ptr<SqlConnection> LookIntoRepository(const Address& address) {
    auto connection = OpenSqlite(address.path, {.isTrial = true});
    CheckSchema(*connection);
    return connection;
}

void CheckMayCreate(const Address& address) {
    CheckMayCreateSqlite(address.path);
}

void CreateRepository(const Address& address) {
    CreateSqlite(address.path, CreateSchema);
}

} // namespace Storage
