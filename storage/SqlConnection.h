// SPDX-License-Identifier: MIT
// A connection to a database, as the store needs it: the seam between the repository's
// operations, which are one set of SQL, and the engines.
//
// SQL is that of both SQLite and PostgreSQL; parameters are written $1, $2, ...  Every
// operation throws StorageError.  One thread.
//
// On a server every wait is a round trip.  So a query goes out when it is made and waits for
// its answer when its first row is read, and what has no result waits not at all: ask all that
// is needed first, and read then.
#pragma once

#include "ZEBXRepositoryStorage/RepositoryAdministration.h"
#include "platform/text/Text.h"
#include "storage/Messages.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <variant>

namespace Storage {

// A statement's text: a literal, so that no value can ever become part of it and the
// engine may keep the prepared form under its address for ever.
class SqlText {
public:
    template<std::size_t size>
    consteval SqlText(const char (&text)[size]) : m_text(text, size - 1) {}
    std::string_view View() const { return m_text; }

private:
    std::string_view m_text;
};

struct SqlBytes {
    explicit SqlBytes(std::string_view view) : bytes(view) {}
    std::string_view bytes;
};

// NULL, a number, UTF-8 text, bytes.
using SqlValue = std::variant<std::nullptr_t, std::int64_t, std::string_view, SqlBytes>;

// A query's result, row by row.  Columns count from 0; texts and bytes are valid until
// the next call of Next.  What went wrong with the query is thrown by the first Next.
class SqlRows {
public:
    virtual ~SqlRows() = default;
    virtual bool Next() = 0;
    virtual bool IsNull(int column) = 0;
    virtual std::int64_t Integer(int column) = 0;
    virtual std::string_view Text(int column) = 0;
    virtual std::string_view Bytes(int column) = 0;
};

// The words in which the engines' table definitions differ.
struct SqlWords {
    std::string_view integer; // 64 bits
    std::string_view text;    // compared and ordered by the bytes of its UTF-8
    std::string_view bytes;
    std::string_view tableOptions; // behind the closing parenthesis
};

// Told of what a check found: where, and what.
using TellFinding = std::function<void(const Message& where, const Message& what)>;

class SqlConnection {
public:
    virtual ~SqlConnection() = default;

    // Everything read until Commit or Rollback is of one moment; never waits for writers.
    virtual void BeginRead() = 0;
    // Waits for other writers, at most for a bounded time (Problem::Busy).
    virtual void BeginWrite() = 0;
    virtual void Commit() = 0;
    // Without a transaction: nothing.
    virtual void Rollback() noexcept = 0;

    // Results of several statements may be open at once, of one statement only one unless
    // MayAskAhead.
    virtual std::unique_ptr<SqlRows> Query(SqlText sql, std::initializer_list<SqlValue> values) = 0;
    // Runs a statement without a result.  What goes wrong is thrown at the latest by the next
    // query's first row or by Commit.
    virtual void Execute(SqlText sql, std::initializer_list<SqlValue> values) = 0;
    // Runs several statements, separated by ";", that take no values.
    virtual void RunScript(std::string_view statements) = 0;

    // Whether asking early saves waiting, and a result may be read in later calls, other
    // statements and whole transactions in between.
    virtual bool MayAskAhead() { return false; }
    // For what was read ahead: from now on a commit of anybody, this connection included, counts.
    virtual void WatchChanges() {}
    // Whether one is known since then.  An engine that is not told of commits asks: that is a
    // round trip.
    virtual bool WasChanged() { return true; }

    // On a server: the SHA-256 of a kind's current files, written as KindListing.h says; empty
    // where there are none.
    virtual std::string KindDigest(std::int64_t, std::string_view) { return {}; }

    // Checks what the engine itself keeps: the file or the server's tables, not what the
    // repository's rows mean.  Ends what was begun.
    virtual void CheckEngine(const TellFinding& tell) = 0;

    // Whether the repository that was opened is still the one at its address.  Cheap.
    virtual bool IsAlive() = 0;
    // Whether this user may write to the repository.
    virtual bool MayWrite() = 0;
    // What the user calls the repository.
    virtual CString Name() = 0;
    // "SQLite 3.40.1"
    virtual CString EngineName() = 0;
    // Of an embedded repository: empty.
    virtual ServerConnection DescribeServer() { return {}; }
    virtual SqlWords Words() = 0;
};

// A transaction that only reads; ends with its scope.
class ReadTransaction {
public:
    explicit ReadTransaction(SqlConnection& sql) : m_sql(sql) { m_sql.BeginRead(); }
    ~ReadTransaction() { m_sql.Rollback(); }
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;

private:
    SqlConnection& m_sql;
};

} // namespace Storage
