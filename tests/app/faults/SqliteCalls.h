// SPDX-License-Identifier: MIT
// Lets FailingCalls see the system calls of SQLite, too, each named "sqlite " and the call.
#pragma once

#include "support/FailingCalls.h"

namespace AppTest {

// From now on asks `calls`, which must live until other ones are set; null asks nobody.
void WatchSqlite(FailingCalls* calls);

} // namespace AppTest
