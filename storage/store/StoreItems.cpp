// SPDX-License-Identifier: MIT
// Definitions, by the tag of their definition repository.
#include "storage/store/Store.h"

#include "platform/text/Utf8.h"
#include "storage/store/ItemsWithFiles.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;
using Repository::CNetRepositoryItem;

struct ItemRow {
    std::int64_t id;
    std::int64_t position;
    RepositoryItemPtr item; // without its files
};

ItemRow ReadItem(SqlRows& rows) {
    ItemRow row{rows.Integer(0), rows.Integer(1), boost::make_shared<CNetRepositoryItem>()};
    row.item->SetId(FromUtf8(rows.Text(2)).c_str());
    row.item->SetName(FromUtf8(rows.Text(3)).c_str());
    row.item->SetEntityType(static_cast<std::int32_t>(rows.Integer(4)));
    row.item->SetTopologyFunction(static_cast<std::int32_t>(rows.Integer(5)));
    row.item->SetTopologyType(static_cast<std::int32_t>(rows.Integer(6)));
    row.item->SetConfigurationXML(FromUtf8(rows.Text(7)).c_str());
    row.item->SetRepositoryName(FromUtf8(rows.Text(8)).c_str());
    row.item->SetRepositoryTag(FromUtf8(rows.Text(9)).c_str());
    return row;
}

#define ZEBX_SELECT_ITEMS                                                                          \
    "SELECT id, position, item_id, name, entity_type, topology_function, topology_type, "          \
    "configuration_xml, repository_name, repository_tag FROM repository_item "                     \
    "WHERE tag = $1 AND until_revision IS NULL "

// Current items, asked for at once and read later.
class ItemQuery {
public:
    static ItemQuery ById(SqlConnection& sql, CStringView tag, CStringView id) {
        return ItemQuery(
            sql.Query(ZEBX_SELECT_ITEMS "AND item_id = $2", {ToUtf8(tag), ToUtf8(id)}));
    }
    // In order of arrival.
    static ItemQuery All(SqlConnection& sql, CStringView tag) {
        return ItemQuery(sql.Query(ZEBX_SELECT_ITEMS "ORDER BY position", {ToUtf8(tag)}));
    }

    std::vector<ItemRow> Read() {
        std::vector<ItemRow> rows;
        while (m_rows->Next())
            rows.push_back(ReadItem(*m_rows));
        m_rows.reset();
        return rows;
    }
    // The first, or nothing.
    std::optional<ItemRow> ReadOne() {
        const auto rows = std::exchange(m_rows, nullptr);
        return rows->Next() ? std::optional(ReadItem(*rows)) : std::nullopt;
    }

private:
    explicit ItemQuery(std::unique_ptr<SqlRows> rows) : m_rows(std::move(rows)) {}
    std::unique_ptr<SqlRows> m_rows;
};

ItemRow ReadOrThrow(ItemQuery& query, CStringView tag, CStringView id) {
    if (const auto row = query.ReadOne())
        return *row;
    throw StorageError(Problem::Refused, MessageNumber::NoSuchItem, {CString(id), CString(tag)});
}

bool IsSame(const CNetRepositoryItem& left, const CNetRepositoryItem& right) {
    return left.GetName() == right.GetName() && left.GetEntityType() == right.GetEntityType() &&
           left.GetTopologyFunction() == right.GetTopologyFunction() &&
           left.GetTopologyType() == right.GetTopologyType() &&
           left.GetConfigurationXML() == right.GetConfigurationXML() &&
           left.GetRepositoryName() == right.GetRepositoryName() &&
           left.GetRepositoryTag() == right.GetRepositoryTag();
}

void CheckItem(const CNetRepositoryItem& item, CStringView tag) {
    if (item.GetId().empty())
        throw StorageError(Problem::Refused, MessageNumber::NoId, {item.GetName(), CString(tag)});
    CheckTexts({tag, item.GetId(), item.GetName(), item.GetConfigurationXML(),
                item.GetRepositoryName(), item.GetRepositoryTag()},
               item.GetName(), tag);
}

