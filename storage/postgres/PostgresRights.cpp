// SPDX-License-Identifier: MIT
#include "storage/postgres/PostgresRights.h"

#include "platform/text/Utf8.h"
#include "storage/StorageError.h"

#include <string>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;

// {schema}, {reader} and {admin} stand for quoted names.  What was granted beside this is taken
// away.  Nobody but the tables' owner may overwrite or remove a row: a row ends, and the head
// counts.
constexpr std::string_view kRights = R"(
REVOKE ALL ON SCHEMA {schema} FROM PUBLIC, {reader}, {admin};
GRANT USAGE ON SCHEMA {schema} TO {reader}, {admin};
REVOKE ALL ON {schema}.head, {schema}.revision, {schema}.content, {schema}.kind,
    {schema}.stored_file, {schema}.general_settings, {schema}.repository_item,
    {schema}.catalogue_item FROM PUBLIC, {reader}, {admin};
GRANT SELECT ON {schema}.head, {schema}.revision, {schema}.content, {schema}.kind,
    {schema}.stored_file, {schema}.general_settings, {schema}.repository_item,
    {schema}.catalogue_item TO {reader}, {admin};
GRANT INSERT ON {schema}.revision, {schema}.content, {schema}.kind, {schema}.stored_file,
    {schema}.general_settings, {schema}.repository_item, {schema}.catalogue_item TO {admin};
GRANT UPDATE (revision, last_id, content_bytes) ON {schema}.head TO {admin};
GRANT UPDATE (until_revision) ON {schema}.kind, {schema}.stored_file,
    {schema}.general_settings, {schema}.repository_item, {schema}.catalogue_item TO {admin};
)";

// A name as it stands in a statement.
std::string Quoted(CStringView name) {
    std::string quoted = "\"";
    for (const char c : ToUtf8(name))
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

CString ReaderRole(const CString& schema) {
    return schema + u"_reader";
}

CString AdminRole(const CString& schema) {
    return schema + u"_admin";
}

std::string Filled(std::string_view pattern, const CString& schema) {
    std::string text(pattern);
    const auto fill = [&](std::string_view gap, const std::string& value) {
        for (auto at = text.find(gap); at != std::string::npos; at = text.find(gap, at))
            text.replace(at, gap.size(), value);
    };
    fill("{schema}", Quoted(schema));
    fill("{reader}", Quoted(ReaderRole(schema)));
    fill("{admin}", Quoted(AdminRole(schema)));
    return text;
}

// What the server says before anything is made.
struct Circumstances {
    CString user;
    CString database;
    bool mayMakeSchema = false;
    bool mayMakeRoles = false;
    CString owner; // of the schema; empty: there is none
    bool isOwner = false;
    bool isRepository = false;
    bool isInUse = false; // by tables of somebody else's
    bool hasReader = false;
    bool hasAdmin = false;

    bool IsWholeOfAnother() const { return isRepository && !isOwner && hasReader && hasAdmin; }
};

Circumstances Look(SqlConnection& sql, const CString& schema) {
    const auto rows =
        sql.Query("WITH schema AS (SELECT oid, nspowner FROM pg_namespace WHERE nspname = $1) "
                  "SELECT current_user::text, current_database()::text, "
                  "has_database_privilege(current_database(), 'CREATE'), "
                  "(SELECT rolsuper OR rolcreaterole FROM pg_roles WHERE rolname = current_user), "
                  "(SELECT pg_get_userbyid(nspowner)::text FROM schema), "
                  "COALESCE((SELECT pg_has_role(nspowner, 'USAGE') FROM schema), false), "
                  "EXISTS (SELECT FROM pg_class c JOIN schema s ON c.relnamespace = s.oid "
                  "WHERE c.relname = 'head'), "
                  "EXISTS (SELECT FROM pg_class c JOIN schema s ON c.relnamespace = s.oid), "
                  "EXISTS (SELECT FROM pg_roles WHERE rolname = $2), "
                  "EXISTS (SELECT FROM pg_roles WHERE rolname = $3)",
                  {ToUtf8(schema), ToUtf8(ReaderRole(schema)), ToUtf8(AdminRole(schema))});
    rows->Next();
    Circumstances found;
    found.user = FromUtf8(rows->Text(0));
    found.database = FromUtf8(rows->Text(1));
    found.mayMakeSchema = rows->Integer(2) != 0;
    found.mayMakeRoles = rows->Integer(3) != 0;
    found.owner = rows->IsNull(4) ? CString() : FromUtf8(rows->Text(4));
    found.isOwner = rows->Integer(5) != 0;
    found.isRepository = rows->Integer(6) != 0;
    found.isInUse = rows->Integer(7) != 0 && !found.isRepository;
    found.hasReader = rows->Integer(8) != 0;
    found.hasAdmin = rows->Integer(9) != 0;
    return found;
}

[[noreturn]] void Forbid(MessageNumber number, std::vector<CString> values) {
    throw StorageError(Problem::NotAllowed, number, std::move(values));
}

CString MissingRoles(const Circumstances& found, const CString& schema) {
    CString missing = found.hasReader ? CString() : ReaderRole(schema);
    if (!found.hasAdmin)
        missing += (missing.empty() ? u"" : u", ") + AdminRole(schema);
    return missing;
}

void Check(const Circumstances& found, const CString& schema, const CString& repository) {
    const CString user = FromUtf8(Quoted(found.user));
    // Others work in this one too, and what they may would be taken from them.
    if (found.isInUse || schema == u"public")
        throw StorageError(Problem::Configuration, MessageNumber::SchemaInUse,
                           {schema, repository});
    if (found.owner.empty() && !found.mayMakeSchema)
        Forbid(MessageNumber::MayNotMakeSchema,
               {found.user, found.database,
                u"GRANT CREATE ON DATABASE " + FromUtf8(Quoted(found.database)) + u" TO " + user});
    if (!found.owner.empty() && !found.isOwner && !found.IsWholeOfAnother())
        Forbid(MessageNumber::SchemaOfAnother, {schema, repository, found.owner});
    const CString missing = MissingRoles(found, schema);
    if (!missing.empty() && !found.mayMakeRoles)
        Forbid(MessageNumber::MayNotMakeRoles,
               {found.user, missing, u"ALTER ROLE " + user + u" CREATEROLE"});
}

// What the server lets a user do, whatever lets it: also to a superuser and to an owner.
constexpr SqlText kUsers =
    "SELECT r.rolname::text, "
    "CASE WHEN NOT has_schema_privilege(r.oid, n.oid, 'USAGE') THEN 0 "
    "WHEN has_table_privilege(r.oid, c.oid, 'INSERT') THEN 2 "
    "WHEN has_table_privilege(r.oid, c.oid, 'SELECT') THEN 1 ELSE 0 END "
    "FROM pg_namespace n JOIN pg_class c ON c.relnamespace = n.oid AND c.relname = 'stored_file' "
    "CROSS JOIN pg_roles r WHERE n.nspname = $1 AND r.rolname NOT IN ($2, $3) AND "
    // A group that was made a member is a name that somebody gave a right to.
    "(r.rolcanlogin OR EXISTS (SELECT FROM pg_auth_members m JOIN pg_roles g ON g.oid = m.roleid "
    "WHERE m.member = r.oid AND g.rolname IN ($2, $3))) ORDER BY 1";

Right RightOf(SqlConnection& sql, CStringView user) {
    for (const RepositoryUser& each : UsersOf(sql))
        if (each.name == user)
            return each.right;
    return Right::None;
}

CString WordFor(Right right) {
    return right == Right::Admin ? u"admin" : right == Right::Reader ? u"reader" : u"none";
}

// Of an embedded repository: Refused.
CString SchemaOf(SqlConnection& sql) {
    const CString schema = sql.DescribeServer().schema;
    if (schema.empty())
        throw StorageError(Problem::Refused, MessageNumber::NoUsers, {sql.Name()});
    return schema;
}

void CheckUserAndRoles(SqlConnection& sql, const CString& user, const CString& schema) {
    const auto rows =
        sql.Query("SELECT EXISTS (SELECT FROM pg_roles WHERE rolname = $1), "
                  "(SELECT count(*) FROM pg_roles WHERE rolname IN ($2, $3))",
                  {ToUtf8(user), ToUtf8(ReaderRole(schema)), ToUtf8(AdminRole(schema))});
    rows->Next();
    if (rows->Integer(1) != 2)
        throw StorageError(Problem::Refused, MessageNumber::NoGroupRoles, {schema, sql.Name()});
    if (rows->Integer(0) == 0)
        throw StorageError(Problem::Refused, MessageNumber::NoSuchUser, {sql.Name(), user});
}

void ChangeMembership(SqlConnection& sql, const CString& user, const CString& schema, Right right) {
    const std::string name = Quoted(user);
    const auto statement = [&](bool grants, const CString& role) {
        return (grants ? "GRANT " : "REVOKE ") + Quoted(role) + (grants ? " TO " : " FROM ") + name;
    };
    const std::string reader = statement(right == Right::Reader, ReaderRole(schema));
    const std::string admin = statement(right == Right::Admin, AdminRole(schema));
    try {
        sql.RunScript(reader + "; " + admin);
    } catch (const StorageError& error) {
        if (error.Kind() != Problem::NotAllowed)
            throw;
        Forbid(MessageNumber::MayNotGrant, {sql.DescribeServer().user, sql.Name()});
    }
}

} // namespace

