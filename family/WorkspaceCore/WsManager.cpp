// SPDX-License-Identifier: MIT
#include "ZEBXWorkspaceCore/WsManager.h"

#include "platform/os/Environment.h"

#include <algorithm>

namespace ZEBGis::Workspace {

CWsManager* CWsManager::Instance() {
    static CWsManager instance;
    return &instance;
}

void CWsManager::LogMessage(std::int32_t type, const char16_t* text, std::int32_t entityType,
                            const char16_t* name, const void* objectId,
                            std::int32_t selectionType) try {
    const CWsMessage message{Platform::UtcNow(),
                             type,
                             CString(Platform::TextOf(text)),
                             entityType,
                             CString(Platform::TextOf(name)),
                             objectId,
                             selectionType};
    // A copy, because a sink may add or remove sinks.
    const auto sinks = m_sinks;
    for (const auto& sink : sinks)
        sink->Write(message);
} catch (...) { // no memory for the line: the work that it tells of goes on
}

void CWsManager::AddSink(const boost::shared_ptr<IWsSink>& sink) {
    if (sink && std::find(m_sinks.begin(), m_sinks.end(), sink) == m_sinks.end())
        m_sinks.push_back(sink);
}

void CWsManager::RemoveSink(const boost::shared_ptr<IWsSink>& sink) {
    std::erase(m_sinks, sink);
}

} // namespace ZEBGis::Workspace
