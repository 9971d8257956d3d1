// SPDX-License-Identifier: MIT
#include "storage/store/Schema.h"

#include "platform/text/Numbers.h"
#include "storage/StorageError.h"

#include <string>

namespace Storage {
namespace {

// {int}, {text}, {bytes} and {options} stand for the engine's own words.  A row is valid since one
// revision and until another; what has no until_revision is the current repository.
constexpr std::string_view kTables = R"(
CREATE TABLE head (
    id {int} PRIMARY KEY CHECK (id = 1),
    schema_version {int} NOT NULL,
    revision {int} NOT NULL,
    last_id {int} NOT NULL,
    content_bytes {int} NOT NULL
){options};

CREATE TABLE revision (
    number {int} PRIMARY KEY,
    made_at {text} NOT NULL,
    user_name {text} NOT NULL,
    workstation {text} NOT NULL,
    program {text} NOT NULL,
    operation {text} NOT NULL,
    subject {text} NOT NULL
){options};

CREATE TABLE content (
    hash {bytes} PRIMARY KEY NOT NULL,
    size_bytes {int} NOT NULL,
    bytes {bytes} NOT NULL
){options};

CREATE TABLE kind (
    id {int} PRIMARY KEY,
    content_code {int} NOT NULL,
    kind_id {text} NOT NULL,
    message_number {int} NOT NULL,
    since_revision {int} NOT NULL REFERENCES revision (number),
    until_revision {int} REFERENCES revision (number),
    CHECK (until_revision > since_revision)
){options};
CREATE UNIQUE INDEX kind_current ON kind (content_code, kind_id)
    WHERE until_revision IS NULL;

CREATE TABLE stored_file (
    id {int} PRIMARY KEY,
    holder {int},
    position {int} NOT NULL,
    name {text} NOT NULL,
    name_folded {text} NOT NULL,
    file_manager_id {text} NOT NULL,
    origin_id {text} NOT NULL,
    custom_parameter {text} NOT NULL,
    file_type {int} NOT NULL,
    size_bytes {int} NOT NULL,
    hash {bytes} NOT NULL REFERENCES content (hash),
    since_revision {int} NOT NULL REFERENCES revision (number),
    until_revision {int} REFERENCES revision (number),
    CHECK (until_revision > since_revision)
){options};
CREATE UNIQUE INDEX stored_file_current ON stored_file (file_type, origin_id, name_folded)
    WHERE holder IS NULL AND until_revision IS NULL;
CREATE INDEX stored_file_holder ON stored_file (holder, position)
    WHERE holder IS NOT NULL;

CREATE TABLE general_settings (
    id {int} PRIMARY KEY,
    name {text} NOT NULL,
    size_bytes {int} NOT NULL,
    hash {bytes} NOT NULL REFERENCES content (hash),
    since_revision {int} NOT NULL REFERENCES revision (number),
    until_revision {int} REFERENCES revision (number),
    CHECK (until_revision > since_revision)
){options};
CREATE UNIQUE INDEX general_settings_current ON general_settings (name)
    WHERE until_revision IS NULL;

CREATE TABLE repository_item (
    id {int} PRIMARY KEY,
    tag {text} NOT NULL,
    item_id {text} NOT NULL,
    position {int} NOT NULL,
    name {text} NOT NULL,
    entity_type {int} NOT NULL,
    topology_function {int} NOT NULL,
    topology_type {int} NOT NULL,
    configuration_xml {text} NOT NULL,
    repository_name {text} NOT NULL,
    repository_tag {text} NOT NULL,
    since_revision {int} NOT NULL REFERENCES revision (number),
    until_revision {int} REFERENCES revision (number),
    CHECK (until_revision > since_revision)
){options};
CREATE UNIQUE INDEX repository_item_current ON repository_item (tag, item_id)
    WHERE until_revision IS NULL;

CREATE TABLE catalogue_item (
    id {int} PRIMARY KEY,
    catalogue_tag {text} NOT NULL,
    item_id {text} NOT NULL,
    parent_id {text} NOT NULL,
    position {int} NOT NULL,
    is_group {int} NOT NULL,
    name {text} NOT NULL,
    catalogue_name {text} NOT NULL,
    item_content {text} NOT NULL,
    since_revision {int} NOT NULL REFERENCES revision (number),
    until_revision {int} REFERENCES revision (number),
    CHECK (until_revision > since_revision)
){options};
CREATE UNIQUE INDEX catalogue_item_current ON catalogue_item (catalogue_tag, item_id)
    WHERE until_revision IS NULL;
CREATE INDEX catalogue_item_children ON catalogue_item (catalogue_tag, parent_id, position)
    WHERE until_revision IS NULL;
)";

// What changed with a revision is found without reading every row: history and copying ask for
// little else.
constexpr std::string_view kIndexesOfVersion2 = R"(
CREATE INDEX kind_since ON kind (since_revision);
CREATE INDEX kind_until ON kind (until_revision) WHERE until_revision IS NOT NULL;
CREATE INDEX stored_file_since ON stored_file (since_revision);
CREATE INDEX stored_file_until ON stored_file (until_revision)
    WHERE until_revision IS NOT NULL;
CREATE INDEX general_settings_since ON general_settings (since_revision);
CREATE INDEX general_settings_until ON general_settings (until_revision)
    WHERE until_revision IS NOT NULL;
CREATE INDEX repository_item_since ON repository_item (since_revision);
CREATE INDEX repository_item_until ON repository_item (until_revision)
    WHERE until_revision IS NOT NULL;
CREATE INDEX catalogue_item_since ON catalogue_item (since_revision);
CREATE INDEX catalogue_item_until ON catalogue_item (until_revision)
    WHERE until_revision IS NOT NULL;
)";

