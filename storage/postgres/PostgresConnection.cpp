// SPDX-License-Identifier: MIT
#include "storage/postgres/PostgresConnection.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/postgres/PostgresCheck.h"
#include "storage/postgres/PostgresPipeline.h"
#include "storage/postgres/PostgresRights.h"

#include <algorithm>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;
using Keep = PostgresPipeline::Keep;

// Where nobody named a schema.
constexpr char16_t kDefaultSchema[] = u"zebx";

// One that can stand in a statement as it is, and at the beginning of a role's name.
bool IsSchemaName(std::string_view name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || c == '_'; };
    const auto isLetterOrDigit = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
    return !name.empty() && name.size() <= kMaxSchemaName && isLetter(name.front()) &&
           std::all_of(name.begin(), name.end(), isLetterOrDigit);
}

// What the first question brings.
struct Session {
    std::string schema;
    std::int32_t process = 0;
    bool isStandby = false;
    bool isUtf8 = false;
    bool hasSchema = false;
    bool mayUseSchema = false;
    bool hasHead = false;
    bool mayRead = false;
};

class PostgresRows : public SqlRows {
public:
    PostgresRows(PostgresPipeline& pipeline, std::shared_ptr<Answer> answer)
        : m_pipeline(pipeline), m_answer(std::move(answer)) {}

    bool Next() override {
        m_row = m_pipeline.NextRow(*m_answer);
        return m_row != nullptr;
    }
    bool IsNull(int column) override { return PQgetisnull(m_row.get(), 0, column) != 0; }
    // Of any of the server's integers, or a truth value.
    std::int64_t Integer(int column) override {
        const std::string_view bytes = Text(column);
        if (bytes.empty())
            return 0;
        const bool isNegative = bytes.size() > 1 && (bytes.front() & 0x80) != 0;
        std::uint64_t number = isNegative ? ~std::uint64_t(0) : 0;
        for (const char c : bytes)
            number = (number << 8) | static_cast<unsigned char>(c);
        return static_cast<std::int64_t>(number);
    }
    std::string_view Text(int column) override {
        return {PQgetvalue(m_row.get(), 0, column),
                static_cast<std::size_t>(PQgetlength(m_row.get(), 0, column))};
    }
    std::string_view Bytes(int column) override { return Text(column); }

private:
    PostgresPipeline& m_pipeline;
    std::shared_ptr<Answer> m_answer;
    PostgresResult m_row;
};

// Whether what was connected with names the schema; a pooler may have left that away.
bool NamesSchema(PGconn* connection) {
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> all(PQconninfo(connection),
                                                                           PQconninfoFree);
    for (const PQconninfoOption* option = all.get(); option && option->keyword; ++option)
        if (std::string_view(option->keyword) == "options" && option->val)
            return std::string_view(option->val).find("zebx.schema") != std::string_view::npos;
    return false;
}

class PostgresConnection : public SqlConnection {
public:
    PostgresConnection(const Address& address, const PostgresOptions& options)
        : m_address(address), m_options(options),
          m_pipeline(LogIn(address), address.server, options.silenceTimeoutMs) {}

    // What the server says of the session and of the repository; then the session is set up.
    Session SetUp();
    void CheckRepository(const Session& session);

    void BeginRead() override;
    void BeginWrite() override;
    void Commit() override;
    void Rollback() noexcept override;
    std::unique_ptr<SqlRows> Query(SqlText sql, std::initializer_list<SqlValue> values) override;
    void Execute(SqlText sql, std::initializer_list<SqlValue> values) override;
    void RunScript(std::string_view statements) override { m_pipeline.RunScript(statements); }
    bool MayAskAhead() override { return true; }
    void WatchChanges() override;
    bool WasChanged() override;
    std::string KindDigest(std::int64_t contentCode, std::string_view kindId) override;
    void CheckEngine(const TellFinding& tell) override { CheckPostgres(*this, tell); }
    bool IsAlive() override { return m_pipeline.IsAlive(); }
    bool MayWrite() override;
    CString Name() override { return m_address.server; }
    CString EngineName() override;
    ServerConnection DescribeServer() override;
    SqlWords Words() override { return {"BIGINT", "TEXT COLLATE \"C\"", "BYTEA", ""}; }

private:
    enum class Transaction { None, Read, Write };

