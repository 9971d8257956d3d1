// SPDX-License-Identifier: MIT
// A file that gets one line after the other.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <chrono>
#include <memory>
#include <system_error>

namespace Platform {

namespace System {
class OpenFile;
}

// Adds `bytes` at the end of `path`, which is made private when it is new.
ZEBX_EXPORT std::error_code AppendFile(CStringView path, std::string_view bytes);

class ZEBX_EXPORT AppendedFile {
public:
    explicit AppendedFile(CStringView path);
    ~AppendedFile();
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;

    // As AppendFile; written when this returns.  The file is kept open for the next one, for a
    // second: one that was moved away or removed meanwhile gets no more than that second's.
    std::error_code Append(std::string_view bytes);

private:
    std::error_code Open();

    CString m_path;
    std::unique_ptr<System::OpenFile> m_file; // none: not open
    std::chrono::steady_clock::time_point m_openedAt;
};

} // namespace Platform