void CheckMayMake(SqlConnection& sql, const CString& schema) {
    Check(Look(sql, schema), schema, sql.Name());
}

void GrantToRoles(SqlConnection& sql, const CString& schema) {
    const Circumstances found = Look(sql, schema);
    if (found.IsWholeOfAnother())
        return;
    Check(found, schema, sql.Name());
    std::string script;
    if (!found.hasReader)
        script += "CREATE ROLE {reader} NOLOGIN;";
    if (!found.hasAdmin)
        script += "CREATE ROLE {admin} NOLOGIN;";
    sql.RunScript(Filled(script + std::string(kRights), schema));
}

void GrantRight(SqlConnection& sql, CStringView user, Right right) {
    const CString name(user);
    const CString schema = SchemaOf(sql);
    sql.BeginWrite();
    try {
        CheckUserAndRoles(sql, name, schema);
        ChangeMembership(sql, name, schema, right);
        const Right reached = RightOf(sql, name);
        if (reached != right)
            throw StorageError(Problem::Refused, MessageNumber::OtherRight,
                               {name, WordFor(right), WordFor(reached)});
        sql.Commit();
    } catch (...) {
        sql.Rollback();
        throw;
    }
}

std::vector<RepositoryUser> UsersOf(SqlConnection& sql) {
    const CString schema = SchemaOf(sql);
    std::vector<RepositoryUser> users;
    const auto rows =
        sql.Query(kUsers, {ToUtf8(schema), ToUtf8(ReaderRole(schema)), ToUtf8(AdminRole(schema))});
    while (rows->Next())
        if (rows->Integer(1) != 0)
            users.push_back({FromUtf8(rows->Text(0)), static_cast<Right>(rows->Integer(1))});
    return users;
}

} // namespace Storage