    Keep HowToKeep() const { return m_isPooled ? Keep::Nothing : Keep::Prepared; }
    bool IsTold() const { return !m_isPooled && !m_isStandby; }
    void SetSession(Keep keep, std::int64_t onlyTransaction);
    void Begin(SqlText sql, Transaction transaction);
    void SendSettingsOfPooled();
    std::unique_ptr<SqlRows> Ask(SqlText sql, std::initializer_list<SqlValue> values);
    std::int64_t HeadRevision();

    Address m_address;
    PostgresOptions m_options;
    PostgresPipeline m_pipeline;
    std::string m_schema;
    std::string m_searchPath;
    bool m_isPooled = false;
    bool m_isStandby = false;
    Transaction m_transaction = Transaction::None;
    bool m_wasChanged = true;
    std::unique_ptr<SqlRows> m_watchedAnswer; // where nobody tells of changes
    std::int64_t m_watched = 0;
};

Session PostgresConnection::SetUp() {
    const std::string wanted =
        ToUtf8(m_address.schema.empty() ? CString(kDefaultSchema) : m_address.schema);
    // The catalogue is asked, not the tables: whoever may not see them is to be told so.
    auto answer = std::make_shared<Answer>();
    m_pipeline.Send("WITH wanted (name) AS "
                    "(SELECT COALESCE(NULLIF(current_setting('zebx.schema', true), ''), $1)) "
                    "SELECT w.name, pg_backend_pid(), pg_is_in_recovery(), "
                    "current_setting('server_encoding') = 'UTF8', n.oid IS NOT NULL, "
                    "COALESCE(has_schema_privilege(n.oid, 'USAGE'), false), c.oid IS NOT NULL, "
                    "COALESCE(has_table_privilege(c.oid, 'SELECT'), false), "
                    "COALESCE(current_setting('zebx.schema', true), '') <> '' "
                    "FROM wanted w LEFT JOIN pg_namespace n ON n.nspname = w.name "
                    "LEFT JOIN pg_class c ON c.relnamespace = n.oid AND c.relname = 'head'",
                    {wanted}, Keep::Nothing, answer);
    m_pipeline.Sync();
    PostgresRows rows(m_pipeline, answer);
    rows.Next();
    Session session;
    session.schema = rows.Text(0);
    session.process = static_cast<std::int32_t>(rows.Integer(1));
    session.isStandby = rows.Integer(2) != 0;
    session.isUtf8 = rows.Integer(3) != 0;
    session.hasSchema = rows.Integer(4) != 0;
    session.mayUseSchema = rows.Integer(5) != 0;
    session.hasHead = rows.Integer(6) != 0;
    session.mayRead = rows.Integer(7) != 0;
    // Another schema would be another repository.
    if (const bool isNamed = rows.Integer(8) != 0; !isNamed && NamesSchema(m_pipeline.Handle()))
        throw StorageError(Problem::Configuration, MessageNumber::PoolerRefuses,
                           {Name(), u"options"});
    if (!IsSchemaName(session.schema))
        throw StorageError(Problem::Configuration, MessageNumber::NoSchemaName,
                           {FromUtf8(session.schema), Platform::ToText(kMaxSchemaName)});
    if (!session.isUtf8)
        throw StorageError(Problem::Configuration, MessageNumber::DatabaseNotUtf8,
                           {FromUtf8(PQdb(m_pipeline.Handle())), Name()});
    m_schema = session.schema;
    m_searchPath = '"' + m_schema + "\", pg_temp";
    m_isStandby = session.isStandby;
    // A pooler gives its clients numbers of its own.
    m_isPooled = PQbackendPID(m_pipeline.Handle()) != session.process;
    if (!m_isPooled)
        SetSession(Keep::Nothing, 0);
    if (IsTold())
        m_pipeline.Send("LISTEN zebx", {}, Keep::Nothing);
    // Else it would belong to the first transaction, and be undone with that.
    m_pipeline.Sync();
    return session;
}

void PostgresConnection::CheckRepository(const Session& session) {
    const CString schema = FromUtf8(session.schema);
    if (!session.hasSchema || (session.mayUseSchema && !session.hasHead))
        throw StorageError(Problem::Missing, MessageNumber::NoRepositoryInSchema, {schema, Name()});
    if (!session.mayUseSchema || !session.mayRead)
        throw StorageError(Problem::NotAllowed, MessageNumber::MayNotUseSchema,
                           {FromUtf8(PQuser(m_pipeline.Handle())), schema, Name()});
}

