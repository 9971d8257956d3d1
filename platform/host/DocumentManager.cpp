// SPDX-License-Identifier: MIT
#include "platform/host/DocumentManager.h"

namespace Platform {

DocumentManager* DocumentManager::Instance() {
    static DocumentManager instance;
    return &instance;
}

void DocumentManager::PushResources(const void* moduleInstance) {
    m_resources.push_back(moduleInstance);
}

void DocumentManager::PopResources() {
    if (!m_resources.empty())
        m_resources.pop_back();
}

const void* DocumentManager::CurrentResources() const {
    return m_resources.empty() ? nullptr : m_resources.back();
}

void DocumentManager::LockDocument() {
    ++m_locks;
}

void DocumentManager::UnlockDocument() {
    if (m_locks > 0)
        --m_locks;
}

bool DocumentManager::IsDocumentLocked() const {
    return m_locks > 0;
}

} // namespace Platform
