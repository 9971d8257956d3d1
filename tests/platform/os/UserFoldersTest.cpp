// SPDX-License-Identifier: MIT
#include "platform/os/UserFolders.h"

#include "platform/os/Path.h"
#include "support/Workstation.h"

#include <filesystem>
#include <pwd.h>

#include <gtest/gtest.h>

using Platform::CacheFolder;
using Platform::DataFolder;
using Platform::ProgramFolder;
using Platform::RoamingFolder;
using Platform::StateFolder;

namespace {

class UserFolders : public testing::Test {
protected:
    UserFolders() {
        for (const char* name :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
            m_workstation.Set(name, std::nullopt);
        m_workstation.Set("HOME", "/home/ana");
    }

    Workstation m_workstation;
};

} // namespace

TEST_F(UserFolders, TheyLieBelowTheHomeFolder) {
    EXPECT_EQ(RoamingFolder(), u"\\home\\ana\\.config\\");
    EXPECT_EQ(DataFolder(), u"\\home\\ana\\.local\\share\\");
    EXPECT_EQ(StateFolder(), u"\\home\\ana\\.local\\state\\");
    EXPECT_EQ(CacheFolder(), u"\\home\\ana\\.cache\\");
}

TEST_F(UserFolders, AVariableSaysOtherwise) {
    m_workstation.Set("XDG_CONFIG_HOME", "/etc/ana");
    m_workstation.Set("XDG_DATA_HOME", "/data/ana/");
    m_workstation.Set("XDG_STATE_HOME", "/");
    m_workstation.Set("XDG_CACHE_HOME", "/var/cache");
    EXPECT_EQ(RoamingFolder(), u"\\etc\\ana\\");
    EXPECT_EQ(DataFolder(), u"\\data\\ana\\");
    EXPECT_EQ(StateFolder(), u"\\");
    EXPECT_EQ(CacheFolder(), u"\\var\\cache\\");
}

TEST_F(UserFolders, ARelativeOrEmptyVariableIsIgnored) {
    m_workstation.Set("XDG_CONFIG_HOME", "etc/ana");
    m_workstation.Set("XDG_DATA_HOME", "");
    m_workstation.Set("XDG_STATE_HOME", "\\state");
    EXPECT_EQ(RoamingFolder(), u"\\home\\ana\\.config\\");
    EXPECT_EQ(DataFolder(), u"\\home\\ana\\.local\\share\\");
    EXPECT_EQ(StateFolder(), u"\\home\\ana\\.local\\state\\");
}

TEST_F(UserFolders, NamesThatAreNoTextStillLeadThere) {
    m_workstation.Set("XDG_DATA_HOME", "/data/a\\b\xFF");
    const CString folder = DataFolder();
    EXPECT_EQ(Platform::NativePath(folder), "/data/a\\b\xFF/");
    EXPECT_EQ(std::count(folder.begin(), folder.end(), u'\\'), 3);
}

TEST_F(UserFolders, WithoutAHomeInTheEnvironmentTheUsersEntrySaysIt) {
    const passwd* user = getpwuid(geteuid());
    const CString home = user ? Platform::AsFolder(Platform::PathFromNative(user->pw_dir)) : u"";
    for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("ana")}) {
        m_workstation.Set("HOME", value);
        EXPECT_EQ(RoamingFolder(), home.empty() ? u"" : home + u".config\\");
    }
}

TEST_F(UserFolders, TheProgramsFolderIsWhereItRuns) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(Platform::NativePath(ProgramFolder()), program.parent_path().string() + "/");
}
