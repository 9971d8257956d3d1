// SPDX-License-Identifier: MIT
#include "storage/store/CatalogueRows.h"

#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;

#define ZEBX_SELECT_ITEMS                                                                          \
    "SELECT id, position, catalogue_tag, item_id, parent_id, is_group, name, catalogue_name, "     \
    "item_content FROM catalogue_item WHERE catalogue_tag = $1 AND until_revision IS NULL "

CatalogueRow ReadItem(SqlRows& rows) {
    CatalogueRow row{rows.Integer(0), rows.Integer(1),
                     boost::make_shared<Repository::CNetCatalogueItem>()};
    row.item->SetCatalogueTag(FromUtf8(rows.Text(2)).c_str());
    row.item->SetCatalogueId(FromUtf8(rows.Text(3)).c_str());
    row.item->SetParentId(FromUtf8(rows.Text(4)).c_str());
    row.item->SetIsGroup(static_cast<std::int32_t>(rows.Integer(5)));
    row.item->SetName(FromUtf8(rows.Text(6)).c_str());
    row.item->SetCatalogueName(FromUtf8(rows.Text(7)).c_str());
    row.item->SetItemContent(FromUtf8(rows.Text(8)).c_str());
    return row;
}

} // namespace

CatalogueQuery CatalogueQuery::ById(SqlConnection& sql, CStringView tag, CStringView id) {
    return CatalogueQuery(
        sql.Query(ZEBX_SELECT_ITEMS "AND item_id = $2", {ToUtf8(tag), ToUtf8(id)}));
}

CatalogueQuery CatalogueQuery::Children(SqlConnection& sql, CStringView tag, CStringView parentId) {
    return CatalogueQuery(sql.Query(ZEBX_SELECT_ITEMS "AND parent_id = $2 ORDER BY position",
                                    {ToUtf8(tag), ToUtf8(parentId)}));
}

CatalogueQuery CatalogueQuery::All(SqlConnection& sql, CStringView tag) {
    return CatalogueQuery(sql.Query(ZEBX_SELECT_ITEMS "ORDER BY position", {ToUtf8(tag)}));
}

std::vector<CatalogueRow> CatalogueQuery::Read() {
    std::vector<CatalogueRow> rows;
    while (m_rows->Next())
        rows.push_back(ReadItem(*m_rows));
    m_rows.reset();
    return rows;
}

std::optional<CatalogueRow> CatalogueQuery::ReadOne() {
    const auto rows = std::exchange(m_rows, nullptr);
    return rows->Next() ? std::optional(ReadItem(*rows)) : std::nullopt;
}

} // namespace Storage
