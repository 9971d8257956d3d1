// SPDX-License-Identifier: MIT
// The check of everything that a repository holds.
#include "storage/store/Store.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"
#include "storage/store/NameCheck.h"

#include <algorithm>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToText;

constexpr std::int64_t kMaxFindings = 1000;

// A table whose rows are valid since one revision and until another.
struct VersionedTable {
    CStringView name;
    SqlText withoutRevision; // row, the revision that it names
    SqlText endingEarly;     // row, since, until
    SqlText lastRow;
};

#define ZEBX_VERSIONED(table)                                                                      \
    {                                                                                              \
        u##table,                                                                                  \
            "SELECT t.id, t.since_revision FROM " table " t WHERE NOT EXISTS "                     \
            "(SELECT 1 FROM revision r WHERE r.number = t.since_revision) UNION ALL "              \
            "SELECT t.id, t.until_revision FROM " table " t WHERE t.until_revision IS NOT NULL "   \
            "AND NOT EXISTS (SELECT 1 FROM revision r WHERE r.number = t.until_revision)",         \
            "SELECT id, since_revision, until_revision FROM " table                                \
            " WHERE until_revision <= since_revision",                                             \
            "SELECT COALESCE(MAX(id), 0) FROM " table                                              \
    }

constexpr VersionedTable kVersionedTables[] = {
    ZEBX_VERSIONED("kind"), ZEBX_VERSIONED("stored_file"), ZEBX_VERSIONED("general_settings"),
    ZEBX_VERSIONED("repository_item"), ZEBX_VERSIONED("catalogue_item")};

Message Table(CStringView name) {
    return {MessageNumber::InTable, {CString(name)}};
}

Message Row(CStringView table, std::int64_t row) {
    return {MessageNumber::InRow, {CString(table), ToText(row)}};
}

CString HashText(std::string_view hash) {
    return FromUtf8(ToHexadecimal(hash));
}

class Checker {
public:
    Checker(SqlConnection& sql, const TellFinding& tell, CheckCounts& counts)
        : m_sql(sql), m_tell(tell), m_counts(counts) {}

    void Run();

private:
    void Tell(const Message& where, const Message& what);
    // Does `part`; what is damaged so that it cannot be read is a finding at `where`.
    template<typename Part>
    void Try(const Message& where, Part part);

    void CheckContents();
    void CheckContentsAhead(const std::vector<WantedContent>& contents);
    void CheckContentAlone(const std::string& hash);
    bool IsGoodAhead(const WantedContent& content, std::size_t place);
    void CheckContent(const std::string& hash);
    void CheckFiles();
    void CheckFile(SqlRows& row);
    void CheckHolders();
    void CheckNamesThatDifferByCase();
    void CheckSettings();
    void CheckValidity(const VersionedTable& table);
    void CheckRevisions();
    void CheckHead();
    std::vector<WantedContent> NextContents(const std::string& after);
    std::int64_t One(SqlText sql);

    SqlConnection& m_sql;
    const TellFinding& m_tell;
    CheckCounts& m_counts;
    ContentsAhead m_ahead;
    std::int64_t m_findings = 0;
    std::int64_t m_contentBytes = 0;
    std::int64_t m_lastRevision = 0;
    std::int64_t m_lastRow = 0;
    bool m_everythingWasRead = true;
};

void Checker::Tell(const Message& where, const Message& what) {
    if (++m_findings <= kMaxFindings)
        m_tell(where, what);
}

template<typename Part>
void Checker::Try(const Message& where, Part part) {
    try {
        part();
    } catch (const StorageError& error) {
        if (error.Kind() != Problem::Integrity)
            throw;
        m_everythingWasRead = false;
        Tell(where, {MessageNumber::PartUnread, {error.Messages()[0].values.back()}});
        // The engine may have ended the transaction.
        m_sql.Rollback();
        m_sql.BeginRead();
    }
}

void Checker::Run() {
    Try({MessageNumber::InDatabase, {}}, [&] {
        m_sql.CheckEngine([&](const Message& where, const Message& what) { Tell(where, what); });
    });
    const ReadTransaction transaction(m_sql);
    CheckContents();
    Try(Table(u"stored_file"), [&] { CheckFiles(); });
    Try(Table(u"stored_file"), [&] { CheckHolders(); });
    Try(Table(u"stored_file"), [&] { CheckNamesThatDifferByCase(); });
    Try(Table(u"general_settings"), [&] { CheckSettings(); });
    for (const VersionedTable& table : kVersionedTables)
        Try(Table(table.name), [&] { CheckValidity(table); });
    Try(Table(u"revision"), [&] { CheckRevisions(); });
    Try({MessageNumber::InCounters, {}}, [&] { CheckHead(); });
    if (m_findings > kMaxFindings)
        m_tell({MessageNumber::InDatabase, {}},
               {MessageNumber::MoreFindings, {ToText(m_findings - kMaxFindings)}});
}

