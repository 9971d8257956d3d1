// SPDX-License-Identifier: MIT
// The engines, by address: the one place that chooses between them.
#pragma once

#include "storage/Address.h"
#include "storage/SqlConnection.h"

#include <functional>

namespace Storage {

// Opens the repository, whose tables are then of a version that this program knows.
// Never makes one.  Throws what the engine's open function does, and NewerVersion.
std::unique_ptr<SqlConnection> OpenRepository(const Address& address);

// As OpenRepository, only to look: makes no file and changes none (see SqliteOptions).
// `onSignedIn` is told of a server as soon as that let the user in.
std::unique_ptr<SqlConnection>
LookIntoRepository(const Address& address,
                   const std::function<void(const ServerConnection&)>& onSignedIn = {});

// Throws what CreateRepository would, as far as it can be told before; makes nothing.
void CheckMayCreate(const Address& address);

// Makes an empty repository, whole or not at all; what is there already is left alone.
void CreateRepository(const Address& address);

} // namespace Storage
