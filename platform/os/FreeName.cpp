// SPDX-License-Identifier: MIT
#include "platform/os/FreeName.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace Platform {
namespace {

// A second name, then the first one gone: for file systems that know no better.
std::error_code LinkAndRemove(const std::string& source, const std::string& target) {
    if (::link(source.c_str(), target.c_str()) != 0)
        return System::LastError();
    return System::Remove(source);
}

std::error_code RenameUnlessTaken(const std::string& source, const std::string& target) {
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno == EINVAL || errno == ENOSYS)
        return LinkAndRemove(source, target);
    return System::LastError();
}

} // namespace

CString CurrentFolder() {
    char folder[PATH_MAX];
    return ::getcwd(folder, sizeof(folder)) ? AsFolder(PathFromNative(folder)) : CString();
}

std::error_code RenameToFreeName(CStringView from, CStringView to) {
    const std::string source = LookUp(from);
    const std::string target = LookUp(to);
    if (const std::error_code error = RenameUnlessTaken(source, target))
        return error;
    System::SyncFolder(target.substr(0, target.rfind('/') + 1));
    return {};
}

} // namespace Platform
