// SPDX-License-Identifier: MIT
// The test of a connection, step by step, as the connection window shows it.
#pragma once

#include "ZEBXRepositoryStorage/ConnectionWindow.h"
#include "storage/Address.h"
#include "storage/Messages.h"

#include <functional>

namespace Storage {

// See IConnectionParameters::Test.  `placeOf` reads an address (RepositoryAccess::PlaceOf),
// `textOf` gives a message in the user's language.  Throws nothing of the storage's own.
std::vector<ConnectionStep> TestConnection(const Connection& connection,
                                           const std::function<Address(CStringView)>& placeOf,
                                           const std::function<CString(const Message&)>& textOf);

} // namespace Storage
