// SPDX-License-Identifier: MIT
#include "storage/sqlite/SqliteConnection.h"

#include "platform/os/File.h"
#include "platform/os/FreeName.h"
#include "platform/os/Path.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"
#include "storage/sqlite/PageChecksumVfs.h"
#include "storage/sqlite/SqliteCheck.h"
#include "storage/sqlite/SqliteError.h"

#include <algorithm>
#include <sqlite3.h>
#include <unordered_map>

namespace Storage {
namespace {

// Measured with drawings of 100 KB: half the time of 4 KiB pages in writing, two thirds in
// reading; larger ones gain nothing more and slow the small calls down.
constexpr std::string_view kNewFile = "PRAGMA page_size = 16384;"
                                      "PRAGMA application_id = 0x5A454258;"
                                      "PRAGMA journal_mode = WAL;";

// What a connection sets for itself.  The limit lets the "-wal" file shrink again after a
// large call.
constexpr std::string_view kSettings = "PRAGMA synchronous = FULL;"
                                       "PRAGMA foreign_keys = ON;"
                                       "PRAGMA cell_size_check = ON;"
                                       "PRAGMA journal_size_limit = 16777216;"
                                       "PRAGMA cache_size = -16000;";

struct PreparedStatement {
    sqlite3_stmt* handle = nullptr;
    std::vector<int> indexes; // of $1, $2, ... among SQLite's own parameters
    bool isInUse = false;
};

CString FolderOf(const CString& path) {
    return path.substr(0, path.find_last_of(u'\\') + 1);
}

std::string FileUri(std::string_view native) {
    std::string uri = "file:";
    for (const char c : native)
        if (c == '%' || c == '?' || c == '#')
            uri += '%' + ToHexadecimal({&c, 1});
        else
            uri += c;
    return uri;
}

// Whether no connection left anything beside the file: SQLite makes both files when it opens it.
bool IsLeftAlone(const CString& path) {
    return Platform::FileSize(path + u"-wal").value_or(0) == 0 &&
           !Platform::PathExists(path + u"-shm");
}

enum class Lifetime { Call, Longer };

// Whether anybody can write to the file while it is open.  Fixed: nobody does, and no files are
// made beside it.  Trial: as Fixed, though whoever opened it could share it.
enum class Use { Shared, Fixed, Trial };

class SqliteConnection : public SqlConnection {
public:
    explicit SqliteConnection(const CString& path, Use use = Use::Shared)
        : m_path(path), m_use(use) {}
    ~SqliteConnection() override;
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    void Open(int busyTimeoutMs);
    void CheckIsRepository();
    // Before anything is written into a new file.
    void ReservePageChecksums();
    // Leaves "-wal" and "-shm" beside the file when the last connection closes.
    void KeepSideFiles();
    // Leaves also what "-wal" holds where it is then.
    void KeepLog() { Set(SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1); }

    void BeginRead() override { Execute("BEGIN", {}); }
    // At once, so that nobody who has read must find out later that he may not write.
    void BeginWrite() override { Execute("BEGIN IMMEDIATE", {}); }
    void Commit() override { Execute("COMMIT", {}); }
    void Rollback() noexcept override;
    std::unique_ptr<SqlRows> Query(SqlText sql, std::initializer_list<SqlValue> values) override;
    void Execute(SqlText sql, std::initializer_list<SqlValue> values) override;
    void RunScript(std::string_view statements) override;
    void CheckEngine(const TellFinding& tell) override;
    bool IsAlive() override;
    bool MayWrite() override;
    CString Name() override { return ShownPath(m_path); }
    CString EngineName() override;
    SqlWords Words() override { return {"INTEGER", "TEXT", "BLOB", " STRICT"}; }

    void Check(int code) {
        if (code != SQLITE_OK)
            ThrowSqliteError(m_database, code, m_path);
    }
    void CheckMemory() {
        if (sqlite3_errcode(m_database) == SQLITE_NOMEM)
            ThrowSqliteError(m_database, SQLITE_NOMEM, m_path);
    }
    // Whether there is a row.
    bool Step(sqlite3_stmt* statement);
    void End(PreparedStatement& statement);

private:
    void Set(int option, int value) {
        Check(sqlite3_db_config(m_database, option, value, nullptr));
    }
    void Harden();
    PreparedStatement& Prepare(SqlText sql);
    void Bind(PreparedStatement& statement, std::initializer_list<SqlValue> values,
              Lifetime lifetime);