// Names are found in the repository's schema and nowhere else, and nobody waits for ever for
// another writer.
void PostgresConnection::SetSession(Keep keep, std::int64_t onlyTransaction) {
    m_pipeline.Send("SELECT set_config('search_path', $1, $2 <> 0), "
                    "set_config('lock_timeout', $3, $2 <> 0)",
                    {m_searchPath, onlyTransaction, std::to_string(m_options.busyTimeoutMs) + "ms"},
                    keep);
}

void PostgresConnection::SendSettingsOfPooled() {
    if (m_isPooled)
        SetSession(Keep::Nothing, 1);
}

void PostgresConnection::Begin(SqlText sql, Transaction transaction) {
    (void)m_pipeline.TakeError();
    m_pipeline.Send(sql, {}, HowToKeep());
    m_transaction = transaction;
    SendSettingsOfPooled();
}

void PostgresConnection::BeginRead() {
    Begin("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY", Transaction::Read);
}

void PostgresConnection::BeginWrite() {
    Begin("BEGIN ISOLATION LEVEL READ COMMITTED READ WRITE", Transaction::Write);
    // Nobody who stopped working keeps the other writers waiting.
    m_pipeline.Send("SET LOCAL idle_in_transaction_session_timeout = '5min'", {}, HowToKeep());
}

void PostgresConnection::Commit() {
    const Keep keep = HowToKeep();
    if (m_transaction == Transaction::Write)
        m_pipeline.Send("SELECT pg_notify('zebx', $1)", {m_schema}, keep);
    auto answer = std::make_shared<Answer>();
    m_pipeline.Send("COMMIT", {}, keep, answer);
    m_pipeline.Sync();
    try {
        m_pipeline.WaitForAll();
    } catch (const StorageError& error) {
        m_transaction = Transaction::None;
        // Here alone it is not known what became of the call.
        if (answer->error)
            throw StorageError(error.Kind(), MessageNumber::CommitUnanswered, {Name()});
        throw;
    }
    if (answer->outcome == "COMMIT") {
        m_transaction = Transaction::None;
        return;
    }
    // Behind a statement that failed the server has not even looked at it.
    auto error = answer->error;
    if (const auto first = m_pipeline.TakeError())
        error = first;
    Rollback();
    if (error)
        std::rethrow_exception(error);
    throw StorageError(Problem::Internal, MessageNumber::Internal, {FromUtf8(answer->outcome)});
}

void PostgresConnection::Rollback() noexcept {
    const Transaction ended = std::exchange(m_transaction, Transaction::None);
    if (ended == Transaction::None || !m_pipeline.IsAlive())
        return;
    try {
        m_pipeline.Send("ROLLBACK", {}, HowToKeep());
        m_pipeline.Sync();
        // What failed in it must not be taken for a failure of what comes next.
        if (ended == Transaction::Write)
            m_pipeline.WaitForAll();
        (void)m_pipeline.TakeError();
    } catch (const std::exception&) {
        // The connection is lost, and with it the transaction; the next call tells.
    }
}

std::unique_ptr<SqlRows> PostgresConnection::Ask(SqlText sql,
                                                 std::initializer_list<SqlValue> values) {
    auto answer = std::make_shared<Answer>();
    m_pipeline.Send(sql, values, HowToKeep(), answer);
    m_pipeline.Sync();
    return std::make_unique<PostgresRows>(m_pipeline, std::move(answer));
}

std::unique_ptr<SqlRows> PostgresConnection::Query(SqlText sql,
                                                   std::initializer_list<SqlValue> values) {
    if (m_transaction == Transaction::None)
        SendSettingsOfPooled();
    return Ask(sql, values);
}

void PostgresConnection::Execute(SqlText sql, std::initializer_list<SqlValue> values) {
    if (m_transaction == Transaction::None) {
        Query(sql, values)->Next();
        return;
    }
    m_pipeline.Send(sql, values, HowToKeep());
}

void PostgresConnection::WatchChanges() {
    m_watchedAnswer.reset();
    if (IsTold())
        (void)m_pipeline.TakeNotifications(m_schema);
    else
        m_watchedAnswer = Query("SELECT revision FROM head WHERE id = 1", {});
    m_wasChanged = false;
}

