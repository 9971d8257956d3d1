// SPDX-License-Identifier: MIT
// One writing operation: a transaction that holds the repository's head row, on which
// writers queue, and makes a revision once something really changes.
#pragma once

#include "storage/SqlConnection.h"

#include <functional>
#include <string>

namespace Storage {

// Who writes, when and from where.
struct Stamp {
    CString time; // UTC; for people only: the order is that of the revisions' numbers
    CString user;
    CString workstation;
    CString program;
};

class WriteCall {
public:
    // Waits until no other writer is left.  `operation` and `subject` say what is done.
    WriteCall(SqlConnection& sql, const Stamp& stamp, std::string_view operation,
              CStringView subject);
    // Without Commit nothing has happened.
    ~WriteCall();
    WriteCall(const WriteCall&) = delete;
    WriteCall& operator=(const WriteCall&) = delete;

    SqlConnection& Sql() { return m_sql; }

    // The number of this operation's revision, which the first call makes.
    std::int64_t Revision();
    // A row id that the repository never had.
    std::int64_t NewId() { return ++m_lastId; }
    void CountContent(std::size_t sizeBytes) { m_contentBytes += std::int64_t(sizeBytes); }

    void Commit();

private:
    SqlConnection& m_sql;
    Stamp m_stamp;
    std::string m_operation;
    CString m_subject;
    std::int64_t m_revision = 0;
    std::int64_t m_lastId = 0;
    std::int64_t m_contentBytes = 0;
    bool m_changed = false;
    bool m_committed = false;
};

} // namespace Storage
