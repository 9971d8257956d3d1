// SPDX-License-Identifier: MIT
// Many files into one folder.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <memory>
#include <string>
#include <system_error>

namespace Platform {

class FolderNames;

// Writes files as WriteFile does, but looks the folder through only once, when the first
// file is written: thousands of new files cost no more than each of them.  A name that
// another program adds meanwhile is met only when it is written letter by letter.
class ZEBX_EXPORT FolderWriter {
public:
    // `folder` ends with "\".  It need not be there before the first file is written.
    explicit FolderWriter(CStringView folder);
    ~FolderWriter();
    FolderWriter(const FolderWriter&) = delete;
    FolderWriter& operator=(const FolderWriter&) = delete;

    // Makes `name` in the folder hold exactly `bytes`; errors as WriteFile's.
    std::error_code Write(CStringView name, std::string_view bytes);

private:
    std::string TargetOf(CStringView name);

    CString m_folder;
    std::string m_native;
    std::unique_ptr<FolderNames> m_names;
};

} // namespace Platform
