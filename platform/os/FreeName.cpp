// SPDX-License-Identifier: MIT
#include "platform/os/FreeName.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

namespace Platform {
namespace {

// Also on file systems that cannot rename so: a second name, then the first one gone.
std::error_code TakeFreeName(const std::string& source, const std::string& target) {
    std::error_code error = System::RenameUnlessTaken(source, target);
    if (error != std::errc::invalid_argument && error != std::errc::function_not_supported)
        return error;
    error = System::Link(source, target);
    return error ? error : System::Remove(source);
}

} // namespace

CString CurrentFolder() {
    return AsFolder(PathFromNative(System::CurrentFolder()));
}

std::error_code RenameToFreeName(CStringView from, CStringView to) {
    const std::string source = LookUp(from);
    const std::string target = LookUp(to);
    if (const std::error_code error = TakeFreeName(source, target))
        return error;
    System::SyncFolder(target.substr(0, target.rfind('/') + 1));
    return {};
}

} // namespace Platform
