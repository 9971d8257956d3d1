// SPDX-License-Identifier: MIT
#include "storage/ConnectionTrial.h"

#include "platform/os/File.h"
#include "platform/os/FileSystem.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/Engine.h"
#include "storage/sqlite/SqliteError.h"
#include "storage/store/Schema.h"
#include "storage/store/Store.h"

#include <algorithm>

namespace Storage {
namespace {

using Platform::ToText;

// The steps in their order.  Each tells what worked, and throws StorageError otherwise.
class Trial {
public:
    explicit Trial(const std::function<CString(const Message&)>& textOf) : m_textOf(textOf) {}

    // What an engine knows of its addresses comes first and ends with an open repository, or
    // with none where one would be made; the rest is the same for every engine.
    void Run(const Connection& connection, const std::function<Address(CStringView)>& placeOf) {
        const Address address = placeOf(connection.address);
        Worked(MessageNumber::AddressUnderstood, {address.Text()});
        if (auto sql = address.IsServer() ? OpenOnServer(address, connection.create)
                                          : Open(address, connection.create))
            LookInto(std::move(sql));
        if (!address.IsServer())
            WarnOfNetwork(address.path);
    }
    void Tell(StepResult result, const Message& message) {
        m_steps.push_back({result, m_textOf(message)});
    }
    std::vector<ConnectionStep> TakeSteps() { return std::move(m_steps); }

private:
    void Worked(MessageNumber number, std::vector<CString> values = {}) {
        Tell(StepResult::Worked, {number, std::move(values)});
    }
    std::unique_ptr<SqlConnection> Open(const Address& address, bool create);
    std::unique_ptr<SqlConnection> OpenWhatIsThere(const Address& address);
    std::unique_ptr<SqlConnection> OpenOnServer(const Address& address, bool create);
    void TellServer(const ServerConnection& server);
    void TellRights(SqlConnection& sql);
    void LookInto(std::unique_ptr<SqlConnection> sql);
    void WarnOfNetwork(const CString& path);

    const std::function<CString(const Message&)>& m_textOf;
    std::vector<ConnectionStep> m_steps;
};

std::unique_ptr<SqlConnection> Trial::Open(const Address& address, bool create) {
    if (!create || Platform::PathExists(address.path))
        return OpenWhatIsThere(address);
    CheckMayCreate(address);
    Worked(MessageNumber::WouldBeMade, {ShownPath(address.path)});
    return nullptr;
}

std::unique_ptr<SqlConnection> Trial::OpenWhatIsThere(const Address& address) {
    const CString shown = ShownPath(address.path);
    if (Platform::KindOfPath(address.path) == Platform::PathKind::File)
        Worked(MessageNumber::FileFound, {shown});
    try {
        return LookIntoRepository(address);
    } catch (const StorageError& error) {
        if (error.Kind() != Problem::Missing)
            throw;
        // In the window's words: here nobody types commands.
        throw StorageError(Problem::Missing, MessageNumber::NotThere, {shown});
    }
}

std::unique_ptr<SqlConnection> Trial::OpenOnServer(const Address& address, bool create) {
    bool isSignedIn = false;
    try {
        return LookIntoRepository(address, [&](const ServerConnection& server) {
            isSignedIn = true;
            TellServer(server);
        });
    } catch (const StorageError& error) {
        // A database that is missing would not be made.
        if (!create || !isSignedIn || error.Kind() != Problem::Missing)
            throw;
        CheckMayCreate(address);
        Worked(MessageNumber::WouldBeMadeThere, {address.Text()});
        return nullptr;
    }
}

// What goes to this computer's own server nobody else can read on its way.
bool IsThisComputer(const CString& server) {
    const auto begins = [&](CStringView with) { return server.substr(0, with.size()) == with; };
    return begins(u"/") || begins(u"localhost:") || begins(u"127.") || begins(u"::1:");
}

void Trial::TellServer(const ServerConnection& server) {
    Worked(MessageNumber::ServerReached, {server.server, server.database, server.user});
    if (!server.encryption.empty())
        Worked(MessageNumber::Encrypted, {server.encryption});
    else if (!IsThisComputer(server.server))
        Tell(StepResult::Warning, {MessageNumber::NotEncrypted, {}});
}

void Trial::TellRights(SqlConnection& sql) {
    const ServerConnection server = sql.DescribeServer();
    if (sql.MayWrite())
        Worked(MessageNumber::ReadAndWrite);
    else if (server.isStandby)
        Worked(MessageNumber::IsStandby);
    else if (!server.server.empty())
        Worked(MessageNumber::ReadOnlyThere, {server.user});
    else
        Worked(MessageNumber::ReadOnly);
    if (server.isPooled)
        Worked(MessageNumber::IsPooled);
}

void Trial::LookInto(std::unique_ptr<SqlConnection> sql) {
    Store store(std::move(sql), {});
    RepositoryState state;
    store.ReadState(state);
    Worked(MessageNumber::Opened, {ToText(state.schemaVersion), store.Connection().EngineName()});
    Worked(MessageNumber::Holds, {ToText(state.revision), ToText(state.files)});
    if (state.schemaVersion < kSchemaVersion)
        Tell(StepResult::Warning, OldTables(store.Connection().Name(), state.schemaVersion));
    TellRights(store.Connection());
}

void Trial::WarnOfNetwork(const CString& path) {
    CString place = path;
    while (place.size() > 1 && !Platform::PathExists(place))
        place.erase(std::max<std::size_t>(place.rfind(u'\\'), 1));
    const CString fileSystem = Platform::NetworkFileSystemOf(place);
    if (!fileSystem.empty())
        Tell(StepResult::Warning, {MessageNumber::OnNetwork, {ShownPath(path), fileSystem}});
}

} // namespace

std::vector<ConnectionStep> TestConnection(const Connection& connection,
                                           const std::function<Address(CStringView)>& placeOf,
                                           const std::function<CString(const Message&)>& textOf) {
    Trial trial(textOf);
    try {
        trial.Run(connection, placeOf);
    } catch (const StorageError& error) {
        for (const Message& message : error.Messages())
            trial.Tell(StepResult::Failed, message);
    } catch (const std::exception& error) {
        trial.Tell(StepResult::Failed,
                   {MessageNumber::Internal, {Platform::FromUtf8(error.what())}});
    }
    return trial.TakeSteps();
}

} // namespace Storage
