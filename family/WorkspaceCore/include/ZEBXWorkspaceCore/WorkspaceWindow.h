// SPDX-License-Identifier: MIT
// What the workspace log and the module of its window, ZEBXWorkspaceWindow.arx, say to each
// other.  Everybody else calls CWsManager::ShowWindow.
#pragma once

#include "platform/text/Text.h"

namespace ZEBGis::Workspace {

// The module's exports, "ShowWorkspaceWindow" and "HideWorkspaceWindow".  The first leaves
// `reason` empty, or fills in why no window can be shown.  Nothing is thrown.
using ShowWindowFunction = void (*)(CString& reason);
using HideWindowFunction = void (*)();

inline constexpr const char* kShowWindowExport = "ShowWorkspaceWindow";
inline constexpr const char* kHideWindowExport = "HideWorkspaceWindow";

} // namespace ZEBGis::Workspace
