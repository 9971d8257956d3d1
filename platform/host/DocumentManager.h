// SPDX-License-Identifier: MIT
// The host's document manager, as far as modules with windows need it: whose
// resources are current, and whether the current drawing document is locked.
#pragma once

#include "platform/Export.h"
#include "platform/os/Module.h"

#include <vector>

namespace Platform {

class ZEBX_EXPORT DocumentManager {
public:
    static DocumentManager* Instance();

    // Makes a module's resources current until PopResources.
    void PushResources(const void* moduleInstance);

    // Restores the resources that were current before the last PushResources; without
    // one, does nothing.
    void PopResources();

    // The module whose resources are current; null is the host itself.
    const void* CurrentResources() const;

    // Locks are counted; the document is locked while at least one is held.
    void LockDocument();
    void UnlockDocument();
    bool IsDocumentLocked() const;

private:
    DocumentManager() = default;
    std::vector<const void*> m_resources;
    int m_locks = 0;
};

} // namespace Platform
