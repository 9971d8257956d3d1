// SPDX-License-Identifier: MIT
// Catches what the workspace log receives while the object lives.
#pragma once

#include "ZEBXWorkspaceCore/WsManager.h"

#include <boost/make_shared.hpp>
#include <utility>
#include <vector>

class WorkspaceLines {
public:
    using Line = std::pair<std::int32_t, CString>; // type and text

    WorkspaceLines() { ZEBGis::Workspace::CWsManager::Instance()->AddSink(m_sink); }
    ~WorkspaceLines() { ZEBGis::Workspace::CWsManager::Instance()->RemoveSink(m_sink); }
    WorkspaceLines(const WorkspaceLines&) = delete;
    WorkspaceLines& operator=(const WorkspaceLines&) = delete;

    std::vector<Line> Lines() const {
        std::vector<Line> lines;
        for (const auto& message : m_sink->messages)
            lines.emplace_back(message.type, message.text);
        return lines;
    }
    const std::vector<ZEBGis::Workspace::CWsMessage>& Messages() const { return m_sink->messages; }

private:
    struct Sink : ZEBGis::Workspace::IWsSink {
        void Write(const ZEBGis::Workspace::CWsMessage& message) override {
            messages.push_back(message);
        }
        std::vector<ZEBGis::Workspace::CWsMessage> messages;
    };
    boost::shared_ptr<Sink> m_sink = boost::make_shared<Sink>();
};
