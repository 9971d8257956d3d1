// SPDX-License-Identifier: MIT
#include "storage/postgres/PostgresPipeline.h"

#include "platform/host/Interruption.h"
#include "platform/os/Socket.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/StorageError.h"
#include "storage/postgres/PostgresError.h"

#include <array>

namespace Storage {
namespace {

constexpr int kBinary = 1;

// The server's numbers of the types of values; 0 lets it find out.
constexpr Oid kUnknown = 0;
constexpr Oid kBytes = 17;
constexpr Oid kInteger = 20;
constexpr Oid kText = 25;

bool IsInFailedTransaction(const PGresult* result) {
    const char* state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    return state && std::string_view(state) == "25P02";
}

// Values in the form in which libpq takes them; they must outlive it.
class Parameters {
public:
    explicit Parameters(std::initializer_list<SqlValue> values) {
        m_numbers.reserve(values.size()); // they are pointed to
        for (const SqlValue& value : values)
            Add(value);
    }
    int Count() const { return static_cast<int>(m_types.size()); }
    const Oid* Types() const { return m_types.data(); }
    const char* const* Values() const { return m_values.data(); }
    const int* Lengths() const { return m_lengths.data(); }
    const int* Formats() const { return m_formats.data(); }
    std::size_t Bytes() const { return m_bytes; }

private:
    void Add(const SqlValue& value) {
        if (const auto* number = std::get_if<std::int64_t>(&value))
            Add(kInteger, BigEndian(*number));
        else if (const auto* text = std::get_if<std::string_view>(&value))
            Add(kText, *text);
        else if (const auto* bytes = std::get_if<SqlBytes>(&value))
            Add(kBytes, bytes->bytes);
        else
            Add(kUnknown, nullptr, 0);
    }
    // libpq takes a null pointer for NULL, also when the size is 0.
    void Add(Oid type, std::string_view view) {
        Add(type, view.data() ? view.data() : "", view.size());
    }
    void Add(Oid type, const char* data, std::size_t size) {
        m_types.push_back(type);
        m_values.push_back(data);
        m_lengths.push_back(static_cast<int>(size));
        m_formats.push_back(kBinary);
        m_bytes += size;
    }
    std::string_view BigEndian(std::int64_t number) {
        auto& bytes = m_numbers.emplace_back();
        for (int i = 7; i >= 0; --i, number >>= 8)
            bytes[static_cast<std::size_t>(i)] = static_cast<char>(number & 0xFF);
        return {bytes.data(), bytes.size()};
    }