    CString m_path;
    Use m_use;
    sqlite3* m_database = nullptr;
    std::unordered_map<std::string_view, PreparedStatement> m_statements;
};

class SqliteRows : public SqlRows {
public:
    SqliteRows(SqliteConnection& connection, PreparedStatement& statement)
        : m_connection(connection), m_prepared(statement), m_statement(statement.handle) {
        m_prepared.isInUse = true;
    }
    ~SqliteRows() override { m_connection.End(m_prepared); }
    SqliteRows(const SqliteRows&) = delete;
    SqliteRows& operator=(const SqliteRows&) = delete;

    bool Next() override { return m_connection.Step(m_statement); }
    bool IsNull(int column) override {
        return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
    }
    std::int64_t Integer(int column) override { return sqlite3_column_int64(m_statement, column); }
    std::string_view Text(int column) override {
        return View(sqlite3_column_text(m_statement, column), column);
    }
    std::string_view Bytes(int column) override {
        return View(sqlite3_column_blob(m_statement, column), column);
    }

private:
    std::string_view View(const void* data, int column) {
        if (!data) {
            // Nothing, or no memory for something.
            m_connection.CheckMemory();
            return {};
        }
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
        return {static_cast<const char*>(data), size};
    }

    SqliteConnection& m_connection;
    PreparedStatement& m_prepared;
    sqlite3_stmt* m_statement;
};

SqliteConnection::~SqliteConnection() {
    for (auto& [sql, statement] : m_statements)
        sqlite3_finalize(statement.handle);
    sqlite3_close(m_database);
}

void SqliteConnection::Open(int busyTimeoutMs) {
    constexpr int kFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const std::string native = Platform::LookUp(m_path);
    if (m_use == Use::Shared)
        Check(sqlite3_open_v2(native.c_str(), &m_database, kFlags | SQLITE_OPEN_READWRITE,
                              PageChecksumVfs()));
    else
        Check(sqlite3_open_v2((FileUri(native) + "?immutable=1").c_str(), &m_database,
                              kFlags | SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, PageChecksumVfs()));
    sqlite3_busy_timeout(m_database, busyTimeoutMs);
    Harden();
    RunScript(kSettings);
}

// A repository is data: nothing that somebody wrote into its schema is run.
void SqliteConnection::Harden() {
    Set(SQLITE_DBCONFIG_DEFENSIVE, 1);
    Set(SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0);
    Set(SQLITE_DBCONFIG_ENABLE_TRIGGER, 0);
    Set(SQLITE_DBCONFIG_ENABLE_VIEW, 0);
    Set(SQLITE_DBCONFIG_DQS_DML, 0);
    Set(SQLITE_DBCONFIG_DQS_DDL, 0);
}

void SqliteConnection::CheckIsRepository() {
    const CString shown = ShownPath(m_path);
    if (Platform::FileSize(m_path) == 0u)
        throw StorageError(Problem::NotARepository, MessageNumber::EmptyFile, {shown});
    const auto rows = Query("PRAGMA application_id", {});
    if (!rows->Next() || rows->Integer(0) != kApplicationId)
        throw StorageError(Problem::NotARepository, MessageNumber::OtherDatabase, {shown});
}

void SqliteConnection::ReservePageChecksums() {
    int size = kPageChecksumBytes;
    Check(sqlite3_file_control(m_database, "main", SQLITE_FCNTL_RESERVE_BYTES, &size));
}

void SqliteConnection::KeepSideFiles() {
    int on = 1;
    Check(sqlite3_file_control(m_database, "main", SQLITE_FCNTL_PERSIST_WAL, &on));
}

void SqliteConnection::Rollback() noexcept {
    if (sqlite3_get_autocommit(m_database))
        return;
    try {
        Execute("ROLLBACK", {}); // every call that reads ends so
    } catch (const std::exception&) {
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

std::unique_ptr<SqlRows> SqliteConnection::Query(SqlText sql,
                                                 std::initializer_list<SqlValue> values) {
    PreparedStatement& statement = Prepare(sql);
    Bind(statement, values, Lifetime::Longer);
    return std::make_unique<SqliteRows>(*this, statement);
}

void SqliteConnection::Execute(SqlText sql, std::initializer_list<SqlValue> values) {
    PreparedStatement& statement = Prepare(sql);
    Bind(statement, values, Lifetime::Call);
    SqliteRows rows(*this, statement);
    while (rows.Next()) {
    }
}

void SqliteConnection::RunScript(std::string_view statements) {
    Check(sqlite3_exec(m_database, std::string(statements).c_str(), nullptr, nullptr, nullptr));
}

void SqliteConnection::CheckEngine(const TellFinding& tell) {
    // With a page missing SQLite complains of all that leads there.
    if (!CheckPages(m_database, m_path, tell))
        return;
    const auto rows = Query("PRAGMA integrity_check", {});
    while (rows->Next()) {
        std::string complaint(rows->Text(0));
        std::replace(complaint.begin(), complaint.end(), '\n', ' ');
        if (complaint != "ok")
            tell({MessageNumber::InDatabase, {}},
                 {MessageNumber::EngineSays, {Platform::FromUtf8(complaint)}});
    }
}

bool SqliteConnection::IsAlive() {
    // Somebody who may write came: from now on reading takes more than the file.
    if (m_use != Use::Shared && !IsLeftAlone(m_path))
        return false;
    int moved = 0;
    const int code = sqlite3_file_control(m_database, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return code == SQLITE_OK && !moved;
}

bool SqliteConnection::MayWrite() {
    const bool takesWrites = m_use == Use::Trial || sqlite3_db_readonly(m_database, "main") == 0;
    return takesWrites && Platform::MayWrite(m_path) && Platform::MayWrite(FolderOf(m_path));
}

CString SqliteConnection::EngineName() {
    return u"SQLite " + Platform::FromUtf8(sqlite3_libversion());
}

bool SqliteConnection::Step(sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        ThrowSqliteError(m_database, code, m_path);
    return code == SQLITE_ROW;
}

void SqliteConnection::End(PreparedStatement& statement) {
    sqlite3_reset(statement.handle);
    sqlite3_clear_bindings(statement.handle);
    statement.isInUse = false;
}

PreparedStatement& SqliteConnection::Prepare(SqlText sql) {
    PreparedStatement& statement = m_statements[sql.View()];
    if (statement.isInUse)
        throw StorageError(Problem::Internal, MessageNumber::Internal, {u"a result is still open"});
    if (statement.handle)
        return statement;
    Check(sqlite3_prepare_v3(m_database, sql.View().data(), static_cast<int>(sql.View().size()),
                             SQLITE_PREPARE_PERSISTENT, &statement.handle, nullptr));
    const int count = sqlite3_bind_parameter_count(statement.handle);
    for (int i = 1; i <= count; ++i) {
        const std::string name = "$" + std::to_string(i);
        statement.indexes.push_back(sqlite3_bind_parameter_index(statement.handle, name.c_str()));
    }
    return statement;
}

void SqliteConnection::Bind(PreparedStatement& statement, std::initializer_list<SqlValue> values,
                            Lifetime lifetime) {
    const auto keep = lifetime == Lifetime::Call ? SQLITE_STATIC : SQLITE_TRANSIENT;
    // SQLite takes a null pointer for NULL, also when the size is 0.
    const auto data = [](std::string_view view) { return view.data() ? view.data() : ""; };
    if (values.size() != statement.indexes.size())
        throw StorageError(Problem::Internal, MessageNumber::Internal, {u"values of a statement"});
    auto next = statement.indexes.begin();
    for (const SqlValue& value : values) {
        const int index = *next++;
        if (const auto* number = std::get_if<std::int64_t>(&value))
            Check(sqlite3_bind_int64(statement.handle, index, *number));
        else if (const auto* text = std::get_if<std::string_view>(&value))
            Check(sqlite3_bind_text64(statement.handle, index, data(*text), text->size(), keep,
                                      SQLITE_UTF8));
        else if (const auto* bytes = std::get_if<SqlBytes>(&value))
            Check(sqlite3_bind_blob64(statement.handle, index, data(bytes->bytes),
                                      bytes->bytes.size(), keep));
    }
}

void CheckKind(const CString& path) {
    const Platform::PathKind kind = Platform::KindOfPath(path);
    if (kind == Platform::PathKind::Folder)
        throw StorageError(Problem::NotARepository, MessageNumber::IsFolder, {ShownPath(path)});
    if (kind == Platform::PathKind::Other)
        throw StorageError(Problem::NotARepository, MessageNumber::OtherFile, {ShownPath(path)});
}

[[noreturn]] void ThrowNotCreated(const CString& path, std::error_code error) {
    const bool rights = error == std::errc::permission_denied ||
                        error == std::errc::operation_not_permitted ||
                        error == std::errc::read_only_file_system;
    const bool full = error == std::errc::no_space_on_device;
    throw StorageError(rights ? Problem::NotAllowed
                       : full ? Problem::Full
                              : Problem::Unreachable,
                       MessageNumber::NotCreated,
                       {ShownPath(path), Platform::FromUtf8(error.message())});
}

// Why no file or folder can be made in the folder, or in the nearest one above it that exists;
// nothing when that cannot be told beforehand.
std::error_code WhyNothingNewIn(CString folder) {
    // Without the separator at its end a file in a folder's place is seen.
    while (folder.size() > 1 && !Platform::PathExists(folder))
        folder.erase(std::max<std::size_t>(folder.rfind(u'\\'), 1));
    if (Platform::KindOfPath(folder) != Platform::PathKind::Folder)
        return std::make_error_code(std::errc::not_a_directory);
    if (!Platform::MayWrite(folder))
        return std::make_error_code(std::errc::permission_denied);
    return {};
}

// Why the folder of a new repository could not be made.
std::error_code WhyNoFolder(const CString& folder) {
    const std::error_code reason = WhyNothingNewIn(folder);
    return reason ? reason : std::make_error_code(std::errc::io_error);
}

// SQLite would play the changes of a repository that stood here into the new one.
void CheckNoChangesLeft(const CString& path) {
    for (const CStringView suffix : {u"-wal", u"-journal"}) {
        const CString side = path + CString(suffix);
        if (Platform::FileSize(side).value_or(0) > 0 && !Platform::PathExists(path))
            throw StorageError(Problem::Unreachable, MessageNumber::ChangesLeft,
                               {ShownPath(path), ShownPath(side)});
    }
}

void FillNewFile(const CString& path, const std::function<void(SqlConnection&)>& fill) {
    SqliteConnection connection(path);
    connection.Open(0);
    connection.ReservePageChecksums();
    connection.RunScript(kNewFile);
    connection.BeginWrite();
    fill(connection);
    connection.Commit();
}

// A file under a name that nobody uses meanwhile; removed unless it got its final name.
class TemporaryFile {
public:
    explicit TemporaryFile(const CString& path)
        : m_path(path + u".new-" + Platform::FromUtf8(RandomName())) {
        if (const auto error = Platform::ReplaceFile(m_path, {}, Platform::Access::Private))
            ThrowNotCreated(path, error);
    }
    ~TemporaryFile() {
        for (const char16_t* suffix : {u"", u"-wal", u"-shm"})
            (void)Platform::RemoveFile(m_path + suffix);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    const CString& Path() const { return m_path; }

private:
    CString m_path;
};

} // namespace

std::unique_ptr<SqlConnection> OpenSqlite(const CString& path, const SqliteOptions& options) {
    CheckKind(path);
    const auto open = [&](Use use) {
        auto connection = std::make_unique<SqliteConnection>(path, use);
        connection->Open(options.busyTimeoutMs);
        connection->CheckIsRepository();
        connection->KeepSideFiles();
        if (options.isTrial)
            connection->KeepLog();
        return connection;
    };
    if (options.isTrial && IsLeftAlone(path))
        return open(Use::Trial);
    try {
        return open(Use::Shared);
    } catch (const StorageError& error) {
        if (Platform::MayWrite(FolderOf(path)) || Platform::PathExists(path + u"-shm"))
            throw;
        if (!IsLeftAlone(path)) {
            // What SQLite misses then is a file that only a writer can make.
            if (error.Kind() != Problem::Missing || !Platform::PathExists(path))
                throw;
            throw StorageError(Problem::NotAllowed, MessageNumber::NeedsWriter, {ShownPath(path)});
        }
    }
    // On a medium or in a folder that takes no files SQLite cannot share the repository.
    return open(Use::Fixed);
}

void CreateSqlite(const CString& path, const std::function<void(SqlConnection&)>& fill) {
    if (Platform::PathExists(path))
        return;
    const CString folder = FolderOf(path);
    if (!Platform::CreateFolderChain(folder, Platform::Access::Private))
        ThrowNotCreated(path, WhyNoFolder(folder));
    CheckNoChangesLeft(path);
    const TemporaryFile file(path);
    FillNewFile(file.Path(), fill);
    const std::error_code error = Platform::RenameToFreeName(file.Path(), path);
    if (error && error != std::errc::file_exists)
        ThrowNotCreated(path, error);
}

void CheckMayCreateSqlite(const CString& path) {
    if (Platform::PathExists(path))
        return;
    if (const std::error_code reason = WhyNothingNewIn(FolderOf(path)))
        ThrowNotCreated(path, reason);
    CheckNoChangesLeft(path);
}

} // namespace Storage
