// SPDX-License-Identifier: MIT
// Base of the tests that make and look at files: an empty folder, and what lies in it by name.
#pragma once

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <sys/stat.h>

class FolderTest : public testing::Test {
protected:
    std::string Native(const std::string& name) const {
        return (m_folder.Native() / name).string();
    }
    CString Path(CStringView name) const { return m_folder.Path() + CString(name); }

    std::string Content(const std::string& name) const {
        std::ostringstream content;
        content << std::ifstream(Native(name), std::ios::binary).rdbuf();
        return content.str();
    }

    struct stat Status(const std::string& name) const {
        struct stat status = {};
        EXPECT_EQ(stat(Native(name).c_str(), &status), 0);
        return status;
    }

    mode_t Rights(const std::string& name) const { return Status(name).st_mode & 07777; }

    std::size_t EntryCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_folder.Native()), {}));
    }

    TemporaryFolder m_folder;
};