void EndItem(WriteCall& call, std::int64_t id) {
    call.Sql().Execute("UPDATE repository_item SET until_revision = $2 WHERE id = $1",
                       {id, call.Revision()});
    EndHeldFiles(call, id);
}

// `old`: the row that the new one replaces, and whose place it takes.
void InsertItem(WriteCall& call, CStringView tag, const CNetRepositoryItem& item,
                const std::vector<FileRecord>& files, const std::optional<ItemRow>& old) {
    if (old)
        EndItem(call, old->id);
    const std::int64_t id = call.NewId();
    call.Sql().Execute(
        "INSERT INTO repository_item (id, tag, item_id, position, name, entity_type, "
        "topology_function, topology_type, configuration_xml, repository_name, repository_tag, "
        "since_revision) VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12)",
        {id, ToUtf8(tag), ToUtf8(item.GetId()), old ? old->position : id, ToUtf8(item.GetName()),
         item.GetEntityType(), item.GetTopologyFunction(), item.GetTopologyType(),
         ToUtf8(item.GetConfigurationXML()), ToUtf8(item.GetRepositoryName()),
         ToUtf8(item.GetRepositoryTag()), call.Revision()});
    InsertHeldFiles(call, id, files);
}

CString SubjectOf(CStringView tag, CStringView id) {
    return CString(tag) + u"/" + CString(id);
}

} // namespace

std::vector<RepositoryItemPtr> Store::RepositoryItems(CStringView tag) {
    return ItemsWithFiles(
        *m_sql, m_heldContents, m_options.leftOut, [&] { return ItemQuery::All(*m_sql, tag); },
        [&] { return RecordQuery::OfRepositoryItems(*m_sql, tag); });
}

RepositoryItemPtr Store::RepositoryItem(CStringView tag, CStringView id) {
    const auto items = ItemsWithFiles(
        *m_sql, m_heldContents, m_options.leftOut, [&] { return ItemQuery::ById(*m_sql, tag, id); },
        [&] { return RecordQuery::OfRepositoryItem(*m_sql, tag, id); });
    return items.empty() ? RepositoryItemPtr() : items.front();
}

void Store::AddRepositoryItem(CStringView tag, CNetRepositoryItem& item) {
    CheckItem(item, tag);
    const CString owner = SubjectOf(tag, item.GetId());
    SentFiles sent(CheckHeldFiles(*item.GetFiles(), owner, m_options.maxFileBytes), owner);
    WriteCall call = Write("AddRepositoryItem", owner);
    ItemQuery query = ItemQuery::ById(*m_sql, tag, item.GetId());
    RecordQuery records = RecordQuery::OfRepositoryItem(*m_sql, tag, item.GetId());
    sent.AskKnown(*m_sql);
    call.TakeTurn();
    const auto old = query.ReadOne();
    if (PlainRecords(records.Read()) == sent.Records() && old && IsSame(*old->item, item))
        return;
    sent.Keep(call);
    InsertItem(call, tag, item, sent.Records(), old);
    call.Commit();
}

void Store::RenameRepositoryItem(CStringView tag, CStringView id, CStringView newName) {
    CheckTexts({tag, id, newName}, newName, tag);
    WriteCall call = Write("RenameRepositoryItem", SubjectOf(tag, id));
    ItemQuery query = ItemQuery::ById(*m_sql, tag, id);
    RecordQuery records = RecordQuery::OfRepositoryItem(*m_sql, tag, id);
    call.TakeTurn();
    const ItemRow old = ReadOrThrow(query, tag, id);
    if (old.item->GetName() == newName)
        return;
    old.item->SetName(CString(newName).c_str());
    InsertItem(call, tag, *old.item, PlainRecords(records.Read()), old);
    call.Commit();
}

void Store::DeleteRepositoryItem(CStringView tag, CStringView id) {
    WriteCall call = Write("DeleteRepositoryItem", SubjectOf(tag, id));
    ItemQuery query = ItemQuery::ById(*m_sql, tag, id);
    call.TakeTurn();
    EndItem(call, ReadOrThrow(query, tag, id).id);
    call.Commit();
}

} // namespace Storage
