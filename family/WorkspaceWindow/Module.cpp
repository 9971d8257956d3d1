// SPDX-License-Identifier: MIT
#include "LogDialog.h"

#include "ZEBXWorkspaceCore/WorkspaceWindow.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"
#include "platform/window/WindowSystem.h"

#include <boost/make_shared.hpp>
#include <exception>

namespace ZEBGis::Workspace {
namespace {

// Keeps what the log is told from the first showing on, and shows it.
class Window : public IWsSink {
public:
    // A sink must not throw; a line that there is no memory for is lost to the window.
    void Write(const CWsMessage& message) override try { m_dialog.Add(message); } catch (...) {
    }

    void Show() {
        // One that is shown is not raised: the user put it where it is.
        if (!m_dialog.IsShown())
            m_dialog.Show();
    }
    void Hide() { m_dialog.Hide(); }

private:
    CWsLogLines m_lines;
    CDlgWorkspaceLog m_dialog{m_lines};
};

// Lives until the process ends, as the log does, which shares it.
boost::shared_ptr<Window>& Only() {
    static boost::shared_ptr<Window> window;
    return window;
}

void Show() {
    if (!Only()) {
        Only() = boost::make_shared<Window>();
        CWsManager::Instance()->AddSink(Only());
    }
    Only()->Show();
}

} // namespace
} // namespace ZEBGis::Workspace

extern "C" ZEBX_EXPORT void ShowWorkspaceWindow(CString& reason) try {
    using Platform::Setting;
    using Platform::UserSettings;
    reason = Platform::WhyNoWindows(UserSettings::Instance()->Get(Setting::Language).value);
    if (reason.empty())
        ZEBGis::Workspace::Show();
} catch (const std::exception& error) {
    reason = Platform::FromUtf8(error.what());
}

extern "C" ZEBX_EXPORT void HideWorkspaceWindow() {
    if (ZEBGis::Workspace::Only())
        ZEBGis::Workspace::Only()->Hide();
}
