// SPDX-License-Identifier: MIT
#include "app/ConfigurationDialog.h"

#include "app/Storage.h"
#include "app/Texts.h"

#include "ZEBXRepositoryClient/ConfigurationDialog.h"

namespace App {
namespace {

using namespace ZEBGis::Workspace;

// Shown as long as it stands: nothing paints the window when the dialog is gone.
class LogWindow {
public:
    explicit LogWindow(Session& session) {
        CString reason;
        if (CWsManager::Instance()->ShowWindow(&reason))
            return;
        CWsMessage message;
        message.type = MessageWarning;
        message.text = Text(Message::NoLogWindow, {reason});
        session.terminal.Write(message);
    }
    ~LogWindow() { CWsManager::Instance()->HideWindow(); }
    LogWindow(const LogWindow&) = delete;
    LogWindow& operator=(const LogWindow&) = delete;
};

} // namespace

void ShowConfigurationDialog(Session& session) {
    const OpenStorage storage = RequireStorage();
    if (const CString reason = Repository::WhyNoConfigurationDialog(); !reason.empty())
        throw AppError(ExitStatus::Configuration, reason);
    const LogWindow window(session);
    storage.manager.ShowConfigurationDialog();
}

} // namespace App
