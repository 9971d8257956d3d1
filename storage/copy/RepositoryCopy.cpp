// SPDX-License-Identifier: MIT
#include "storage/copy/RepositoryCopy.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/StorageError.h"
#include "storage/copy/CopiedContents.h"
#include "storage/copy/CopiedTables.h"
#include "storage/copy/RepositoryDigest.h"

#include <algorithm>
#include <string>
#include <vector>

namespace Storage {
namespace {

using Platform::ToText;

// A size that no content can have is damage; it must not spoil the sum.
#define ZEBX_SIZE_IN_BOUNDS                                                                        \
    "CASE WHEN size_bytes BETWEEN 0 AND 1099511627776 THEN size_bytes ELSE 0 END"

struct Head {
    std::int64_t revision = 0;
    std::int64_t lastId = 0;
    std::int64_t contentBytes = 0;
};

Head ReadHead(SqlRows& rows, SqlConnection& sql) {
    if (!rows.Next())
        throw StorageError(Problem::Integrity, MessageNumber::Damaged, {sql.Name(), u"head"});
    return {rows.Integer(0), rows.Integer(1), rows.Integer(2)};
}

Head HeadOf(SqlConnection& sql) {
    return ReadHead(
        *sql.Query("SELECT revision, last_id, content_bytes FROM head WHERE id = 1", {}), sql);
}

// The target's transaction for one range; without Commit nothing of it is there.
class TargetCall {
public:
    explicit TargetCall(SqlConnection& sql) : m_sql(sql) { m_sql.BeginWrite(); }
    ~TargetCall() { m_sql.Rollback(); }
    TargetCall(const TargetCall&) = delete;
    TargetCall& operator=(const TargetCall&) = delete;

private:
    SqlConnection& m_sql;
};

class Copy {
public:
    Copy(SqlConnection& from, SqlConnection& to, const TellCopied& tell, CopyCounts& counts,
         const CopyLimits& limits)
        : m_from(from), m_to(to), m_tell(tell), m_counts(counts), m_limits(limits) {}

    void Run();

private:
    void CheckSourceIsGapless();
    void CheckTargetIsEarlier();
    void AwaitEarlierCopy();
    RevisionRange NextRange();
    void CopyRange(const RevisionRange& range);
    Head ReadLockedHead();
    void CheckIsUnchanged(const Head& head);
    void CopyRevisions(const RevisionRange& range);
    template<typename Table>
    void EndRows(const Table& table, const RevisionRange& range);
    template<typename Table>
    void AddRows(const Table& table, const RevisionRange& range, std::int64_t& lastId);
    template<typename Table, std::size_t... columns>
    void AddRow(const Table& table, SqlRows& row, std::index_sequence<columns...>);
    void CheckTexts(SqlRows& row, CStringView table, std::string_view types, std::size_t shown);
    void Compare();
    void Tell() {
        m_counts.revisions = m_done;
        m_tell(m_counts);
    }

