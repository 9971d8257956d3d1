// SPDX-License-Identifier: MIT
// What the main dialog does besides showing its pages.
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include <functional>

namespace Repository {

class StorageBackend;
class TraceScope;

// The source file's name in the main dialog's trace lines.
inline constexpr const char* kMainDialogSource = ".\\DlgNetworkRepositoryConfiguration";

// What the pages' own buttons "Load all" do.
struct LoadAllActions {
    std::function<void()> foc, ncf, gs, catalogues;
};

// The manager must hold a backend.
class Configuration {
public:
    explicit Configuration(CRepositoryStorageManager& manager) : m_manager(manager) {}

    bool HasConnectionParameters() const;

    // Whether the administration page is part of the dialog; also a line of the trace.
    bool IsAdmin(TraceScope& trace) const;

    // Lets the storage edit its connection and apply it; its results do not count.
    void EditConnection() const;

    // The order is fixed and kept: FOC, NCF, GS, catalogues.  A failure does not stop the next.
    static void LoadAll(const LoadAllActions& actions);

private:
    StorageBackend& Storage() const;

    CRepositoryStorageManager& m_manager;
};

} // namespace Repository
