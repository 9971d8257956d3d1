// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "support/Workstation.h"

#include <fstream>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>

namespace {

// Whether the system knows the user.  It is asked only when no variable names a home folder.
bool g_isUserKnown = true;

class SettingsPath : public testing::Test {
protected:
    ~SettingsPath() override { g_isUserKnown = true; }

    static CString Path() {
        return Repository::CRepositoryStorageManager::GetConfigurationSettingsPath();
    }
    static mode_t RightsOf(const std::filesystem::path& path) {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    Workstation workstation;
    const std::filesystem::path base = workstation.Folder().Native() / "config";
    const CString expected =
        workstation.Folder().Path() + u"config\\StudioZEB\\RepositoryStorageSettings\\";
};

} // namespace

// In the place of the C library's.
extern "C" __attribute__((visibility("default"))) passwd* getpwuid(uid_t) {
    static char folder[] = "/nonexistent";
    static passwd user{};
    user.pw_dir = folder;
    return g_isUserKnown ? &user : nullptr;
}

TEST_F(SettingsPath, LiesBelowTheRoamingFolder) {
    EXPECT_EQ(Path(), expected);
}

TEST_F(SettingsPath, HasNoSecondSeparatorAfterABaseThatEndsWithOne) {
    workstation.Set("XDG_CONFIG_HOME", base.string() + "/");
    EXPECT_EQ(Path(), expected);
}

TEST_F(SettingsPath, IsCreatedWithEveryLevel) {
    workstation.Set("XDG_CONFIG_HOME", (base / "a/b").string());
    Path();
    EXPECT_TRUE(std::filesystem::is_directory(base / "a/b/StudioZEB/RepositoryStorageSettings"));
}

TEST_F(SettingsPath, IsTheUsersAlone) {
    Path();
    EXPECT_EQ(RightsOf(base / "StudioZEB"), 0700U);
    EXPECT_EQ(RightsOf(base / "StudioZEB/RepositoryStorageSettings"), 0700U);
}

TEST_F(SettingsPath, IsGivenAlsoWhenItExists) {
    Path();
    EXPECT_EQ(Path(), expected);
}

TEST_F(SettingsPath, IsGivenAlsoWhenItCannotBeCreated) {
    std::filesystem::create_directories(base);
    std::ofstream(base / "StudioZEB") << "in the way";
    EXPECT_EQ(Path(), expected);
}

TEST_F(SettingsPath, IsEmptyAndCreatesNothingWithoutABase) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(workstation.Folder().Native());
    g_isUserKnown = false;
    for (const char* variable : {"XDG_CONFIG_HOME", "HOME"})
        workstation.Set(variable, std::nullopt);

    EXPECT_EQ(Path(), u"");
    EXPECT_TRUE(std::filesystem::is_empty(workstation.Folder().Native()));
    std::filesystem::current_path(before);
}
