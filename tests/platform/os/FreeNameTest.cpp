// SPDX-License-Identifier: MIT
#include "platform/os/FreeName.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "support/TemporaryFolder.h"

#include <filesystem>

#include <gtest/gtest.h>

using Platform::CurrentFolder;
using Platform::RenameToFreeName;
namespace fs = std::filesystem;

namespace {

class FreeName : public testing::Test {
protected:
    void Write(const CString& name, std::string_view bytes) {
        ASSERT_FALSE(Platform::WriteFile(m_folder.Path() + name, bytes));
    }
    std::string Read(const std::string& name) {
        std::string bytes;
        const auto path = Platform::PathFromNative((m_folder.Native() / name).string());
        return Platform::ReadFile(path, bytes) ? "(none)" : bytes;
    }
    std::error_code Rename(const CString& from, const CString& to) {
        return RenameToFreeName(m_folder.Path() + from, m_folder.Path() + to);
    }

    TemporaryFolder m_folder;
};

TEST_F(FreeName, IsGivenToTheFile) {
    Write(u"from", "mine");
    EXPECT_FALSE(Rename(u"from", u"To"));
    EXPECT_EQ(Read("To"), "mine");
    EXPECT_FALSE(fs::exists(m_folder.Native() / "from"));
}

TEST_F(FreeName, IsNotGivenWhenAFileHasItInAnyCase) {
    Write(u"from", "mine");
    Write(u"taken", "theirs");
    EXPECT_EQ(Rename(u"from", u"taken"), std::errc::file_exists);
    EXPECT_EQ(Rename(u"from", u"TAKEN"), std::errc::file_exists);
    EXPECT_EQ(Read("from"), "mine");
    EXPECT_EQ(Read("taken"), "theirs");
}

TEST_F(FreeName, IsNotGivenWhenAFolderOrADanglingLinkHasIt) {
    Write(u"from", "mine");
    fs::create_directory(m_folder.Native() / "folder");
    fs::create_symlink("nowhere", m_folder.Native() / "link");
    EXPECT_EQ(Rename(u"from", u"folder"), std::errc::file_exists);
    EXPECT_EQ(Rename(u"from", u"link"), std::errc::file_exists);
    EXPECT_EQ(Read("from"), "mine");
}

TEST_F(FreeName, OfAMissingFileOrFolderIsAnError) {
    Write(u"from", "mine");
    EXPECT_EQ(Rename(u"missing", u"to"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(Rename(u"from", u"missing\\to"), std::errc::no_such_file_or_directory);
}

TEST(TheCurrentFolder, EndsWithASeparator) {
    EXPECT_EQ(CurrentFolder(),
              Platform::AsFolder(Platform::PathFromNative(fs::current_path().string())));
}

} // namespace