    std::vector<std::array<char, 8>> m_numbers;
    std::vector<Oid> m_types;
    std::vector<const char*> m_values;
    std::vector<int> m_lengths;
    std::vector<int> m_formats;
    std::size_t m_bytes = 0;
};

} // namespace

PostgresPipeline::PostgresPipeline(PostgresHandle handle, CString name, int silenceTimeoutMs)
    : m_handle(std::move(handle)), m_name(std::move(name)), m_silenceTimeoutMs(silenceTimeoutMs) {
    // Notices are for people who type SQL.
    PQsetNoticeProcessor(
        Handle(), [](void*, const char*) {}, nullptr);
    Check(PQsetnonblocking(Handle(), 1) == 0);
    Check(PQenterPipelineMode(Handle()));
}

bool PostgresPipeline::IsAlive() {
    // What is on its way tells by itself; reading it here would only pile it up.
    constexpr int kMostPieces = 3; // a last message, and the end after it
    for (int i = 0; i < kMostPieces && m_sent.empty() && !m_isLost; ++i) {
        if (!Platform::WaitForSocket(PQsocket(Handle()), Platform::SocketWait::Read, 0))
            break;
        m_isLost = !PQconsumeInput(Handle());
    }
    // What comes still is not waited for when it is the end.
    m_isLost = m_isLost || Platform::IsSocketClosed(PQsocket(Handle()));
    return !m_isLost && PQstatus(Handle()) == CONNECTION_OK;
}

std::string PostgresPipeline::Prepare(SqlText sql, std::initializer_list<SqlValue> values) {
    const auto [found, isNew] = m_prepared.try_emplace(sql.View());
    if (isNew) {
        found->second = "s" + std::to_string(++m_statements);
        const Parameters parameters(values);
        Check(PQsendPrepare(Handle(), found->second.c_str(), std::string(sql.View()).c_str(),
                            parameters.Count(), parameters.Types()));
        m_sent.push_back({Kind::Prepare, sql.View()});
    }
    return found->second;
}

void PostgresPipeline::Send(SqlText sql, std::initializer_list<SqlValue> values, Keep keep,
                            std::shared_ptr<Answer> answer) {
    if (m_isLost)
        Lost();
    const Parameters parameters(values);
    if (keep == Keep::Prepared)
        Check(PQsendQueryPrepared(Handle(), Prepare(sql, values).c_str(), parameters.Count(),
                                  parameters.Values(), parameters.Lengths(), parameters.Formats(),
                                  kBinary));
    else
        Check(PQsendQueryParams(Handle(), std::string(sql.View()).c_str(), parameters.Count(),
                                parameters.Types(), parameters.Values(), parameters.Lengths(),
                                parameters.Formats(), kBinary));
    m_sent.push_back({Kind::Statement, {}, std::move(answer)});
    m_unflushedBytes += parameters.Bytes();
    FlushMuch();
}

void PostgresPipeline::Sync() {
    if (m_isLost)
        Lost();
    Check(PQpipelineSync(Handle()));
    m_sent.push_back({Kind::Sync, {}});
}

PostgresResult PostgresPipeline::NextRow(Answer& answer) {
    while (answer.rows.empty() && !answer.isWhole)
        TakeOne(Waits::AsLongAsTheUserWants);
    if (answer.rows.empty() && answer.error)
        std::rethrow_exception(answer.error);
    if (answer.rows.empty())
        return {};
    PostgresResult row = std::move(answer.rows.front());
    answer.rows.pop_front();
    return row;
}

void PostgresPipeline::WaitForAll() {
    while (!m_sent.empty())
        TakeOne(Waits::Yes);
}

void PostgresPipeline::RunScript(std::string_view statements) {
    Sync();
    WaitForAll();
    if (const auto error = TakeError())
        std::rethrow_exception(error);
    Check(PQexitPipelineMode(Handle()));
    Check(PQsendQuery(Handle(), std::string(statements).c_str()));
    PostgresResult failed;
    do {
        while (PQisBusy(Handle()))
            WaitForServer(Waits::Yes);
        PostgresResult result(PQgetResult(Handle()));
        if (!result)
            break;
        if (PQresultStatus(result.get()) == PGRES_FATAL_ERROR)
            failed = std::move(result);
    } while (true);
    if (PQstatus(Handle()) != CONNECTION_OK)
        Lost();
    Check(PQenterPipelineMode(Handle()));
    if (failed)
        ThrowPostgresError(failed.get(), m_name);
}

int PostgresPipeline::TakeNotifications(std::string_view text) {
    if (!m_isLost && !PQconsumeInput(Handle()))
        Lost();
    while (TakeOne(Waits::No)) {
    }
    int count = 0;
    while (PGnotify* notification = PQnotifies(Handle())) {
        count += notification->extra == text ? 1 : 0;
        PQfreemem(notification);
    }
    return count;
}

void PostgresPipeline::Check(int succeeded) {
    if (!succeeded)
        Lost();
}

void PostgresPipeline::Begin(Sent& sent) {
    if (std::exchange(sent.isBegun, true))
        return;
    // Refused behind an error, where no rows come.
    if (sent.answer)
        (void)PQsetSingleRowMode(Handle());
}

bool PostgresPipeline::TakeOne(Waits waits) {
    if (m_isLost)
        Lost();
    if (m_sent.empty())
        return false;
    Begin(m_sent.front());
    while (PQisBusy(Handle())) {
        if (waits == Waits::No)
            return false;
        WaitForServer(waits);
    }
    Take(m_sent.front(), PostgresResult(PQgetResult(Handle())));
    return true;
}

void PostgresPipeline::Take(Sent& sent, PostgresResult result) {
    const ExecStatusType status = result ? PQresultStatus(result.get()) : PGRES_EMPTY_QUERY;
    const bool isEnd = !result || status == PGRES_PIPELINE_SYNC;
    if (status == PGRES_FATAL_ERROR || status == PGRES_PIPELINE_ABORTED)
        Fail(sent, result.get());
    else if (result && sent.answer && PQntuples(result.get()) > 0)
        sent.answer->rows.push_back(std::move(result));
    else if (result && sent.answer)
        sent.answer->outcome = PQcmdStatus(result.get());
    if (!isEnd)
        return;
    if (sent.answer)
        sent.answer->isWhole = true;
    m_sent.pop_front();
}

void PostgresPipeline::Fail(Sent& sent, const PGresult* result) {
    if (PQstatus(Handle()) != CONNECTION_OK)
        Lost();
    if (sent.kind == Kind::Prepare)
        m_prepared.erase(sent.sql);
    // What follows an error fails for no reason of its own.
    const bool isConsequence =
        PQresultStatus(result) == PGRES_PIPELINE_ABORTED || IsInFailedTransaction(result);
    std::exception_ptr error = isConsequence ? m_error : nullptr;
    try {
        if (!error)
            ThrowPostgresError(result, m_name);
    } catch (const StorageError&) {
        error = std::current_exception();
    }
    if (sent.answer)
        sent.answer->error = error;
    if (!m_error)
        m_error = error;
}

void PostgresPipeline::WaitForServer(Waits waits, Until until) {
    constexpr int kSliceMs = 100;
    for (int waited = 0; waited < m_silenceTimeoutMs; waited += kSliceMs) {
        const int flush = PQflush(Handle());
        Check(flush >= 0);
        if (flush == 0 && until == Until::AllIsSent)
            return;
        const auto wait =
            flush == 1 ? Platform::SocketWait::ReadOrWrite : Platform::SocketWait::Read;
        if (Platform::WaitForSocket(PQsocket(Handle()), wait, kSliceMs)) {
            Check(PQconsumeInput(Handle()));
            return;
        }
        if (waits == Waits::AsLongAsTheUserWants && Platform::IsInterrupted())
            GiveUp(StorageError(Problem::Interrupted, MessageNumber::WaitInterrupted, {m_name}));
    }
    GiveUp(StorageError(Problem::Unreachable, MessageNumber::ServerSilent,
                        {m_name, Platform::ToText(m_silenceTimeoutMs / 1000)}));
}

// libpq keeps what it cannot send yet: a whole drawing, and then the next.
void PostgresPipeline::FlushMuch() {
    constexpr std::size_t kMuch = 256 * 1024;
    if (m_unflushedBytes < kMuch)
        return;
    m_unflushedBytes = 0;
    while (PQflush(Handle()) != 0) {
        WaitForServer(Waits::AsLongAsTheUserWants, Until::AllIsSent);
        while (TakeOne(Waits::No)) {
        }
    }
}

void PostgresPipeline::Lost() {
    try {
        ThrowNoPostgresConnection(Handle(), m_name);
    } catch (const StorageError& error) {
        GiveUp(error);
    }
}

void PostgresPipeline::GiveUp(const StorageError& reason) {
    m_isLost = true;
    for (Sent& sent : std::exchange(m_sent, {})) {
        if (!sent.answer)
            continue;
        sent.answer->isWhole = true;
        sent.answer->error = std::make_exception_ptr(reason);
    }
    throw StorageError(reason);
}

} // namespace Storage
