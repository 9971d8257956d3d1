// SPDX-License-Identifier: MIT
#include "storage/store/WriteCall.h"

#include "platform/text/Utf8.h"
#include "storage/StorageError.h"

#include <utility>

namespace Storage {

using Platform::ToUtf8;

WriteCall::WriteCall(SqlConnection& sql, const Stamp& stamp, std::string_view operation,
                     CStringView subject)
    : m_sql(sql), m_stamp(stamp), m_operation(operation), m_subject(subject) {
    m_sql.BeginWrite();
    try {
        // An update, not a query: on a server this is where writers queue.
        m_head = m_sql.Query("UPDATE head SET revision = revision WHERE id = 1 "
                             "RETURNING revision, last_id, content_bytes",
                             {});
    } catch (...) {
        m_sql.Rollback();
        throw;
    }
}

WriteCall::~WriteCall() {
    m_head.reset();
    if (!m_committed)
        m_sql.Rollback();
}

void WriteCall::TakeTurn() {
    const auto head = std::exchange(m_head, nullptr);
    if (!head)
        return;
    if (!head->Next())
        throw StorageError(Problem::Integrity, MessageNumber::Damaged, {m_sql.Name(), u"head"});
    m_revision = head->Integer(0);
    m_lastId = head->Integer(1);
    m_contentBytes = head->Integer(2);
}

std::int64_t WriteCall::NewId() {
    TakeTurn();
    return ++m_lastId;
}

void WriteCall::KeepContent(std::string_view bytes, const std::string& hash, bool isKnown) {
    TakeTurn();
    if (isKnown || !m_kept.insert(hash).second)
        return;
    const auto size = static_cast<std::int64_t>(bytes.size());
    m_sql.Execute("INSERT INTO content (hash, size_bytes, bytes) VALUES ($1, $2, $3)",
                  {SqlBytes(hash), size, SqlBytes(bytes)});
    m_contentBytes += size;
}

std::int64_t WriteCall::Revision() {
    if (m_changed)
        return m_revision;
    TakeTurn();
    ++m_revision;
    m_changed = true;
    m_sql.Execute("INSERT INTO revision "
                  "(number, made_at, user_name, workstation, program, operation, subject) "
                  "VALUES ($1, $2, $3, $4, $5, $6, $7)",
                  {m_revision, ToUtf8(m_stamp.time), ToUtf8(m_stamp.user),
                   ToUtf8(m_stamp.workstation), ToUtf8(m_stamp.program), m_operation,
                   ToUtf8(m_subject)});
    return m_revision;
}

void WriteCall::Commit() {
    if (!m_changed)
        return;
    m_sql.Execute("UPDATE head SET revision = $1, last_id = $2, content_bytes = $3 WHERE id = 1",
                  {m_revision, m_lastId, m_contentBytes});
    m_sql.Commit();
    m_committed = true;
}

} // namespace Storage