    SqlConnection& m_from;
    SqlConnection& m_to;
    const TellCopied& m_tell;
    CopyCounts& m_counts;
    const CopyLimits m_limits;
    std::int64_t m_done = 0; // the revision that the target has
};

void Copy::Run() {
    const ReadTransaction reading(m_from);
    m_counts.allRevisions = HeadOf(m_from).revision;
    CheckSourceIsGapless();
    CheckTargetIsEarlier();
    Tell();
    if (m_done < m_counts.allRevisions)
        AwaitEarlierCopy();
    while (m_done < m_counts.allRevisions) {
        StopCopyIfInterrupted(m_to, m_done);
        const RevisionRange range = NextRange();
        CopyRange(range);
        m_done = range.last;
        Tell();
    }
    Compare();
}

// Ranges are counted by numbers, and foreign numbers could keep that going for ever.
void Copy::CheckSourceIsGapless() {
    const auto rows = m_from.Query("SELECT COUNT(*), COALESCE(MIN(number), 1), "
                                   "COALESCE(MAX(number), 0) FROM revision",
                                   {});
    const std::int64_t last = m_counts.allRevisions;
    if (!rows->Next() || rows->Integer(0) != last || rows->Integer(1) != 1 ||
        rows->Integer(2) != last)
        throw StorageError(Problem::Integrity, MessageNumber::CopiedIsNotWhole, {m_from.Name()});
}

void Copy::CheckTargetIsEarlier() {
    m_done = 0;
    const ReadTransaction reading(m_to);
    const auto original = m_from.Query(kAllRevisions, {});
    const auto copy = m_to.Query(kAllRevisions, {});
    while (copy->Next()) {
        ++m_done;
        if (!original->Next())
            throw StorageError(Problem::Refused, MessageNumber::CopyIsAhead,
                               {m_to.Name(), m_from.Name(), ToText(m_counts.allRevisions)});
        for (std::size_t i = 0; i < sizeof(kRevisionTypes) - 1; ++i) {
            const int column = static_cast<int>(i);
            const bool isSame = kRevisionTypes[i] == 'i'
                                    ? copy->Integer(column) == original->Integer(column)
                                    : copy->Text(column) == original->Text(column);
            if (!isSame)
                throw StorageError(Problem::Refused, MessageNumber::CopyIsOther,
                                   {m_to.Name(), m_from.Name(), ToText(m_done)});
        }
    }
}

// A server may still be at work on the last part of a copy that was killed.
void Copy::AwaitEarlierCopy() {
    {
        const TargetCall call(m_to);
        ReadLockedHead();
    }
    CheckTargetIsEarlier();
}

RevisionRange Copy::NextRange() {
    const std::int64_t furthest =
        std::min(m_counts.allRevisions, m_done + std::max<std::int64_t>(m_limits.revisions, 1));
    std::vector<std::int64_t> bytes(static_cast<std::size_t>(furthest - m_done));
    const auto add = [&](SqlRows& rows) {
        while (rows.Next())
            bytes.at(static_cast<std::size_t>(rows.Integer(0) - m_done - 1)) += rows.Integer(1);
    };
    add(*m_from.Query("SELECT since_revision, CAST(SUM(" ZEBX_SIZE_IN_BOUNDS ") AS BIGINT) "
                      "FROM stored_file WHERE since_revision > $1 AND since_revision <= $2 "
                      "GROUP BY since_revision",
                      {m_done, furthest}));
    add(*m_from.Query("SELECT since_revision, CAST(SUM(" ZEBX_SIZE_IN_BOUNDS ") AS BIGINT) "
                      "FROM general_settings WHERE since_revision > $1 AND since_revision <= $2 "
                      "GROUP BY since_revision",
                      {m_done, furthest}));
    RevisionRange range{m_done, m_done + 1};
    std::int64_t sum = bytes.front();
    while (range.last < furthest &&
           (sum += bytes[static_cast<std::size_t>(range.last - m_done)]) <= m_limits.contentBytes)
        ++range.last;
    return range;
}

void Copy::CopyRange(const RevisionRange& range) {
    const TargetCall call(m_to);
    Head head = ReadLockedHead();
    CheckIsUnchanged(head);
    const ContentCounts counts = CopyContents(m_from, m_to, range);
    CopyRevisions(range);
    // Ends first: a name may be current once.
    ForEachCopiedTable([&](const auto& table) { EndRows(table, range); });
    ForEachCopiedTable([&](const auto& table) { AddRows(table, range, head.lastId); });
    m_to.Execute("UPDATE head SET revision = $1, last_id = $2, content_bytes = $3 WHERE id = 1",
                 {range.last, head.lastId, head.contentBytes + counts.bytes});
    m_to.Commit();
    m_counts.contents += counts.contents;
    m_counts.bytes += counts.bytes;
}

// Waits for who is writing there.
Head Copy::ReadLockedHead() {
    const auto rows = m_to.Query("UPDATE head SET revision = revision WHERE id = 1 "
                                 "RETURNING revision, last_id, content_bytes",
                                 {});
    return ReadHead(*rows, m_to);
}

void Copy::CheckIsUnchanged(const Head& head) {
    if (head.revision != m_done)
        throw StorageError(Problem::Refused, MessageNumber::CopyWasChanged,
                           {m_to.Name(), ToText(head.revision), ToText(m_done)});
}

void Copy::CopyRevisions(const RevisionRange& range) {
    const auto rows =
        m_from.Query("SELECT number, made_at, user_name, workstation, program, operation, subject "
                     "FROM revision WHERE number > $1 AND number <= $2 ORDER BY number",
                     {range.after, range.last});
    while (rows->Next()) {
        CheckTexts(*rows, u"revision", kRevisionTypes, 6);
        m_to.Execute("INSERT INTO revision "
                     "(number, made_at, user_name, workstation, program, operation, subject) "
                     "VALUES ($1, $2, $3, $4, $5, $6, $7)",
                     {rows->Integer(0), rows->Text(1), rows->Text(2), rows->Text(3), rows->Text(4),
                      rows->Text(5), rows->Text(6)});
    }
}

template<typename Table>
void Copy::EndRows(const Table& table, const RevisionRange& range) {
    const auto rows = m_from.Query(table.ended, {range.after, range.last});
    while (rows->Next())
        m_to.Execute(table.end, {rows->Integer(0), rows->Integer(1)});
}

template<typename Table>
void Copy::AddRows(const Table& table, const RevisionRange& range, std::int64_t& lastId) {
    const auto rows = m_from.Query(table.added, {range.after, range.last});
    while (rows->Next()) {
        StopCopyIfInterrupted(m_to, m_done);
        CheckTexts(*rows, table.name, table.types, table.shown);
        AddRow(table, *rows, std::make_index_sequence<Table::kColumns>());
        lastId = std::max(lastId, rows->Integer(0));
    }
}

template<typename Table, std::size_t... columns>
void Copy::AddRow(const Table& table, SqlRows& row, std::index_sequence<columns...>) {
    m_to.Execute(table.insert, {ValueOf(row, table.types, columns)...});
}

// What no client could send: not every engine keeps it.
void Copy::CheckTexts(SqlRows& row, CStringView table, std::string_view types, std::size_t shown) {
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i] != 't')
            continue;
        const CString text = Platform::FromUtf8(row.Text(static_cast<int>(i)));
        if (text.find(u'\0') != CString::npos || !Platform::IsWellFormed(text))
            throw StorageError(Problem::Integrity,
                               {{MessageNumber::CopiedTextNotKept,
                                 {Platform::FromUtf8(row.Text(static_cast<int>(shown))),
                                  CString(table), ToText(row.Integer(0))}},
                                {MessageNumber::CopyStopsAt, {m_to.Name(), ToText(m_done)}}});
    }
}

void Copy::Compare() {
    const ReadTransaction reading(m_to);
    CheckIsUnchanged(HeadOf(m_to));
    const ContentCounts counts = CompareRepositories(m_from, m_to, m_done);
    m_counts.checkedContents = counts.contents;
    m_counts.checkedBytes = counts.bytes;
}

} // namespace

void CopyRepository(SqlConnection& from, SqlConnection& to, const TellCopied& tell,
                    CopyCounts& counts, const CopyLimits& limits) {
    try {
        Copy(from, to, tell, counts, limits).Run();
    } catch (const StorageError& error) {
        // What an engine does not understand or take of rows that are not as they should be.
        if (error.Kind() != Problem::Internal)
            throw;
        // A server's complaint stands behind its address.
        const auto& said = error.Messages()[0].values;
        throw StorageError(
            Problem::Integrity, MessageNumber::CopiedRowsNotTaken,
            {from.Name(), to.Name(), said[std::min<std::size_t>(1, said.size() - 1)]});
    }
}

} // namespace Storage
