// SPDX-License-Identifier: MIT
// One writing operation: a transaction that holds the repository's head row, on which
// writers queue, and makes a revision once something really changes.
#pragma once

#include "storage/SqlConnection.h"

#include <functional>
#include <string>
#include <unordered_set>

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
    // Asks for the turn and waits for nothing: what else has to be asked goes out with it.
    // `operation` and `subject` say what is done.
    WriteCall(SqlConnection& sql, const Stamp& stamp, std::string_view operation,
              CStringView subject);
    // Without Commit nothing has happened.
    ~WriteCall();
    WriteCall(const WriteCall&) = delete;
    WriteCall& operator=(const WriteCall&) = delete;

    SqlConnection& Sql() { return m_sql; }

    // Waits until no other writer is left.  To be called before any other answer is read.
    void TakeTurn();

    // The number of this operation's revision, which the first call makes.
    std::int64_t Revision();
    // A row id that the repository never had.
    std::int64_t NewId();
    // Adds a content unless it is known or was added by this call.
    void KeepContent(std::string_view bytes, const std::string& hash, bool isKnown);

    void Commit();

private:
    std::unique_ptr<SqlRows> m_head; // until it is this call's turn
    std::unordered_set<std::string> m_kept;
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
