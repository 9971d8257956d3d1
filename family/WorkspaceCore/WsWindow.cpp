// SPDX-License-Identifier: MIT
#include "ZEBXWorkspaceCore/WorkspaceWindow.h"
#include "ZEBXWorkspaceCore/WsManager.h"

#include "platform/os/Module.h"
#include "platform/os/Path.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"

namespace ZEBGis::Workspace {
namespace {

constexpr const char16_t* kModule = u"ZEBXWorkspaceWindow.arx";

template<typename Function>
Function Find(Platform::ModuleHandle module, const char* name) {
    return reinterpret_cast<Function>(Platform::FindExport(module, name));
}

// The loader names the file itself, or only one that this one needs.
CString WithFile(const CString& path, const CString& reason) {
    const CString file = Platform::FromUtf8(Platform::NativePath(path));
    return reason.starts_with(file) ? reason : file + u": " + reason;
}

} // namespace

int CWsManager::ShowWindow(CString* reason) try {
    const CString path =
        Platform::UserSettings::Instance()->Get(Platform::Setting::Install).value + kModule;
    CString why;
    const auto module = Platform::LoadModule(path, &why);
    const auto show = Find<ShowWindowFunction>(module, kShowWindowExport);
    if (show)
        show(why);
    else
        why = WithFile(path, module ? Platform::FromUtf8(kShowWindowExport) : why);
    if (why.empty())
        m_hideWindow = Find<HideWindowFunction>(module, kHideWindowExport);
    if (reason)
        *reason = why;
    return why.empty() ? 1 : 0;
} catch (...) {
    return 0;
}

void CWsManager::HideWindow() {
    if (m_hideWindow)
        m_hideWindow();
}

} // namespace ZEBGis::Workspace
