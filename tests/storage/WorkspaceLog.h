// SPDX-License-Identifier: MIT
// What a test's calls write to the workspace log.
#pragma once

#include "ZEBXWorkspaceCore/WsManager.h"

#include <boost/make_shared.hpp>

namespace Storage {

class WorkspaceLog {
public:
    WorkspaceLog() { ZEBGis::Workspace::CWsManager::Instance()->AddSink(m_sink); }
    ~WorkspaceLog() { ZEBGis::Workspace::CWsManager::Instance()->RemoveSink(m_sink); }
    WorkspaceLog(const WorkspaceLog&) = delete;
    WorkspaceLog& operator=(const WorkspaceLog&) = delete;

    // The failures (kind 4) since the last call; any other kind is marked by its number.
    std::vector<CString> Take() { return std::exchange(m_sink->lines, {}); }

private:
    struct Sink : ZEBGis::Workspace::IWsSink {
        void Write(const ZEBGis::Workspace::CWsMessage& message) override {
            const bool failure = message.type == ZEBGis::Workspace::MessageFailure;
            lines.push_back(failure ? message.text : u"not a failure: " + message.text);
        }
        std::vector<CString> lines;
    };
    boost::shared_ptr<Sink> m_sink = boost::make_shared<Sink>();
};

} // namespace Storage
