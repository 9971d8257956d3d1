// SPDX-License-Identifier: MIT
#include "platform/os/Path.h"

#include "platform/os/FolderNames.h"
#include "platform/os/System.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace Platform {
namespace {

// A "\" inside a file's name, as the text of a path holds it.
constexpr char16_t kBackslashInName = 0xDC5C;

std::error_code Look(const std::string& native) {
    struct stat ignored;
    return System::Status(native, System::Links::Keep, ignored);
}

// The name that `name` means in `folder`; empty when there is none.
std::string FindIgnoringCase(const std::string& folder, const std::string& name) {
    const FolderNames names(folder);
    const std::string* found = names.Find(name);
    return found ? *found : std::string();
}

} // namespace

std::string NativePath(CStringView path) {
    CString slashed(path);
    std::replace(slashed.begin(), slashed.end(), u'\\', u'/');
    return ToUtf8(slashed);
}

CString PathFromNative(std::string_view native) {
    CString path = FromUtf8(native);
    std::replace(path.begin(), path.end(), u'\\', kBackslashInName);
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
}

std::string LookUp(CStringView path) {
    const std::string written = NativePath(path);
    if (!Look(written))
        return written;
    std::string found;
    for (std::size_t start = 0; start < written.size();) {
        const std::size_t end = std::min(written.find('/', start), written.size());
        const std::string part = written.substr(start, end - start);
        const std::error_code error = part.empty() ? std::error_code() : Look(found + part);
        const std::string other = error == std::errc::no_such_file_or_directory
                                      ? FindIgnoringCase(found, part)
                                      : std::string();
        if (error && other.empty())
            return found + written.substr(start);
        found += error ? other : part;
        if (end < written.size())
            found += '/';
        start = end + 1;
    }
    return found;
}

CString AsFolder(CStringView path) {
    CString folder(path);
    if (!folder.empty() && folder.back() != u'\\')
        folder += u'\\';
    return folder;
}

CString FileNameOf(CStringView path) {
    return CString(path.substr(path.rfind(u'\\') + 1));
}

} // namespace Platform
