// SPDX-License-Identifier: MIT
// A file's fields, and its body's way from and to the disk.
#include "RepositoryFiles.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "client/records/RepositoryFileWriter.h"
#include "platform/os/Path.h"
#include "support/Bytes.h"
#include "support/InAChildProcess.h"
#include "support/TemporaryFolder.h"

#include <csignal>
#include <sys/resource.h>
#include <utility>

using namespace Repository;

namespace {

CRepositoryFile FileHolding(const std::string& bytes) {
    CRepositoryFile file;
    file.SetFileName(u"x.cfg");
    file.SetFileContent(Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
    return file;
}

// A folder, and files in it as this system and as the disk name them.
class RepositoryFile : public testing::Test {
protected:
    CString Path(const CString& name) const { return m_folder.Path() + name; }
    std::filesystem::path Native(const std::string& name) const { return m_folder.Native() / name; }

    TemporaryFolder m_folder;
};

} // namespace

TEST_F(RepositoryFile, ANewFileIsEmpty) {
    const CRepositoryFile file;
    ExpectEqual(file, CRepositoryFile(file));
    EXPECT_EQ(RecordOf(file), u"######0#");
    EXPECT_EQ(file.GetFileType(), 0);
    EXPECT_EQ(file.GetIsSaved(), 0);
}

TEST_F(RepositoryFile, ACopyAndAnAssignedFileHaveAllEightFields) {
    CRepositoryFile file = FileNamed(u"x");
    file.SetIsSaved(7);
    CRepositoryFile assigned;
    assigned = file;
    ExpectEqual(assigned, file);
    EXPECT_EQ(assigned.GetIsSaved(), 7);
    const CRepositoryFile copy(file);
    file.GetFileContent() = "changed";
    ExpectEqual(copy, assigned);
    EXPECT_EQ(copy.GetIsSaved(), 7);
}

TEST_F(RepositoryFile, NullTextsReadAsEmpty) {
    CRepositoryFile file = FileNamed(u"x");
    file.SetFileId(nullptr);
    file.SetFileManagerId(nullptr);
    file.SetOriginId(nullptr);
    file.SetFileName(nullptr);
    file.SetCustomParameter(nullptr);
    EXPECT_EQ(RecordOf(file), u"#####TWFu#4#");
}

TEST_F(RepositoryFile, OnlyNewContentResetsTheSavedFlag) {
    CRepositoryFile file;
    file.SetIsSaved(1);
    file.SetFileId(u"a");
    file.GetFileContent() = "TWFu"; // through the reference
    EXPECT_EQ(file.GetIsSaved(), 1);
    file.SetFileContent("TQ==");
    EXPECT_EQ(file.GetIsSaved(), 0);
    EXPECT_EQ(file.GetFileContent(), "TQ==");
}

TEST_F(RepositoryFile, LoadingTakesTheContentAndTheNameBehindTheLastBackslash) {
    std::filesystem::create_directory(Native("sub"));
    MakeFile(Native("sub/x.cfg"), "Man");
    CRepositoryFile file;
    file.SetIsSaved(1);
    EXPECT_EQ(file.LoadFile(Path(u"sub\\x.cfg").c_str()), 1);
    EXPECT_EQ(file.GetFileName(), u"x.cfg");
    EXPECT_EQ(file.GetFileContent(), "TWFu");
    EXPECT_EQ(file.GetIsSaved(), 0);
}

TEST_F(RepositoryFile, AForwardSlashDoesNotSeparateTheName) {
    MakeFile(Native("x.cfg"), "Man");
    CString path = Path(u"x.cfg");
    for (char16_t& character : path)
        if (character == u'\\')
            character = u'/';
    CRepositoryFile file;
    EXPECT_EQ(file.LoadFile(path.c_str()), 1);
    EXPECT_EQ(file.GetFileName(), path);
}

TEST_F(RepositoryFile, AMissingFileEmptiesTheContentAndKeepsTheName) {
    CRepositoryFile file = FileNamed(u"old");
    file.SetIsSaved(1);
    EXPECT_EQ(file.LoadFile(Path(u"missing").c_str()), 0);
    EXPECT_EQ(file.GetFileContent(), "");
    EXPECT_EQ(file.GetIsSaved(), 0);
    EXPECT_EQ(file.GetFileName(), u"old");
}

TEST_F(RepositoryFile, WhatIsNoFileCannotBeLoaded) {
    std::filesystem::create_directory(Native("sub"));
    CRepositoryFile file;
    EXPECT_EQ(file.LoadFile(Path(u"sub").c_str()), 0);
    EXPECT_EQ(file.LoadFile(u"\\dev\\zero"), 0);
    EXPECT_EQ(file.LoadFile(u""), 0);
    EXPECT_EQ(file.LoadFile(nullptr), 0);
}

TEST_F(RepositoryFile, AFileOfFourGibibytesIsNotReadIntoMemory) {
    MakeFile(Native("huge"), "");
    std::filesystem::resize_file(Native("huge"), std::uintmax_t{1} << 32); // a hole
    CRepositoryFile file = FileNamed(u"old");
    EXPECT_EQ(file.LoadFile(Path(u"huge").c_str()), 0);
    EXPECT_EQ(file.GetFileContent(), "");
    EXPECT_EQ(file.GetFileName(), u"old");
}

TEST_F(RepositoryFile, AnEmptyFileLoadsAndSavesAsAnEmptyFile) {
    MakeFile(Native("x"), "");
    CRepositoryFile file;
    EXPECT_EQ(file.LoadFile(Path(u"x").c_str()), 1);
    EXPECT_EQ(file.GetFileContent(), "");
    EXPECT_EQ(file.SaveFile(m_folder.Path().c_str(), u"y"), 1);
    ASSERT_TRUE(std::filesystem::exists(Native("y")));
    EXPECT_EQ(std::filesystem::file_size(Native("y")), 0u);
}

TEST_F(RepositoryFile, EveryByteSurvivesLoadingAndSaving) {
    const std::string bytes = SomeBytes(1'000'003);
    MakeFile(Native("x.dwg"), bytes);
    CRepositoryFile file;
    ASSERT_EQ(file.LoadFile(Path(u"x.dwg").c_str()), 1);
    EXPECT_EQ(file.SaveFile(m_folder.Path().c_str(), u"y.dwg"), 1);
    EXPECT_EQ(BytesOfFile(Native("y.dwg")), bytes);
}

TEST_F(RepositoryFile, ANullNameMeansTheFilesOwn) {
    EXPECT_EQ(FileHolding("Man").SaveFile(m_folder.Path().c_str(), nullptr), 1);
    EXPECT_EQ(BytesOfFile(Native("x.cfg")), "Man");
    // An empty name is a name: the folder itself, which cannot be written.
    EXPECT_FALSE(WriteRepositoryFile(FileHolding("Man"), m_folder.Path().c_str(), u""));
}

TEST_F(RepositoryFile, NoSeparatorIsPutBetweenFolderAndName) {
    EXPECT_EQ(FileHolding("Man").SaveFile(Path(u"out").c_str(), nullptr), 1);
    EXPECT_EQ(BytesOfFile(Native("outx.cfg")), "Man");
}

TEST_F(RepositoryFile, AnExistingFileIsTruncated) {
    MakeFile(Native("x.cfg"), std::string(1000, 'o'));
    EXPECT_EQ(FileHolding("Man").SaveFile(m_folder.Path().c_str(), nullptr), 1);
    EXPECT_EQ(BytesOfFile(Native("x.cfg")), "Man");
}

TEST_F(RepositoryFile, SavingReturnsOneAlsoWhenNothingCouldBeWritten) {
    CRepositoryFile file = FileHolding("Man");
    EXPECT_EQ(file.SaveFile(Path(u"missing\\").c_str(), nullptr), 1);
    EXPECT_FALSE(std::filesystem::exists(Native("missing")));
    std::filesystem::create_directory(Native("x.cfg"));
    EXPECT_EQ(file.SaveFile(m_folder.Path().c_str(), nullptr), 1);
    EXPECT_EQ(file.SaveFile(nullptr, u""), 1);
}

TEST_F(RepositoryFile, SavingDoesNotTouchTheSavedFlag) {
    CRepositoryFile file = FileHolding("Man");
    file.SaveFile(m_folder.Path().c_str(), nullptr);
    EXPECT_EQ(file.GetIsSaved(), 0);
}

TEST_F(RepositoryFile, ContentThatIsNotBase64IsSavedAsFarAsItGoes) {
    CRepositoryFile file = FileHolding("");
    file.SetFileContent("TWFu\nTWFu");
    EXPECT_EQ(file.SaveFile(m_folder.Path().c_str(), nullptr), 1);
    EXPECT_EQ(BytesOfFile(Native("x.cfg")), "Man");
}

TEST_F(RepositoryFile, BytesAndTextAreTheSameContent) {
    CRepositoryFile file;
    std::string buffer;
    EXPECT_EQ(file.GetFileBytes(buffer), "");
    file.SetIsSaved(1);
    file.SetFileBytes("Man");
    EXPECT_EQ(file.GetIsSaved(), 0);
    EXPECT_TRUE(file.HasFileBytes());
    EXPECT_EQ(std::as_const(file).GetFileContent(), "TWFu");
    EXPECT_TRUE(file.HasFileBytes());
    EXPECT_EQ(file.GetFileBytes(buffer), "Man");

    file.SetFileContent("TWE=");
    EXPECT_FALSE(file.HasFileBytes());
    EXPECT_EQ(file.GetFileBytes(buffer), "Ma");
    EXPECT_EQ(file.GetFileContent(), "TWE=");
}

TEST_F(RepositoryFile, AChangeThroughTheReferenceIsTheContentFromThenOn) {
    CRepositoryFile file;
    file.SetFileBytes("Man");
    std::string& text = file.GetFileContent();
    EXPECT_EQ(text, "TWFu");
    text = "TWE=";
    std::string buffer;
    EXPECT_EQ(file.GetFileBytes(buffer), "Ma");

    // The reference stays good for the contents that come after.
    file.SetFileBytes("other");
    EXPECT_EQ(text, "b3RoZXI=");
    text = "TQ==";
    EXPECT_EQ(file.GetFileBytes(buffer), "M");
    MakeFile(Native("x.dwg"), "Man");
    ASSERT_EQ(file.LoadFile(Path(u"x.dwg").c_str()), 1);
    EXPECT_EQ(text, "TWFu");
}

TEST_F(RepositoryFile, ACopyHasTheContentWhateverHoldsIt) {
    CRepositoryFile file;
    file.SetFileBytes("Man");
    const CRepositoryFile copy = file;
    file.SetFileBytes("other");
    std::string buffer;
    EXPECT_EQ(copy.GetFileBytes(buffer), "Man");
    EXPECT_EQ(copy.GetFileContent(), "TWFu");
}

TEST_F(RepositoryFile, TheWriterSaysWhetherTheFileHoldsTheContent) {
    const CRepositoryFile file = FileHolding("Man");
    EXPECT_TRUE(WriteRepositoryFile(file, m_folder.Path().c_str(), nullptr));
    EXPECT_TRUE(WriteRepositoryFile(file, m_folder.Path().c_str(), u"other.cfg"));
    EXPECT_EQ(BytesOfFile(Native("other.cfg")), "Man");
    EXPECT_FALSE(WriteRepositoryFile(file, Path(u"missing\\").c_str(), nullptr));
    std::filesystem::create_directory(Native("sub"));
    EXPECT_FALSE(WriteRepositoryFile(file, m_folder.Path().c_str(), u"sub"));
    EXPECT_FALSE(WriteRepositoryFile(file, u"\\dev\\", u"full"));
}

TEST_F(RepositoryFile, TheWriterNoticesAFileThatTheSystemCutsShort) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        CRepositoryFile file = FileHolding(SomeBytes(5000));
        EXPECT_FALSE(WriteRepositoryFile(file, m_folder.Path().c_str(), nullptr));
        EXPECT_EQ(file.SaveFile(m_folder.Path().c_str(), nullptr), 1);
        EXPECT_TRUE(
            WriteRepositoryFile(FileHolding(SomeBytes(1000)), m_folder.Path().c_str(), nullptr));
    }));
}
