// SPDX-License-Identifier: MIT
// Catalogues and definitions, item by item, as tables for people.
#include "storage/store/Store.h"

#include "platform/text/Utf8.h"

namespace Storage {
namespace {

using Platform::FromUtf8;

StoredItem ReadStoredItem(SqlRows& rows) {
    StoredItem item;
    item.tag = FromUtf8(rows.Text(0));
    item.id = FromUtf8(rows.Text(1));
    item.parentId = FromUtf8(rows.Text(2));
    item.isGroup = rows.Integer(3) != 0;
    item.name = FromUtf8(rows.Text(4));
    item.sizeBytes = static_cast<std::int64_t>(rows.Text(5).size());
    item.files = rows.Integer(6);
    item.revision = rows.Integer(7);
    item.time = FromUtf8(rows.Text(8));
    return item;
}

std::vector<StoredItem> ReadStoredItems(std::unique_ptr<SqlRows> rows) {
    std::vector<StoredItem> items;
    while (rows->Next())
        items.push_back(ReadStoredItem(*rows));
    return items;
}

} // namespace

void Store::ListItems(std::vector<StoredItem>& catalogueItems,
                      std::vector<StoredItem>& definitions) {
    const ReadTransaction transaction(*m_sql);
    catalogueItems = ReadStoredItems(m_sql->Query(
        "SELECT i.catalogue_tag, i.item_id, i.parent_id, i.is_group, i.name, i.item_content, "
        "(SELECT COUNT(*) FROM stored_file f WHERE f.holder = i.id AND f.until_revision IS NULL), "
        "i.since_revision, r.made_at FROM catalogue_item i "
        "LEFT JOIN revision r ON r.number = i.since_revision "
        "WHERE i.until_revision IS NULL ORDER BY i.catalogue_tag, i.parent_id, i.position",
        {}));
    definitions = ReadStoredItems(m_sql->Query(
        "SELECT i.tag, i.item_id, '', 0, i.name, i.configuration_xml, "
        "(SELECT COUNT(*) FROM stored_file f WHERE f.holder = i.id AND f.until_revision IS NULL), "
        "i.since_revision, r.made_at FROM repository_item i "
        "LEFT JOIN revision r ON r.number = i.since_revision "
        "WHERE i.until_revision IS NULL ORDER BY i.tag, i.position",
        {}));
}

} // namespace Storage
