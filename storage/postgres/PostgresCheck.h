// SPDX-License-Identifier: MIT
// The check of what a server keeps around a repository's rows: its tables, and who may do what.
#pragma once

#include "storage/SqlConnection.h"

namespace Storage {

// Tells what the server's catalogue says of the schema and should not, or does not say and should:
// columns with their types, not-null and other constraints, indexes and whether they are valid,
// foreign keys that are switched off, triggers, rules, row security, tables that a crash would
// empty, the two group roles, and what these and everybody may do.  Rights of other users are
// their owner's affair.  Needs no right but to read.  Begins and ends a transaction.
void CheckPostgres(SqlConnection& sql, const TellFinding& tell);

} // namespace Storage
