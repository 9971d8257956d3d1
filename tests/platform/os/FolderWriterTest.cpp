// SPDX-License-Identifier: MIT
#include "platform/os/FolderWriter.h"

#include "FolderTest.h"

#include <filesystem>
#include <gtest/gtest.h>

using Platform::FolderWriter;
namespace fs = std::filesystem;

namespace {

class WritingIntoAFolder : public FolderTest {
protected:
    FolderWriter writer{Path(u"")};
};

} // namespace

TEST_F(WritingIntoAFolder, EachFileHoldsExactlyItsBytes) {
    EXPECT_FALSE(writer.Write(u"a.dwg", "one"));
    EXPECT_FALSE(writer.Write(u"čvor.dwg", ""));
    EXPECT_FALSE(writer.Write(u"a.dwg", "shorter"));
    EXPECT_EQ(Content("a.dwg"), "shorter");
    EXPECT_EQ(Content("čvor.dwg"), "");
    EXPECT_EQ(EntryCount(), 2u);
}

TEST_F(WritingIntoAFolder, AFileOfAnotherCaseIsTheSameFile) {
    std::ofstream(Native("Čvor.DWG")) << "old";
    EXPECT_FALSE(writer.Write(u"čvor.dwg", "new"));
    EXPECT_EQ(Content("Čvor.DWG"), "new");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingIntoAFolder, SoIsOneThatTheWriterMadeItself) {
    EXPECT_FALSE(writer.Write(u"A.DWG", "old"));
    EXPECT_FALSE(writer.Write(u"a.dwg", "new"));
    EXPECT_EQ(Content("A.DWG"), "new");
    EXPECT_EQ(EntryCount(), 1u);
}

TEST_F(WritingIntoAFolder, AnExactNameComesBeforeOneOfAnotherCase) {
    std::ofstream(Native("A.dwg")) << "upper";
    std::ofstream(Native("a.dwg")) << "lower";
    EXPECT_FALSE(writer.Write(u"a.dwg", "new"));
    EXPECT_EQ(Content("A.dwg"), "upper");
    EXPECT_EQ(Content("a.dwg"), "new");
    EXPECT_FALSE(writer.Write(u"A.DWG", "first in order"));
    EXPECT_EQ(Content("A.dwg"), "first in order");
}

TEST_F(WritingIntoAFolder, ALinkOrAFolderInTheFilesPlaceIsAnError) {
    std::ofstream(Native("target")) << "old";
    fs::create_symlink(Native("target"), Native("link"));
    fs::create_directory(Native("sub"));
    EXPECT_EQ(writer.Write(u"link", "new"), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(writer.Write(u"sub", "new"), std::errc::is_a_directory);
    EXPECT_EQ(Content("target"), "old");
}

TEST_F(WritingIntoAFolder, AFolderThatIsNotThereIsAnErrorUntilItIsMade) {
    FolderWriter missing(Path(u"sub\\"));
    EXPECT_EQ(missing.Write(u"a.dwg", "new"), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(fs::exists(Native("sub")));
    fs::create_directory(Native("sub"));
    EXPECT_FALSE(missing.Write(u"a.dwg", "new"));
    EXPECT_EQ(Content("sub/a.dwg"), "new");
}

TEST_F(WritingIntoAFolder, APathInsteadOfANameIsTakenAsAPath) {
    fs::create_directory(Native("Sub"));
    EXPECT_FALSE(writer.Write(u"sub\\a.dwg", "new"));
    EXPECT_EQ(Content("Sub/a.dwg"), "new");
}