std::vector<WantedContent> Checker::NextContents(const std::string& after) {
    std::vector<WantedContent> contents;
    const auto rows = m_sql.Query("SELECT hash, size_bytes FROM content WHERE hash > $1 "
                                  "ORDER BY hash LIMIT 1000",
                                  {SqlBytes(after)});
    while (rows->Next())
        contents.push_back({std::string(rows->Bytes(0)), rows->Integer(1)});
    return contents;
}

void Checker::CheckContents() {
    std::vector<WantedContent> contents;
    std::string last;
    do {
        contents.clear();
        Try(Table(u"content"), [&] { contents = NextContents(last); });
        if (m_sql.MayAskAhead())
            CheckContentsAhead(contents);
        else
            // One at a time, so that one that cannot be read does not hide the others.
            for (const WantedContent& content : contents)
                CheckContentAlone(content.hash);
        if (!contents.empty())
            last = contents.back().hash;
    } while (!contents.empty());
}

// In batches; what is not good in one is looked at once more, alone.
void Checker::CheckContentsAhead(const std::vector<WantedContent>& contents) {
    m_ahead.Expect(contents);
    for (std::size_t place = 0; place < contents.size(); ++place)
        if (!IsGoodAhead(contents[place], place))
            CheckContentAlone(contents[place].hash);
    m_ahead.Forget();
}

bool Checker::IsGoodAhead(const WantedContent& content, std::size_t place) try {
    const TakenContent taken = m_ahead.Take(m_sql, place);
    if (!taken.fitsItsHash || static_cast<std::int64_t>(taken.bytes.size()) != content.sizeBytes)
        return false;
    ++m_counts.contents;
    m_counts.bytes += content.sizeBytes;
    m_contentBytes += content.sizeBytes;
    return true;
} catch (const StorageError& error) {
    if (error.Kind() == Problem::Unreachable)
        throw;
    // The transaction has ended with it.
    m_sql.Rollback();
    m_sql.BeginRead();
    return false;
}

void Checker::CheckContentAlone(const std::string& hash) {
    Try({MessageNumber::InContent, {HashText(hash)}}, [&] { CheckContent(hash); });
}

void Checker::CheckContent(const std::string& hash) {
    ++m_counts.contents;
    const auto rows =
        m_sql.Query("SELECT size_bytes, bytes FROM content WHERE hash = $1", {SqlBytes(hash)});
    if (!rows->Next())
        return; // An index that does not fit its table: the engine's check told it.
    const Message where{MessageNumber::InContent, {HashText(hash)}};
    const std::int64_t told = rows->Integer(0);
    const std::string_view bytes = rows->Bytes(1);
    const auto size = static_cast<std::int64_t>(bytes.size());
    m_contentBytes += size;
    if (told != size)
        Tell(where, {MessageNumber::SizeLies, {ToText(size), ToText(told)}});
    if (ContentHash(bytes) != hash)
        Tell(where, {MessageNumber::HashDiffers, {}});
    else
        m_counts.bytes += size;
}

void Checker::CheckFiles() {
    const auto rows = m_sql.Query("SELECT f.id, f.name, f.origin_id, f.name_folded, f.size_bytes, "
                                  "f.hash, c.size_bytes FROM stored_file f "
                                  "LEFT JOIN content c ON c.hash = f.hash",
                                  {});
    while (rows->Next()) {
        ++m_counts.files;
        CheckFile(*rows);
    }
}

void Checker::CheckFile(SqlRows& row) {
    const CString name = FromUtf8(row.Text(1));
    const CString kind = FromUtf8(row.Text(2));
    const Message where{MessageNumber::InFile, {name, kind, ToText(row.Integer(0))}};
    if (const auto wrong = CheckName(name))
        Tell(where, {*wrong, {name, kind}});
    if (Platform::ToUtf8(Platform::FoldCase(name)) != row.Text(3))
        Tell(where, {MessageNumber::FoldedDiffers, {}});
    if (row.IsNull(6))
        Tell(where, {MessageNumber::NoContent, {HashText(row.Bytes(5))}});
    else if (row.Integer(6) != row.Integer(4))
        Tell(where, {MessageNumber::SizeLies, {ToText(row.Integer(6)), ToText(row.Integer(4))}});
}

