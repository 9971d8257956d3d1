// SPDX-License-Identifier: MIT
// The family's texts by number, as the dialog shows and logs them.
#pragma once

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/text/Fill.h"

#include <initializer_list>

namespace Repository {

inline CString MsgText(int number, std::initializer_list<CStringView> values = {}) {
    return Platform::Fill(ZEBGis::CModuleConfiguration::Instance()->GetMsg(number), values);
}

// One line of the workspace log.
inline void LogMsg(ZEBGis::Workspace::enmMessageType type, const CString& text) {
    ZEBGis::Workspace::CWsManager::Instance()->LogMessage(type, text.c_str());
}

// The line about what was asked for: one text when it was done, another when not.
inline void LogOutcome(bool isDone, int msgDone, int msgNotDone) {
    using namespace ZEBGis::Workspace;
    LogMsg(isDone ? MessageSuccess : MessageFailure, MsgText(isDone ? msgDone : msgNotDone));
}

} // namespace Repository
