// SPDX-License-Identifier: MIT
// The tables whose rows are valid since one revision and until another, as a copy moves them and
// a digest takes them in: one description for both, so that nothing is copied unseen.
#pragma once

#include "storage/SqlConnection.h"

#include <tuple>

namespace Storage {

// `columns` counts all of them; `until_revision` is the last one.
template<std::size_t columns>
struct CopiedTable {
    static constexpr std::size_t kColumns = columns;

    CStringView name;
    const char (&types)[columns + 1]; // a letter a column: i number, t text, b bytes
    std::size_t shown;                // the column by which people know a row

    SqlText added;  // rows that begin behind revision $1 and not behind $2, as they were at $2
    SqlText insert; // values in the same order
    SqlText ended;  // id and end of older rows that end there
    SqlText end;    // gives the row $1 its end
    SqlText all;    // every row, in order of id
};

#define ZEBX_COPIED_TABLE(columns, table, names, values, types, shown)                             \
    CopiedTable<columns> {                                                                         \
        u##table, types, shown,                                                                    \
            "SELECT " names ", CASE WHEN until_revision <= $2 THEN until_revision END FROM " table \
            " WHERE since_revision > $1 AND since_revision <= $2 ORDER BY id",                     \
            "INSERT INTO " table " (" names ", until_revision) VALUES (" values ")",               \
            "SELECT id, until_revision FROM " table " WHERE until_revision > $1 "                  \
            "AND until_revision <= $2 AND since_revision <= $1",                                   \
            "UPDATE " table " SET until_revision = $2 WHERE id = $1",                              \
            "SELECT " names ", until_revision FROM " table " ORDER BY id"                          \
    }

inline constexpr std::tuple kCopiedTables{
    ZEBX_COPIED_TABLE(6, "kind", "id, content_code, kind_id, message_number, since_revision",
                      "$1, $2, $3, $4, $5, $6", "iitiii", 2),
    ZEBX_COPIED_TABLE(13, "stored_file",
                      "id, holder, position, name, name_folded, file_manager_id, origin_id, "
                      "custom_parameter, file_type, size_bytes, hash, since_revision",
                      "$1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12, $13", "iiitttttiibii", 3),
    ZEBX_COPIED_TABLE(6, "general_settings", "id, name, size_bytes, hash, since_revision",
                      "$1, $2, $3, $4, $5, $6", "itibii", 1),
    ZEBX_COPIED_TABLE(13, "repository_item",
                      "id, tag, item_id, position, name, entity_type, topology_function, "
                      "topology_type, configuration_xml, repository_name, repository_tag, "
                      "since_revision",
                      "$1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12, $13", "ittitiiitttii", 2),
    ZEBX_COPIED_TABLE(11, "catalogue_item",
                      "id, catalogue_tag, item_id, parent_id, position, is_group, name, "
                      "catalogue_name, item_content, since_revision",
                      "$1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11", "itttiitttii", 2)};

#undef ZEBX_COPIED_TABLE

// The revisions have no end and their number for an id.
inline constexpr SqlText kAllRevisions =
    "SELECT number, made_at, user_name, workstation, program, operation, subject FROM revision "
    "ORDER BY number";
inline constexpr char kRevisionTypes[] = "itttttt";

template<typename Work>
void ForEachCopiedTable(Work work) {
    std::apply([&work](const auto&... table) { (work(table), ...); }, kCopiedTables);
}

// The value of a row's column, valid until the row's Next.
inline SqlValue ValueOf(SqlRows& row, std::string_view types, std::size_t column) {
    const int index = static_cast<int>(column);
    if (row.IsNull(index))
        return nullptr;
    switch (types[column]) {
    case 'i':
        return row.Integer(index);
    case 't':
        return row.Text(index);
    default:
        return SqlBytes(row.Bytes(index));
    }
}

} // namespace Storage
