// SPDX-License-Identifier: MIT
#include "platform/os/FolderWriter.h"

#include "platform/os/File.h"
#include "platform/os/FolderNames.h"
#include "platform/os/Path.h"

namespace Platform {

FolderWriter::FolderWriter(CStringView folder) : m_folder(folder) {}

FolderWriter::~FolderWriter() = default;

std::string FolderWriter::TargetOf(CStringView name) {
    if (!m_names) {
        m_native = LookUp(m_folder);
        m_names = std::make_unique<FolderNames>(m_native);
    }
    const std::string written = NativePath(name);
    const std::string* found = m_names->Find(written);
    return m_native + (found ? *found : written);
}

std::error_code FolderWriter::Write(CStringView name, std::string_view bytes) {
    // A path, not a name.
    if (m_folder.empty() || name.find_first_of(u"\\/") != CStringView::npos)
        return WriteFile(m_folder + CString(name), bytes);
    const std::string target = TargetOf(name);
    const std::error_code error = WriteNativeFile(target, bytes);
    if (!error)
        m_names->Add(target.substr(m_native.size()));
    return error;
}

} // namespace Platform
