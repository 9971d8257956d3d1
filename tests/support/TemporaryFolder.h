// SPDX-License-Identifier: MIT
// A folder of a test's own, removed with everything in it when the test ends.
#pragma once

#include "platform/os/Path.h"

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "zebx-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("cannot create " + name);
        m_native = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_native, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // As the operating system wants it, without a separator at the end.
    const std::filesystem::path& Native() const { return m_native; }

    // As this system writes it, with "\" at the end.
    CString Path() const { return Platform::AsFolder(Platform::PathFromNative(m_native.string())); }

private:
    std::filesystem::path m_native;
};
