// SPDX-License-Identifier: MIT
// Who may do what with a repository on a server: two group roles beside its schema, of which the
// server's users are made members.  docs/storage.md says what each may.
//
// No operation needs a superuser: whoever makes a repository has to be allowed to make a schema
// (CREATE on the database) and roles (CREATEROLE), and is told which of them is missing.
#pragma once

#include "storage/SqlConnection.h"

#include <vector>

namespace Storage {

// Throws what would keep this user from making a repository in that schema, or from restoring
// its roles: NotAllowed, and Configuration when something else is kept there.  Makes nothing.
void CheckMayMake(SqlConnection& sql, const CString& schema);

// Makes the roles that are missing and gives them their rights to the repository's tables, those
// and no others, in the transaction that is open.  For somebody else's repository that has its
// roles: nothing.  Throws what CheckMayMake does.
void GrantToRoles(SqlConnection& sql, const CString& schema);

// See RepositoryAdministration, also of an embedded repository.
void GrantRight(SqlConnection& sql, CStringView user, Right right);
std::vector<RepositoryUser> UsersOf(SqlConnection& sql);

} // namespace Storage
