// SPDX-License-Identifier: MIT
// A connection of which a chosen operation fails, to see what is left of the call around it.
#pragma once

#include "ForwardingSqlConnection.h"
#include "storage/StorageError.h"

#include <utility>

namespace Storage {

// Which operation fails, how, and how many there were.
struct FaultPlan {
    static constexpr int kNever = -1;

    int failAt = kNever; // counted from 0
    Problem problem = Problem::Unreachable;
    // A commit takes place, and only its answer is lost.
    bool loseAnswer = false;
    int seen = 0;

    bool IsNext() { return seen++ == failAt; }
    [[noreturn]] void Fail() const {
        throw StorageError(problem, MessageNumber::Internal, {u"the test wants it so"});
    }
    void Count() {
        if (IsNext())
            Fail();
    }
};

class FaultySqlRows : public SqlRows {
public:
    FaultySqlRows(std::unique_ptr<SqlRows> rows, FaultPlan& plan)
        : m_rows(std::move(rows)), m_plan(plan) {}

    bool Next() override {
        m_plan.Count();
        return m_rows->Next();
    }
    bool IsNull(int column) override { return m_rows->IsNull(column); }
    std::int64_t Integer(int column) override { return m_rows->Integer(column); }
    std::string_view Text(int column) override { return m_rows->Text(column); }
    std::string_view Bytes(int column) override { return m_rows->Bytes(column); }

private:
    std::unique_ptr<SqlRows> m_rows;
    FaultPlan& m_plan;
};

// `plan` has to live as long.
class FaultySqlConnection : public ForwardingSqlConnection {
public:
    FaultySqlConnection(std::unique_ptr<SqlConnection> sql, FaultPlan& plan)
        : ForwardingSqlConnection(std::move(sql)), m_plan(plan) {}

    void BeginRead() override {
        m_plan.Count();
        ForwardingSqlConnection::BeginRead();
    }
    void BeginWrite() override {
        m_plan.Count();
        ForwardingSqlConnection::BeginWrite();
    }
    void Commit() override {
        const bool fails = m_plan.IsNext();
        if (fails && !m_plan.loseAnswer)
            m_plan.Fail();
        ForwardingSqlConnection::Commit();
        if (fails)
            m_plan.Fail();
    }
    std::unique_ptr<SqlRows> Query(SqlText sql, std::initializer_list<SqlValue> values) override {
        m_plan.Count();
        return std::make_unique<FaultySqlRows>(ForwardingSqlConnection::Query(sql, values), m_plan);
    }
    void Execute(SqlText sql, std::initializer_list<SqlValue> values) override {
        m_plan.Count();
        ForwardingSqlConnection::Execute(sql, values);
    }
    void RunScript(std::string_view statements) override {
        m_plan.Count();
        ForwardingSqlConnection::RunScript(statements);
    }

private:
    FaultPlan& m_plan;
};

} // namespace Storage
