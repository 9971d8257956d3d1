// SPDX-License-Identifier: MIT
// An embedded repository that behaves like a server as far as waiting goes, and counts it: a
// query goes out when it is made and its answer is waited for with its first row, what was
// asked before comes along.  Several results may be open at once.
#pragma once

#include "ForwardingSqlConnection.h"
#include "storage/StorageError.h"

#include <optional>
#include <utility>

namespace Storage {

struct WireCounts {
    int statements = 0;
    int waits = 0; // round trips
    std::int64_t answerBytes = 0;
    std::int64_t sentBytes = 0;
    int openAnswers = 0; // queries whose answers were not read to their end
    int mostOpenAnswers = 0;
    int number = 0;  // of the last statement
    int arrived = 0; // the last one whose answer is here
    bool wasChanged = false;

    void Send() { number = ++statements; }
    void WaitFor(int statement) {
        if (statement <= arrived)
            return;
        ++waits;
        arrived = number;
    }
};

// What an answer was, on this side of the wire.
class ArrivedRows : public SqlRows {
public:
    ArrivedRows(SqlConnection& sql, SqlText text, std::initializer_list<SqlValue> values,
                WireCounts& counts)
        : m_counts(counts) {
        m_counts.Send();
        m_statement = m_counts.number;
        m_counts.mostOpenAnswers = std::max(m_counts.mostOpenAnswers, ++m_counts.openAnswers);
        try {
            Copy(*sql.Query(text, values));
        } catch (const StorageError& error) {
            m_error = error;
        }
    }
    ~ArrivedRows() override { --m_counts.openAnswers; }

    bool Next() override {
        m_counts.WaitFor(m_statement);
        if (m_error && m_next == m_rows.size())
            throw StorageError(*m_error);
        if (m_next == m_rows.size())
            return false;
        m_row = m_next++;
        for (const auto& value : m_rows[m_row])
            m_counts.answerBytes += value ? static_cast<std::int64_t>(value->size()) : 0;
        return true;
    }
    bool IsNull(int column) override { return !Value(column); }
    std::int64_t Integer(int column) override {
        return Value(column) ? std::stoll(*Value(column)) : 0;
    }
    std::string_view Text(int column) override { return Bytes(column); }
    std::string_view Bytes(int column) override {
        return Value(column) ? std::string_view(*Value(column)) : std::string_view();
    }

private:
    static constexpr int kMostColumns = 16;
    using Row = std::vector<std::optional<std::string>>;

    // The embedded engine gives nothing for a column that is not there.
    void Copy(SqlRows& rows) {
        while (rows.Next()) {
            Row& row = m_rows.emplace_back();
            for (int column = 0; column < kMostColumns; ++column)
                row.push_back(rows.IsNull(column) ? std::nullopt
                                                  : std::optional(std::string(rows.Bytes(column))));
        }
    }
    const std::optional<std::string>& Value(int column) const {
        return m_rows[m_row][static_cast<std::size_t>(column)];
    }

    WireCounts& m_counts;
    int m_statement = 0;
    std::vector<Row> m_rows;
    std::optional<StorageError> m_error;
    std::size_t m_next = 0;
    std::size_t m_row = 0;
};

// `counts` has to live as long.
class CountingSqlConnection : public ForwardingSqlConnection {
public:
    CountingSqlConnection(std::unique_ptr<SqlConnection> sql, WireCounts& counts)
        : ForwardingSqlConnection(std::move(sql)), m_counts(counts) {}

    void BeginRead() override {
        m_counts.Send();
        ForwardingSqlConnection::BeginRead();
    }
    void BeginWrite() override {
        m_counts.Send();
        ForwardingSqlConnection::BeginWrite();
    }
    void Commit() override {
        m_counts.Send();
        m_counts.WaitFor(m_counts.number);
        ForwardingSqlConnection::Commit();
    }
    void Rollback() noexcept override {
        m_counts.Send();
        ForwardingSqlConnection::Rollback();
    }
    std::unique_ptr<SqlRows> Query(SqlText sql, std::initializer_list<SqlValue> values) override {
        Weigh(values);
        return std::make_unique<ArrivedRows>(Inner(), sql, values, m_counts);
    }
    void Execute(SqlText sql, std::initializer_list<SqlValue> values) override {
        Weigh(values);
        m_counts.Send();
        ForwardingSqlConnection::Execute(sql, values);
    }
    bool MayAskAhead() override { return true; }
    // Changes are known as soon as the test says so.
    void WatchChanges() override { m_counts.wasChanged = false; }
    bool WasChanged() override { return m_counts.wasChanged; }

private:
    void Weigh(std::initializer_list<SqlValue> values) {
        for (const SqlValue& value : values) {
            if (const auto* bytes = std::get_if<SqlBytes>(&value))
                m_counts.sentBytes += static_cast<std::int64_t>(bytes->bytes.size());
            else if (const auto* text = std::get_if<std::string_view>(&value))
                m_counts.sentBytes += static_cast<std::int64_t>(text->size());
        }
    }

    WireCounts& m_counts;
};

} // namespace Storage
