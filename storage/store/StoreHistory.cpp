// SPDX-License-Identifier: MIT
// The revisions, for people.
#include "storage/store/Store.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <limits>

namespace Storage {
namespace {

using Platform::FromUtf8;

std::int64_t ToLimit(std::size_t count) {
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min(count, static_cast<std::size_t>(kMost)));
}

// Adds the rows of `rows` (revision, files, bytes) to the revisions that they belong to.
void Add(SqlRows& rows, std::vector<RevisionEntry>& newestFirst) {
    while (rows.Next()) {
        const std::int64_t number = rows.Integer(0);
        const auto entry = std::lower_bound(
            newestFirst.begin(), newestFirst.end(), number,
            [](const RevisionEntry& left, std::int64_t right) { return left.number > right; });
        if (entry == newestFirst.end() || entry->number != number)
            continue;
        entry->files += rows.Integer(1);
        entry->bytes += rows.Integer(2);
    }
}

// A size that no content can have is damage, which the check tells; here it must not spoil
// the sum.
#define ZEBX_SUM_OF_SIZES                                                                          \
    "CAST(SUM(CASE WHEN size_bytes BETWEEN 0 AND 1099511627776 THEN size_bytes ELSE 0 END) "       \
    "AS BIGINT)"

void AddAmounts(SqlConnection& sql, std::vector<RevisionEntry>& newestFirst) {
    if (newestFirst.empty())
        return;
    const std::int64_t first = newestFirst.back().number;
    const std::int64_t last = newestFirst.front().number;
    // The tables have no index for this: one pass over all rows, not one for each revision.
    Add(*sql.Query("SELECT since_revision, COUNT(*), " ZEBX_SUM_OF_SIZES " "
                   "FROM stored_file WHERE since_revision BETWEEN $1 AND $2 "
                   "GROUP BY since_revision",
                   {first, last}),
        newestFirst);
    Add(*sql.Query("SELECT since_revision, 0, " ZEBX_SUM_OF_SIZES " "
                   "FROM general_settings WHERE since_revision BETWEEN $1 AND $2 "
                   "GROUP BY since_revision",
                   {first, last}),
        newestFirst);
}

} // namespace

std::vector<RevisionEntry> Store::Revisions(std::int64_t before, std::size_t count) {
    const ReadTransaction transaction(*m_sql);
    std::vector<RevisionEntry> revisions;
    {
        const auto rows = m_sql->Query(
            "SELECT number, made_at, user_name, workstation, program, operation, "
            "subject FROM revision WHERE number < $1 ORDER BY number DESC LIMIT $2",
            {before == 0 ? std::numeric_limits<std::int64_t>::max() : before, ToLimit(count)});
        while (rows->Next()) {
            RevisionEntry entry;
            entry.number = rows->Integer(0);
            entry.time = FromUtf8(rows->Text(1));
            entry.user = FromUtf8(rows->Text(2));
            entry.workstation = FromUtf8(rows->Text(3));
            entry.program = FromUtf8(rows->Text(4));
            entry.operation = FromUtf8(rows->Text(5));
            entry.subject = FromUtf8(rows->Text(6));
            revisions.push_back(std::move(entry));
        }
    }
    AddAmounts(*m_sql, revisions);
    return revisions;
}

} // namespace Storage
