// SPDX-License-Identifier: MIT
#include "platform/os/AppendedFile.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <fcntl.h>

namespace Platform {

AppendedFile::AppendedFile(CStringView path) : m_path(path) {}

AppendedFile::~AppendedFile() = default;

std::error_code AppendedFile::Append(std::string_view bytes) {
    if (m_file && std::chrono::steady_clock::now() - m_openedAt >= std::chrono::seconds(1))
        m_file.reset();
    std::error_code error = m_file ? std::error_code() : Open();
    if (!error)
        error = m_file->WriteAll(bytes);
    if (error)
        m_file.reset();
    return error;
}

std::error_code AppendedFile::Open() {
    auto file = std::make_unique<System::OpenFile>();
    constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW;
    constexpr mode_t kPrivateFile = 0600;
    if (const std::error_code error = file->Open(LookUp(m_path), kFlags, kPrivateFile))
        return error;
    m_file = std::move(file);
    m_openedAt = std::chrono::steady_clock::now();
    return {};
}

std::error_code AppendFile(CStringView path, std::string_view bytes) {
    return AppendedFile(path).Append(bytes);
}

} // namespace Platform