void Checker::CheckHolders() {
    const auto rows = m_sql.Query(
        "SELECT f.id, f.name, f.origin_id, f.holder FROM stored_file f WHERE f.holder IS NOT NULL "
        "AND NOT EXISTS (SELECT 1 FROM general_settings g WHERE g.id = f.holder) "
        "AND NOT EXISTS (SELECT 1 FROM repository_item i WHERE i.id = f.holder) "
        "AND NOT EXISTS (SELECT 1 FROM catalogue_item c WHERE c.id = f.holder)",
        {});
    while (rows->Next())
        Tell({MessageNumber::InFile,
              {FromUtf8(rows->Text(1)), FromUtf8(rows->Text(2)), ToText(rows->Integer(0))}},
             {MessageNumber::NoHolder, {ToText(rows->Integer(3))}});
}

void Checker::CheckNamesThatDifferByCase() {
    // A kind has a name once; with an item it may come several times, in one case.
    const auto rows =
        m_sql.Query("SELECT origin_id, MIN(name), MAX(name), MAX(id) FROM stored_file "
                    "WHERE holder IS NULL AND until_revision IS NULL "
                    "GROUP BY file_type, origin_id, name_folded HAVING COUNT(*) > 1 UNION ALL "
                    "SELECT MIN(origin_id), MIN(name), MAX(name), MAX(id) FROM stored_file "
                    "WHERE holder IS NOT NULL GROUP BY holder, name_folded "
                    "HAVING MIN(name) <> MAX(name)",
                    {});
    while (rows->Next()) {
        const CString kind = FromUtf8(rows->Text(0));
        const CString name = FromUtf8(rows->Text(2));
        Tell({MessageNumber::InFile, {name, kind, ToText(rows->Integer(3))}},
             {MessageNumber::NameDiffersByCase, {name, kind, FromUtf8(rows->Text(1))}});
    }
}

void Checker::CheckSettings() {
    const auto rows = m_sql.Query("SELECT g.id, g.size_bytes, g.hash, c.size_bytes "
                                  "FROM general_settings g LEFT JOIN content c ON c.hash = g.hash",
                                  {});
    while (rows->Next()) {
        const Message where = Row(u"general_settings", rows->Integer(0));
        if (rows->IsNull(3))
            Tell(where, {MessageNumber::NoContent, {HashText(rows->Bytes(2))}});
        else if (rows->Integer(1) != rows->Integer(3))
            Tell(where,
                 {MessageNumber::SizeLies, {ToText(rows->Integer(3)), ToText(rows->Integer(1))}});
    }
}

void Checker::CheckValidity(const VersionedTable& table) {
    {
        const auto rows = m_sql.Query(table.withoutRevision, {});
        while (rows->Next())
            Tell(Row(table.name, rows->Integer(0)),
                 {MessageNumber::NoRevision, {ToText(rows->Integer(1))}});
    }
    {
        const auto rows = m_sql.Query(table.endingEarly, {});
        while (rows->Next())
            Tell(Row(table.name, rows->Integer(0)),
                 {MessageNumber::EndsTooEarly,
                  {ToText(rows->Integer(1)), ToText(rows->Integer(2))}});
    }
    m_lastRow = std::max(m_lastRow, One(table.lastRow));
}

void Checker::CheckRevisions() {
    const auto rows = m_sql.Query("SELECT number FROM revision ORDER BY number", {});
    while (rows->Next()) {
        const std::int64_t number = rows->Integer(0);
        ++m_counts.revisions;
        if (number > m_lastRevision + 1)
            Tell(Table(u"revision"), {MessageNumber::RevisionsMissing,
                                      {ToText(m_lastRevision + 1), ToText(number - 1)}});
        m_lastRevision = number;
    }
}

void Checker::CheckHead() {
    const Message where{MessageNumber::InCounters, {}};
    const auto rows =
        m_sql.Query("SELECT revision, last_id, content_bytes FROM head WHERE id = 1", {});
    if (!rows->Next()) {
        Tell(where, {MessageNumber::CounterMissing, {}});
        return;
    }
    // What could not be read could not be counted either, and was told.
    if (!m_everythingWasRead)
        return;
    const auto compare = [&](int column, std::int64_t real, MessageNumber what) {
        const std::int64_t told = rows->Integer(column);
        if (told != real)
            Tell(where, {what, {ToText(told), ToText(real)}});
    };
    compare(0, m_lastRevision, MessageNumber::LastRevisionDiffers);
    compare(1, m_lastRow, MessageNumber::LastRowDiffers);
    compare(2, m_contentBytes, MessageNumber::AllBytesDiffer);
}

std::int64_t Checker::One(SqlText sql) {
    const auto rows = m_sql.Query(sql, {});
    return rows->Next() ? rows->Integer(0) : 0;
}

} // namespace

void Store::Check(const TellFinding& tell, CheckCounts& counts) {
    Checker(*m_sql, tell, counts).Run();
}

} // namespace Storage
