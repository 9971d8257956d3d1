// SPDX-License-Identifier: MIT
// A workstation with an installation folder of its own: the message table, and the modules
// that a test puts there.
#pragma once

#include "support/Workstation.h"

#include <filesystem>

class Installation : public Workstation {
public:
    Installation() : m_native(Folder().Native() / "install") {
        std::filesystem::create_directories(m_native / "messages");
        for (const char* language : {"en", "hr"})
            std::filesystem::copy_file(std::filesystem::path(ZEBX_SOURCE_DIR) / "messages" /
                                           language,
                                       m_native / "messages" / language);
        Set("ZEBX_INSTALL", m_native.string());
        Set("ZEBX_LANGUAGE", "en");
    }

    // Copies a module file into the installation; returns its path as this system writes it.
    CString Add(const char* module, const std::string& name) const {
        std::filesystem::copy_file(module, m_native / name);
        return Path() + Platform::PathFromNative(name);
    }

    const std::filesystem::path& Native() const { return m_native; }
    CString Path() const { return Platform::AsFolder(Platform::PathFromNative(m_native.string())); }

private:
    std::filesystem::path m_native;
};
