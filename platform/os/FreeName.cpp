// SPDX-License-Identifier: MIT
#include "platform/os/FreeName.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <climits>

#include <unistd.h>

namespace Platform {

CString CurrentFolder() {
    char folder[PATH_MAX];
    return ::getcwd(folder, sizeof(folder)) ? AsFolder(PathFromNative(folder)) : CString();
}

std::error_code RenameToFreeName(CStringView from, CStringView to) {
    const std::string source = LookUp(from);
    const std::string target = LookUp(to);
    // A second name and then the first one gone: rename itself would replace the target.
    if (::link(source.c_str(), target.c_str()) != 0)
        return System::LastError();
    if (const std::error_code error = System::Remove(source))
        return error;
    System::SyncFolder(target.substr(0, target.rfind('/') + 1));
    return {};
}

} // namespace Platform
