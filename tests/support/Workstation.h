// SPDX-License-Identifier: MIT
// A workstation of a test's own: empty user folders, an installation folder to fill, and the
// environment that leads this process to them. What the environment said comes back after it.
#pragma once

#include "platform/os/File.h"
#include "platform/os/UserSettings.h"
#include "support/TemporaryFolder.h"

#include <map>
#include <optional>
#include <stdlib.h>
#include <string>

class Workstation {
public:
    Workstation() {
        Set("XDG_CONFIG_HOME", (m_folder.Native() / "config").string());
        Set("XDG_DATA_HOME", (m_folder.Native() / "data").string());
        Set("XDG_STATE_HOME", (m_folder.Native() / "state").string());
        for (const char* name : {"ZEBX_CONFIG", "ZEBX_SCHEMA", "ZEBX_SUPPORT", "ZEBX_TRACE"})
            Set(name, std::nullopt);
        Platform::UserSettings::Instance()->Reset();
    }
    ~Workstation() {
        for (const auto& [name, value] : m_before)
            Put(name, value);
        Platform::UserSettings::Instance()->Reset();
    }
    Workstation(const Workstation&) = delete;
    Workstation& operator=(const Workstation&) = delete;

    // Sets a variable for this workstation's life; nothing unsets it.
    void Set(const std::string& name, const std::optional<std::string>& value) {
        const char* now = getenv(name.c_str());
        m_before.try_emplace(name, now ? std::optional<std::string>(now) : std::nullopt);
        Put(name, value);
    }

    CString Support() const { return m_folder.Path() + u"data\\StudioZEB\\support\\"; }
    CString Config() const { return m_folder.Path() + u"config\\StudioZEB\\"; }

    // Replaces zebx.ini.
    void WriteSettings(std::string_view ini) const {
        Platform::CreateFolderChain(Config());
        Platform::WriteFile(Config() + u"zebx.ini", ini);
        Platform::UserSettings::Instance()->Reset();
    }

    const TemporaryFolder& Folder() const { return m_folder; }

private:
    static void Put(const std::string& name, const std::optional<std::string>& value) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }

    TemporaryFolder m_folder;
    std::map<std::string, std::optional<std::string>> m_before;
};
