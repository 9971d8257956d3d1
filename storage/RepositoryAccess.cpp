// SPDX-License-Identifier: MIT
#include "storage/RepositoryAccess.h"

#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/host/Interruption.h"
#include "platform/os/Environment.h"
#include "platform/os/FileSystem.h"
#include "platform/os/FreeName.h"
#include "platform/os/UserFolders.h"
#include "platform/os/UserSettings.h"
#include "storage/sqlite/SqliteError.h"
#include "storage/store/Schema.h"

#include <algorithm>
#include <thread>

namespace Storage {
namespace {

using namespace ZEBGis::Workspace;

void Log(enmMessageType type, const CString& text) {
    CWsManager::Instance()->LogMessage(type, text.c_str());
}

// False when the user interrupted meanwhile.
bool Wait(std::chrono::milliseconds time) {
    constexpr std::chrono::milliseconds slice{50};
    for (; time.count() > 0 && !Platform::IsInterrupted(); time -= slice)
        std::this_thread::sleep_for(std::min(time, slice));
    return !Platform::IsInterrupted();
}

} // namespace

RepositoryAccess::RepositoryAccess(Connector connector, Patience patience)
    : m_connector(std::move(connector)), m_patience(patience) {}

void RepositoryAccess::LoadSettings() {
    m_settingsError.reset();
    m_store.reset();
    m_mayWait = false;
    try {
        m_settings.Load();
    } catch (const StorageError& error) {
        m_settingsError = error;
        throw NoConnection(error);
    }
}

void RepositoryAccess::SaveSettings() {
    // The manager saves right after loading: a file with a slip of the pen must survive it.
    if (!m_settingsError)
        m_settings.Save();
}

Address RepositoryAccess::AddressInUse() const {
    if (m_settingsError)
        throw StorageError(*m_settingsError);
    return PlaceOf(m_settings.Address(), {});
}

Address RepositoryAccess::PlaceOf(CStringView text, CStringView currentFolder) const {
    Address place = text.empty() ? DefaultAddress() : ParseAddress(text, currentFolder);
    place.schema = Platform::UserSettings::Instance()->Get(Platform::Setting::Schema).value;
    place.application =
        m_application.empty() ? u"ZEBXRepositoryClient " + m_version : m_application;
    return place;
}

Address RepositoryAccess::AddressOf(CStringView text) const {
    return text.empty() ? AddressInUse() : PlaceOf(text, Platform::CurrentFolder());
}

CString RepositoryAccess::ShownAddress() const {
    try {
        return AddressInUse().Text();
    } catch (const StorageError&) {
        return m_settings.Address();
    }
}

std::unique_ptr<Store> RepositoryAccess::Open(const Address& address) {
    StoreOptions options;
    // Asked once: a directory service may take its time.
    options.stamp = [this, user = Platform::UserName(), host = Platform::HostName()] {
        return Stamp{Platform::UtcNow(), user, host, u"ZEBXRepositoryClient " + m_version};
    };
    options.leftOut = [this](const StorageError& error) { Tell(error); };
    auto connection = m_connector(address);
    if (connection->MayAskAhead())
        options.cache = Cache();
    auto store = std::make_unique<Store>(std::move(connection), std::move(options));
    WarnOfNetwork(address);
    return store;
}

std::unique_ptr<Store> RepositoryAccess::OpenPatiently(const Address& address) {
    using Clock = std::chrono::steady_clock;
    const bool mayWait = std::exchange(m_mayWait, false) && address.IsServer();
    const Clock::time_point end = Clock::now() + m_patience.all;
    for (auto wait = m_patience.firstWait;; wait *= 2) {
        try {
            return Open(address);
        } catch (const StorageError& error) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
            const bool passes = error.Kind() == Problem::Unreachable;
            if (!mayWait || !passes || left.count() <= 0 || !Wait(std::min(wait, left)))
                throw;
        }
    }
}

// One for all connections: what it knows of its files is not learnt again.
std::shared_ptr<ContentCache> RepositoryAccess::Cache() {
    if (!m_cache) {
        const CString folder = Platform::CacheFolder();
        m_cache = std::make_shared<ContentCache>(folder.empty() ? folder : folder + u"StudioZEB\\");
    }
    return m_cache;
}

void RepositoryAccess::WarnOfNetwork(const Address& address) {
    const CString fileSystem = Platform::NetworkFileSystemOf(address.path);
    if (fileSystem.empty() || m_toldNetwork)
        return;
    m_toldNetwork = true;
    const Message warning{MessageNumber::OnNetwork, {ShownPath(address.path), fileSystem}};
    Log(MessageWarning, TextOf(warning));
}

void RepositoryAccess::WarnOfOldTables(std::int64_t version) {
    if (version >= kSchemaVersion || m_toldOldTables)
        return;
    m_toldOldTables = true;
    Log(MessageWarning, TextOf(OldTables(ShownAddress(), version)));
}

Store& RepositoryAccess::Use() {
    if (m_store && !m_store->Connection().IsAlive())
        m_store.reset();
    if (!m_store) {
        try {
            m_store = OpenPatiently(AddressInUse());
        } catch (const StorageError& error) {
            throw NoConnection(error);
        }
        m_mayWait = true;
        m_toldNoConnection.clear();
    }
    return *m_store;
}

void RepositoryAccess::Connect(CStringView address, bool create) {
    const Address place = PlaceOf(address, Platform::CurrentFolder());
    if (create)
        CreateRepository(place);
    auto store = Open(place);
    StorageSettings settings = m_settings;
    settings.SetAddress(address.empty() ? CString() : place.Text());
    settings.Save();
    m_settings = std::move(settings);
    m_settingsError.reset();
    m_store = std::move(store);
    m_mayWait = true;
    m_toldNoConnection.clear();
}

void RepositoryAccess::Tell(const StorageError& error) {
    const CString told = m_toldNoConnection;
    const CString text = Explain(error);
    m_lastProblem = error.Kind();
    // The manager asks between any two steps: once is enough.
    if (dynamic_cast<const NoConnection*>(&error) && text == told)
        return;
    for (const Message& message : error.Messages())
        Log(MessageFailure, TextOf(message));
}

CString RepositoryAccess::Explain(const StorageError& error) {
    CString text = Storage::TextOf(error.Messages(), m_provider);
    if (dynamic_cast<const NoConnection*>(&error))
        m_toldNoConnection = text;
    return text;
}

} // namespace Storage