void ReplaceAll(std::string& text, std::string_view what, std::string_view with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at))
        text.replace(at, what.size(), with);
}

// The version that `statement` gives, which this program knows.
std::int64_t KnownVersion(SqlConnection& sql, SqlText statement) {
    std::int64_t version = 0;
    try {
        const auto rows = sql.Query(statement, {});
        version = rows->Next() ? rows->Integer(0) : 0;
    } catch (const StorageError& error) {
        // An unknown table or column is the engine's complaint about the statement.
        if (error.Kind() != Problem::Internal)
            throw;
    }
    if (version < 1)
        throw StorageError(Problem::Integrity, MessageNumber::Damaged, {sql.Name(), u"head"});
    if (version > kSchemaVersion)
        throw StorageError(
            Problem::NewerVersion, MessageNumber::NewerVersion,
            {sql.Name(), Platform::ToText(version), Platform::ToText(kSchemaVersion)});
    return version;
}

// Waits until no other writer is left, and is refused who may not change tables.
std::int64_t LockedVersion(SqlConnection& sql) try {
    return KnownVersion(sql, "UPDATE head SET schema_version = schema_version WHERE id = 1 "
                             "RETURNING schema_version");
} catch (const StorageError& error) {
    const CString user = sql.DescribeServer().user;
    if (error.Kind() != Problem::NotAllowed || user.empty())
        throw;
    throw StorageError(Problem::NotAllowed, MessageNumber::MayNotUpgrade, {user, sql.Name()});
}

void BringUp(SqlConnection& sql, std::int64_t version) {
    if (version < 2)
        sql.RunScript(kIndexesOfVersion2);
    sql.Execute("UPDATE head SET schema_version = $1 WHERE id = 1", {kSchemaVersion});
}

} // namespace

void CreateSchema(SqlConnection& sql) {
    std::string tables(kTables);
    const SqlWords words = sql.Words();
    ReplaceAll(tables, "{int}", words.integer);
    ReplaceAll(tables, "{text}", words.text);
    ReplaceAll(tables, "{bytes}", words.bytes);
    ReplaceAll(tables, "{options}", words.tableOptions);
    sql.RunScript(tables);
    sql.RunScript(kIndexesOfVersion2);
    sql.Execute("INSERT INTO head (id, schema_version, revision, last_id, content_bytes) "
                "VALUES (1, $1, 0, 0, 0)",
                {kSchemaVersion});
}

std::int64_t CheckSchema(SqlConnection& sql) {
    return KnownVersion(sql, "SELECT schema_version FROM head WHERE id = 1");
}

Message OldTables(const CString& repository, std::int64_t version) {
    return {MessageNumber::OldTables,
            {repository, Platform::ToText(version), Platform::ToText(kSchemaVersion)}};
}

std::int64_t UpgradeSchema(SqlConnection& sql) {
    const std::int64_t seen = CheckSchema(sql);
    if (seen == kSchemaVersion)
        return seen;
    sql.BeginWrite();
    try {
        const std::int64_t version = LockedVersion(sql);
        if (version < kSchemaVersion)
            BringUp(sql, version);
        sql.Commit();
        return version;
    } catch (...) {
        sql.Rollback();
        throw;
    }
}

} // namespace Storage
