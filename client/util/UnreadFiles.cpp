// SPDX-License-Identifier: MIT
#include "client/util/UnreadFiles.h"

#include "ZEBXRepositoryClient/LocalContent.h"
#include "client/util/Border.h"
#include "platform/text/Utf8.h"

#include <utility>

namespace Repository {
namespace {

std::vector<UnreadFile> theFiles;

bool IsNoFile(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
           error == std::errc::is_a_directory || error == std::errc::invalid_argument;
}

} // namespace

void RememberUnread(CStringView path, const std::error_code& error) {
    if (error && !IsNoFile(error))
        theFiles.push_back({CString(path), Platform::FromUtf8(error.message())});
}

std::vector<UnreadFile> TakeUnreadFiles() {
    return AtBorder(std::vector<UnreadFile>(), [] { return std::exchange(theFiles, {}); });
}

} // namespace Repository
