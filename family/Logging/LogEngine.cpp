// SPDX-License-Identifier: MIT
#include "ZEBXLogging/LogEngine.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/os/UserSettings.h"

#include <optional>

namespace {

std::optional<int> switchedTo;

} // namespace

int CLogEngine::GetLoggingOnOff() try {
    if (switchedTo)
        return *switchedTo;
    return Platform::UserSettings::Instance()->Get(Platform::Setting::Trace).value == u"on" ? 1 : 0;
} catch (...) {
    return 0;
}

void CLogEngine::SetLoggingOnOff(int on) {
    switchedTo = on;
}

std::string CLogEngine::GetLogFileFullPath() try {
    const CString path =
        Platform::UserSettings::Instance()->Get(Platform::Setting::TraceFile).value;
    Platform::CreateFolderChain(Platform::FolderOf(path), Platform::Access::Private);
    return Platform::NativePath(path);
} catch (...) {
    return {};
}