bool PostgresConnection::WasChanged() {
    if (m_wasChanged)
        return true;
    if (IsTold())
        return m_wasChanged = m_pipeline.TakeNotifications(m_schema) > 0;
    if (m_watchedAnswer) {
        m_watchedAnswer->Next();
        m_watched = m_watchedAnswer->Integer(0);
        m_watchedAnswer.reset();
    }
    return m_wasChanged = HeadRevision() != m_watched;
}

std::int64_t PostgresConnection::HeadRevision() {
    const auto rows = Query("SELECT revision FROM head WHERE id = 1", {});
    return rows->Next() ? rows->Integer(0) : 0;
}

std::string PostgresConnection::KindDigest(std::int64_t contentCode, std::string_view kindId) {
    const auto rows =
        Query("SELECT sha256(convert_to(string_agg(concat_ws(E'\\x01', f.id, f.size_bytes, "
              "encode(f.hash, 'hex'), f.name, f.name_folded, f.file_manager_id, "
              "f.custom_parameter), E'\\x02' ORDER BY f.id), 'UTF8')) FROM stored_file f "
              "WHERE f.file_type = $1 AND f.origin_id = $2 AND f.holder IS NULL "
              "AND f.until_revision IS NULL",
              {contentCode, kindId});
    return rows->Next() && !rows->IsNull(0) ? std::string(rows->Bytes(0)) : std::string();
}

bool PostgresConnection::MayWrite() {
    const auto rows = Query("SELECT has_any_column_privilege('head', 'UPDATE') AND "
                            "NOT pg_is_in_recovery()",
                            {});
    return rows->Next() && rows->Integer(0) != 0;
}

CString PostgresConnection::EngineName() {
    // "15.20 (Debian 15.20-0+deb12u1)"
    const std::string_view version = PQparameterStatus(m_pipeline.Handle(), "server_version");
    return u"PostgreSQL " + FromUtf8(version.substr(0, version.find(' ')));
}

ServerConnection PostgresConnection::DescribeServer() {
    PGconn* handle = m_pipeline.Handle();
    const auto text = [](const char* value) { return value ? FromUtf8(value) : CString(); };
    ServerConnection server;
    server.server = text(PQhost(handle));
    if (server.server.substr(0, 1) != u"/")
        server.server += u":" + text(PQport(handle));
    server.database = text(PQdb(handle));
    server.schema = FromUtf8(m_schema);
    server.user = text(PQuser(handle));
    server.application = text(PQparameterStatus(handle, "application_name"));
    if (PQsslInUse(handle))
        server.encryption = text(PQsslAttribute(handle, "protocol")) + u" " +
                            text(PQsslAttribute(handle, "cipher")) + u" (" + TlsMode(handle) + u")";
    server.isStandby = m_isStandby;
    server.isPooled = m_isPooled;
    return server;
}

} // namespace

std::unique_ptr<SqlConnection> OpenPostgres(const Address& address,
                                            const PostgresOptions& options) {
    auto connection = std::make_unique<PostgresConnection>(address, options);
    const Session session = connection->SetUp();
    if (options.onSignedIn)
        options.onSignedIn(connection->DescribeServer());
    connection->CheckRepository(session);
    return connection;
}

void CreatePostgres(const Address& address, const std::function<void(SqlConnection&)>& fill) {
    PostgresConnection connection(address, {});
    const Session session = connection.SetUp();
    const CString schema = FromUtf8(session.schema);
    connection.BeginWrite();
    // Two who make it at once wait for each other.
    connection.Execute("SELECT pg_advisory_xact_lock(hashtext($1))", {session.schema});
    CheckMayMake(connection, schema);
    if (!session.hasSchema)
        connection.RunScript("CREATE SCHEMA IF NOT EXISTS \"" + session.schema + '"');
    const auto head = connection.Query("SELECT to_regclass('head') IS NOT NULL", {});
    if (!head->Next() || head->Integer(0) == 0) {
        fill(connection);
        // Drawings are compressed already, or they do not compress; small ones stay in one piece.
        connection.RunScript("ALTER TABLE content ALTER COLUMN bytes SET STORAGE EXTERNAL, "
                             "SET (toast_tuple_target = 8160)");
    }
    GrantToRoles(connection, schema);
    connection.Commit();
}

} // namespace Storage
