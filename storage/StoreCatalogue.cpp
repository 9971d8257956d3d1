// SPDX-License-Identifier: MIT
// Catalogue items, by the tag of their catalogue.
#include "storage/Store.h"

#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;
using Repository::CNetCatalogueItem;

struct ItemRow {
    std::int64_t id;
    std::int64_t position;
    CatalogueItemPtr item; // without its files
};

ItemRow ReadItem(SqlRows& rows) {
    ItemRow row{rows.Integer(0), rows.Integer(1), boost::make_shared<CNetCatalogueItem>()};
    row.item->SetCatalogueTag(FromUtf8(rows.Text(2)).c_str());
    row.item->SetCatalogueId(FromUtf8(rows.Text(3)).c_str());
    row.item->SetParentId(FromUtf8(rows.Text(4)).c_str());
    row.item->SetIsGroup(static_cast<std::int32_t>(rows.Integer(5)));
    row.item->SetName(FromUtf8(rows.Text(6)).c_str());
    row.item->SetCatalogueName(FromUtf8(rows.Text(7)).c_str());
    row.item->SetItemContent(FromUtf8(rows.Text(8)).c_str());
    return row;
}

std::optional<ItemRow> FindItem(SqlConnection& sql, CStringView tag, CStringView id) {
    const auto rows =
        sql.Query("SELECT id, position, catalogue_tag, item_id, parent_id, is_group, name, "
                  "catalogue_name, item_content FROM catalogue_item "
                  "WHERE catalogue_tag = $1 AND item_id = $2 AND until_revision IS NULL",
                  {ToUtf8(tag), ToUtf8(id)});
    return rows->Next() ? std::optional(ReadItem(*rows)) : std::nullopt;
}

bool IsSame(const CNetCatalogueItem& left, const CNetCatalogueItem& right) {
    return left.GetParentId() == right.GetParentId() && left.GetIsGroup() == right.GetIsGroup() &&
           left.GetName() == right.GetName() &&
           left.GetCatalogueName() == right.GetCatalogueName() &&
           left.GetItemContent() == right.GetItemContent();
}

void CheckItem(const CNetCatalogueItem& item) {
    // Nothing could tell such an item from the top level.
    if (item.GetCatalogueId().empty())
        throw StorageError(Problem::Refused, MessageNumber::NoId,
                           {item.GetName(), item.GetCatalogueTag()});
    CheckTexts({item.GetCatalogueTag(), item.GetCatalogueId(), item.GetParentId(), item.GetName(),
                item.GetCatalogueName(), item.GetItemContent()},
               item.GetName(), item.GetCatalogueTag());
}

void EndItem(WriteCall& call, std::int64_t id) {
    call.Sql().Execute("UPDATE catalogue_item SET until_revision = $2 WHERE id = $1",
                       {id, call.Revision()});
    EndHeldFiles(call, id);
}

// An item that comes again keeps its place among its siblings.
std::int64_t PositionOf(const CNetCatalogueItem& item, std::int64_t id,
                        const std::optional<ItemRow>& old) {
    const bool stays = old && old->item->GetParentId() == item.GetParentId();
    return stays ? old->position : id;
}

void InsertItem(WriteCall& call, const CNetCatalogueItem& item,
                const std::vector<FileRecord>& files, const std::optional<ItemRow>& old) {
    if (old)
        EndItem(call, old->id);
    const std::int64_t id = call.NewId();
    call.Sql().Execute(
        "INSERT INTO catalogue_item (id, catalogue_tag, item_id, parent_id, position, is_group, "
        "name, catalogue_name, item_content, since_revision) "
        "VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10)",
        {id, ToUtf8(item.GetCatalogueTag()), ToUtf8(item.GetCatalogueId()),
         ToUtf8(item.GetParentId()), PositionOf(item, id, old), item.GetIsGroup(),
         ToUtf8(item.GetName()), ToUtf8(item.GetCatalogueName()), ToUtf8(item.GetItemContent()),
         call.Revision()});
    InsertHeldFiles(call, id, files);
}

CString SubjectOf(CStringView tag, CStringView id) {
    return CString(tag) + u"/" + CString(id);
}

} // namespace

