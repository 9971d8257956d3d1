// SPDX-License-Identifier: MIT
// A connection that hands everything on to another one: tests change what they are about.
#pragma once

#include "storage/SqlConnection.h"

#include <utility>

namespace Storage {

// As an engine that does not ask ahead and is told of no commits.
class ForwardingSqlConnection : public SqlConnection {
public:
    explicit ForwardingSqlConnection(std::unique_ptr<SqlConnection> sql) : m_sql(std::move(sql)) {}

    void BeginRead() override { m_sql->BeginRead(); }
    void BeginWrite() override { m_sql->BeginWrite(); }
    void Commit() override { m_sql->Commit(); }
    void Rollback() noexcept override { m_sql->Rollback(); }
    std::unique_ptr<SqlRows> Query(SqlText sql, std::initializer_list<SqlValue> values) override {
        return m_sql->Query(sql, values);
    }
    void Execute(SqlText sql, std::initializer_list<SqlValue> values) override {
        m_sql->Execute(sql, values);
    }
    void RunScript(std::string_view statements) override { m_sql->RunScript(statements); }
    void CheckEngine(const TellFinding& tell) override { m_sql->CheckEngine(tell); }
    bool IsAlive() override { return m_sql->IsAlive(); }
    bool MayWrite() override { return m_sql->MayWrite(); }
    CString Name() override { return m_sql->Name(); }
    CString EngineName() override { return m_sql->EngineName(); }
    SqlWords Words() override { return m_sql->Words(); }

protected:
    SqlConnection& Inner() { return *m_sql; }

private:
    std::unique_ptr<SqlConnection> m_sql;
};

} // namespace Storage
