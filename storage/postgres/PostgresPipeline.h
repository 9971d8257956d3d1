// SPDX-License-Identifier: MIT
// Statements on their way to a server and their results on the way back, in libpq's pipeline
// mode: what is sent waits for nothing, and each result finds who asked for it, however much
// was sent meanwhile.
#pragma once

#include "storage/SqlConnection.h"
#include "storage/StorageError.h"
#include "storage/postgres/PostgresLogin.h"

#include <deque>
#include <exception>
#include <unordered_map>
#include <utility>

namespace Storage {

struct EndResult {
    void operator()(PGresult* result) const { PQclear(result); }
};
using PostgresResult = std::unique_ptr<PGresult, EndResult>;

// What came back so far of one statement; every row is a result of its own.
struct Answer {
    std::deque<PostgresResult> rows;
    bool isWhole = false;
    std::string outcome;      // once it is whole: "COMMIT", "UPDATE 1"
    std::exception_ptr error; // StorageError
};

class PostgresPipeline {
public:
    // `name` is what the user calls the repository.
    PostgresPipeline(PostgresHandle handle, CString name, int silenceTimeoutMs);

    PGconn* Handle() const { return m_handle.get(); }
    // Whether the connection can be used, as far as it shows without asking the server.
    bool IsAlive();

    enum class Keep { Prepared, Nothing };
    // Sends a statement.  Nothing: for one that a pooler may run anywhere.  What holds no
    // Answer is not told of an error; see TakeError.
    void Send(SqlText sql, std::initializer_list<SqlValue> values, Keep keep,
              std::shared_ptr<Answer> answer = nullptr);
    // Ends what belongs together: results come now, and an error is over.
    void Sync();

    // Waits for the next row; null at the end.  Throws the statement's error.
    PostgresResult NextRow(Answer& answer);
    // Waits until everything that was sent is answered.
    void WaitForAll();
    // Runs statements as one text, without values.  What was sent before is answered first.
    void RunScript(std::string_view statements);

    // The first error that nobody was told of since the last call; null: none.
    std::exception_ptr TakeError() { return std::exchange(m_error, nullptr); }
    // How many notifications of that text have come; does not wait.
    int TakeNotifications(std::string_view text);

private:
    enum class Kind { Prepare, Statement, Sync };
    struct Sent {
        Kind kind;
        std::string_view sql; // of Prepare
        std::shared_ptr<Answer> answer = nullptr;
        bool isBegun = false;
    };
    enum class Waits { Yes, AsLongAsTheUserWants, No };
    enum class Until { SomethingCame, AllIsSent };

    std::string Prepare(SqlText sql, std::initializer_list<SqlValue> values);
    void Check(int succeeded);
    // Takes one result, or what ends one; false: there is none yet.
    bool TakeOne(Waits waits);
    void Begin(Sent& sent);
    void Take(Sent& sent, PostgresResult result);
    void Fail(Sent& sent, const PGresult* result);
    void WaitForServer(Waits waits, Until until = Until::SomethingCame);
    void FlushMuch();
    // The connection cannot be used any more: whoever waits is told, and the caller.
    [[noreturn]] void Lost();
    [[noreturn]] void GiveUp(const StorageError& reason);

    PostgresHandle m_handle;
    CString m_name;
    int m_silenceTimeoutMs;
    std::deque<Sent> m_sent;
    std::unordered_map<std::string_view, std::string> m_prepared; // names, by statement
    int m_statements = 0;
    std::size_t m_unflushedBytes = 0;
    bool m_isLost = false;
    std::exception_ptr m_error;
};

} // namespace Storage
