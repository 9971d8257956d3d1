// SPDX-License-Identifier: MIT
// The plug-in's one connection and what goes with it: settings, the user's language, and
// the telling of what went wrong.  The backend and the administration work through it.
#pragma once

#include "storage/Engine.h"
#include "storage/StorageSettings.h"
#include "storage/store/Store.h"

#include <chrono>

namespace Storage {

// Opens the repository at an address.
using Connector = std::function<std::unique_ptr<SqlConnection>(const Address&)>;

// How long a connection to a server that worked before is tried for before a call fails: the
// server may be restarting, or another one taking its place.
struct Patience {
    std::chrono::milliseconds firstWait{100}; // doubled before each further attempt
    std::chrono::milliseconds all{10'000};
};

class RepositoryAccess {
public:
    explicit RepositoryAccess(Connector connector = OpenRepository, Patience patience = {});

    void SetMsgProvider(Repository::IMsgProvider* provider) { m_provider = provider; }
    void SetVersion(CStringView version) { m_version = version; }
    // See RepositoryAdministration.
    void SetApplication(CStringView application) { m_application = application; }
    void SetSettingsPath(CStringView folder) { m_settings.SetFolder(folder); }

    // Throws NoConnection (Configuration), and then there is none until Connect.
    void LoadSettings();
    // Throws Configuration.  Settings that were not understood are left as they are.
    void SaveSettings();

    // The repository, connected when it is not yet or not any more.  A connection to a server
    // that broke is waited for once; afterwards each call tries once until one succeeds.  Waits
    // no longer than until the user interrupts.  Throws NoConnection.
    Store& Use();
    void Disconnect() { m_store.reset(); }
    // See RepositoryAdministration::Connect.  Throws StorageError.
    void Connect(CStringView address, bool create);
    // The address that a text means; the empty one is that of the repository in use.  Throws
    // Configuration.
    Address AddressOf(CStringView text) const;
    // The address in use, as far as it can be told.
    CString ShownAddress() const;
    // What a text that the user gave means, with all that the settings say of it; empty: the
    // default place.  Throws Configuration.
    Address PlaceOf(CStringView text, CStringView currentFolder) const;

    // Warns in the workspace log when tables are of an older version than this program's; once in
    // this object's life, and so in the process's.
    void WarnOfOldTables(std::int64_t version);
    // Writes the problem to the workspace log, once, and remembers it.
    void Tell(const StorageError& error);
    // The problem in the user's language, for somebody else to show.
    CString Explain(const StorageError& error);
    // A message in the user's language.
    CString TextOf(const Message& message) const { return Storage::TextOf(message, m_provider); }
    Problem TakeLastProblem() { return std::exchange(m_lastProblem, Problem::None); }

private:
    Address AddressInUse() const;
    std::unique_ptr<Store> Open(const Address& address);
    std::unique_ptr<Store> OpenPatiently(const Address& address);
    std::shared_ptr<ContentCache> Cache();
    // Once in this object's life, and so in the process's.
    void WarnOfNetwork(const Address& address);

    Connector m_connector;
    Patience m_patience;
    Repository::IMsgProvider* m_provider = nullptr;
    CString m_version;
    CString m_application; // empty: nobody said
    StorageSettings m_settings;
    std::optional<StorageError> m_settingsError;
    std::shared_ptr<ContentCache> m_cache;
    std::unique_ptr<Store> m_store;
    bool m_mayWait = false; // a connection to the address in use was made since the last failure
    CString m_toldNoConnection; // what was said last about a connection that cannot be made
    bool m_toldNetwork = false;
    bool m_toldOldTables = false;
    Problem m_lastProblem = Problem::None;
};

} // namespace Storage
