// SPDX-License-Identifier: MIT
#include "platform/os/UserFolders.h"

#include "platform/os/Environment.h"
#include "platform/os/Path.h"
#include "platform/os/System.h"
#include "platform/text/Utf8.h"

#include <pwd.h>
#include <unistd.h>

namespace Platform {
namespace {

// The variable's folder; empty when it is not set or relative.
CString FolderOfVariable(const char* name) {
    const std::string native = ToUtf8(EnvironmentValue(name).value_or(CString()));
    return native.starts_with('/') ? AsFolder(PathFromNative(native)) : CString();
}

CString HomeFolder() {
    if (CString home = FolderOfVariable("HOME"); !home.empty())
        return home;
    const passwd* user = ::getpwuid(::geteuid());
    return user && user->pw_dir ? AsFolder(PathFromNative(user->pw_dir)) : CString();
}

CString UserFolder(const char* variable, CStringView belowHome) {
    if (CString folder = FolderOfVariable(variable); !folder.empty())
        return folder;
    CString home = HomeFolder();
    return home.empty() ? home : home.append(belowHome);
}

} // namespace

CString RoamingFolder() {
    return UserFolder("XDG_CONFIG_HOME", u".config\\");
}

CString DataFolder() {
    return UserFolder("XDG_DATA_HOME", u".local\\share\\");
}

CString StateFolder() {
    return UserFolder("XDG_STATE_HOME", u".local\\state\\");
}

CString CacheFolder() {
    return UserFolder("XDG_CACHE_HOME", u".cache\\");
}

CString ProgramFolder() {
    const std::string program = System::LinkTarget("/proc/self/exe");
    return PathFromNative(program.substr(0, program.rfind('/') + 1));
}

} // namespace Platform
