// SPDX-License-Identifier: MIT
// Catalogue items, by the tag of their catalogue.
#include "storage/store/Store.h"

#include "platform/text/Utf8.h"
#include "storage/store/ItemsWithFiles.h"

namespace Storage {
namespace {

using Platform::ToUtf8;
using Repository::CNetCatalogueItem;

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
                        const std::optional<CatalogueRow>& old) {
    const bool stays = old && old->item->GetParentId() == item.GetParentId();
    return stays ? old->position : id;
}

void InsertItem(WriteCall& call, const CNetCatalogueItem& item,
                const std::vector<FileRecord>& files, const std::optional<CatalogueRow>& old) {
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

// An item and all below it.  UNION, not UNION ALL: parents that form a loop must come to an end.
#define ZEBX_WITH_BRANCH                                                                           \
    "WITH RECURSIVE branch (item_id) AS (SELECT i.item_id FROM catalogue_item i "                  \
    "WHERE i.catalogue_tag = $1 AND i.item_id = $2 AND i.until_revision IS NULL UNION "            \
    "SELECT c.item_id FROM catalogue_item c JOIN branch b ON c.parent_id = b.item_id "             \
    "WHERE c.catalogue_tag = $1 AND c.until_revision IS NULL) "

CString SubjectOf(CStringView tag, CStringView id) {
    return CString(tag) + u"/" + CString(id);
}

} // namespace

std::vector<CatalogueItemPtr> Store::CatalogueChildren(CStringView tag, CStringView parentId,
                                                       bool withFiles) {
    auto items = parentId.empty() ? std::nullopt : m_catalogueAhead.Children(*m_sql, tag, parentId);
    if (!items && ReadCatalogueAhead(tag, parentId))
        items = m_catalogueAhead.Children(*m_sql, tag, parentId);
    if (!items)
        return ChildrenNow(tag, parentId, withFiles);
    if (withFiles)
        for (const CatalogueItemPtr& item : *items)
            m_catalogueAhead.AttachFiles(*m_sql, *item, m_options.leftOut);
    return std::move(*items);
}

// Whether the whole catalogue was read, as of now.
bool Store::ReadCatalogueAhead(CStringView tag, CStringView parentId) {
    if (!m_sql->MayAskAhead() || !m_catalogueAhead.IsWorthReading(tag, parentId))
        return false;
    m_sql->WatchChanges(); // before it is read: what comes between counts as a change
    const ReadTransaction transaction(*m_sql);
    return m_catalogueAhead.Read(*m_sql, tag);
}

std::vector<CatalogueItemPtr> Store::ChildrenNow(CStringView tag, CStringView parentId,
                                                 bool withFiles) {
    return ItemsWithFiles(
        *m_sql, m_heldContents, m_options.leftOut,
        [&] { return CatalogueQuery::Children(*m_sql, tag, parentId); },
        [&] {
            return withFiles
                       ? std::optional(RecordQuery::OfCatalogueChildren(*m_sql, tag, parentId))
                       : std::nullopt;
        });
}

CatalogueItemPtr Store::CatalogueItem(CStringView tag, CStringView id, bool withFiles) {
    CatalogueItemPtr item = m_catalogueAhead.Item(*m_sql, tag, id);
    if (!item && ReadCatalogueAhead(tag, id))
        item = m_catalogueAhead.Item(*m_sql, tag, id);
    if (!item)
        return ItemNow(tag, id, withFiles);
    if (withFiles)
        m_catalogueAhead.AttachFiles(*m_sql, *item, m_options.leftOut);
    return item;
}

CatalogueItemPtr Store::ItemNow(CStringView tag, CStringView id, bool withFiles) {
    const auto items = ItemsWithFiles(
        *m_sql, m_heldContents, m_options.leftOut,
        [&] { return CatalogueQuery::ById(*m_sql, tag, id); },
        [&] {
            return withFiles ? std::optional(RecordQuery::OfCatalogueItem(*m_sql, tag, id))
                             : std::nullopt;
        });
    return items.empty() ? CatalogueItemPtr() : items.front();
}

void Store::AddCatalogueItem(CNetCatalogueItem& item) {
    CheckItem(item);
    const CString tag = item.GetCatalogueTag();
    const CString id = item.GetCatalogueId();
    const CString owner = SubjectOf(tag, id);
    SentFiles sent(CheckHeldFiles(*item.GetFiles(), owner, m_options.maxFileBytes), owner);
    WriteCall call = Write("AddCatalogItem", owner);
    CatalogueQuery query = CatalogueQuery::ById(*m_sql, tag, id);
    RecordQuery records = RecordQuery::OfCatalogueItem(*m_sql, tag, id);
    sent.AskKnown(*m_sql);
    call.TakeTurn();
    const auto old = query.ReadOne();
    if (PlainRecords(records.Read()) == sent.Records() && old && IsSame(*old->item, item))
        return;
    sent.Keep(call);
    InsertItem(call, item, sent.Records(), old);
    call.Commit();
}

void Store::DeleteCatalogueItem(CStringView tag, CStringView id) {
    WriteCall call = Write("DeleteCatalogItem", SubjectOf(tag, id));
    CatalogueQuery query = CatalogueQuery::ById(*m_sql, tag, id);
    call.TakeTurn();
    if (!query.ReadOne())
        throw StorageError(Problem::Refused, MessageNumber::NoSuchItem,
                           {CString(id), CString(tag)});
    m_sql->Execute(ZEBX_WITH_BRANCH
                   "UPDATE stored_file SET until_revision = $3 WHERE holder IN "
                   "(SELECT c.id FROM catalogue_item c JOIN branch b ON c.item_id = b.item_id "
                   "WHERE c.catalogue_tag = $1 AND c.until_revision IS NULL)",
                   {ToUtf8(tag), ToUtf8(id), call.Revision()});
    m_sql->Execute(ZEBX_WITH_BRANCH
                   "UPDATE catalogue_item SET until_revision = $3 WHERE catalogue_tag = $1 "
                   "AND until_revision IS NULL AND item_id IN (SELECT item_id FROM branch)",
                   {ToUtf8(tag), ToUtf8(id), call.Revision()});
    call.Commit();
}

} // namespace Storage