std::vector<CatalogueItemPtr> Store::CatalogueChildren(CStringView tag, CStringView parentId,
                                                       bool withFiles) {
    const ReadTransaction transaction(*m_sql);
    std::vector<CatalogueItemPtr> items;
    FileLists lists;
    {
        const auto rows = m_sql->Query(
            "SELECT id, position, catalogue_tag, item_id, parent_id, is_group, name, "
            "catalogue_name, item_content FROM catalogue_item WHERE catalogue_tag = $1 "
            "AND parent_id = $2 AND until_revision IS NULL ORDER BY position",
            {ToUtf8(tag), ToUtf8(parentId)});
        while (rows->Next()) {
            const ItemRow row = ReadItem(*rows);
            lists[row.id] = row.item->GetFiles();
            items.push_back(row.item);
        }
    }
    if (withFiles)
        AttachFiles(FileReader::OfCatalogueChildren(*m_sql, tag, parentId), lists,
                    m_options.leftOut);
    return items;
}

CatalogueItemPtr Store::CatalogueItem(CStringView tag, CStringView id, bool withFiles) {
    const ReadTransaction transaction(*m_sql);
    const auto row = FindItem(*m_sql, tag, id);
    if (!row)
        return {};
    if (withFiles)
        AttachFiles(FileReader::OfHolder(*m_sql, row->id), {{row->id, row->item->GetFiles()}},
                    m_options.leftOut);
    return row->item;
}

void Store::AddCatalogueItem(CNetCatalogueItem& item) {
    CheckItem(item);
    const CString owner = SubjectOf(item.GetCatalogueTag(), item.GetCatalogueId());
    const auto held = CheckHeldFiles(*item.GetFiles(), owner, m_options.maxFileBytes);
    WriteCall call = Write("AddCatalogItem", owner);
    const auto old = FindItem(*m_sql, item.GetCatalogueTag(), item.GetCatalogueId());
    const auto files = KeepContents(call, held, owner);
    if (old && IsSame(*old->item, item) && HeldRecords(*m_sql, old->id) == files)
        return;
    InsertItem(call, item, files, old);
    call.Commit();
}

void Store::DeleteCatalogueItem(CStringView tag, CStringView id) {
    WriteCall call = Write("DeleteCatalogItem", SubjectOf(tag, id));
    if (!FindItem(*m_sql, tag, id))
        throw StorageError(Problem::Refused, MessageNumber::NoSuchItem,
                           {CString(id), CString(tag)});
    // UNION, not UNION ALL: parents that form a loop must come to an end.
    m_sql->Execute(
        "WITH RECURSIVE branch (item_id) AS (SELECT i.item_id FROM catalogue_item i "
        "WHERE i.catalogue_tag = $1 AND i.item_id = $2 AND i.until_revision IS NULL UNION "
        "SELECT c.item_id FROM catalogue_item c JOIN branch b "
        "ON c.parent_id = b.item_id "
        "WHERE c.catalogue_tag = $1 AND c.until_revision IS NULL) "
        "UPDATE stored_file SET until_revision = $3 WHERE holder IN "
        "(SELECT c.id FROM catalogue_item c JOIN branch b ON c.item_id = b.item_id "
        "WHERE c.catalogue_tag = $1 AND c.until_revision IS NULL)",
        {ToUtf8(tag), ToUtf8(id), call.Revision()});
    m_sql->Execute(
        "WITH RECURSIVE branch (item_id) AS (SELECT i.item_id FROM catalogue_item i "
        "WHERE i.catalogue_tag = $1 AND i.item_id = $2 AND i.until_revision IS NULL UNION "
        "SELECT c.item_id FROM catalogue_item c JOIN branch b "
        "ON c.parent_id = b.item_id "
        "WHERE c.catalogue_tag = $1 AND c.until_revision IS NULL) "
        "UPDATE catalogue_item SET until_revision = $3 WHERE catalogue_tag = $1 "
        "AND until_revision IS NULL AND item_id IN (SELECT item_id FROM branch)",
        {ToUtf8(tag), ToUtf8(id), call.Revision()});
    call.Commit();
}

} // namespace Storage
