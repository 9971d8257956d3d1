// SPDX-License-Identifier: MIT
#include "storage/StorageSettings.h"
#include "TestFiles.h"
#include "platform/os/File.h"
#include "support/DocumentExample.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace Storage {
namespace {

class StorageSettingsTest : public testing::Test {
protected:
    StorageSettingsTest() { settings.SetFolder(folder); }

    void Write(std::string_view text) {
        Platform::CreateFolderChain(folder);
        ASSERT_FALSE(Platform::WriteFile(file, text));
    }
    std::string Read() {
        std::string text;
        Platform::ReadFile(file, text);
        return text;
    }
    // The message of a file with that text, and its second value: the line.
    std::pair<MessageNumber, CString> Complaint(std::string_view text) {
        Write(text);
        const auto error = ErrorOf([&] { settings.Load(); });
        if (!error)
            return {MessageNumber::Internal, u"(none)"};
        EXPECT_EQ(error->Kind(), Problem::Configuration);
        const Message& message = error->Messages().at(0);
        EXPECT_NE(message.values.at(0).find(u"ZEBXRepositoryClientPlugin_Sql.ini"), CString::npos);
        return {message.number, message.values.size() > 1 ? message.values[1] : CString()};
    }

    TemporaryFolder temporary;
    CString folder = temporary.Path() + u"a\\b\\";
    CString file = folder + u"ZEBXRepositoryClientPlugin_Sql.ini";
    StorageSettings settings;
};

TEST_F(StorageSettingsTest, WithoutAFileTheAddressIsEmptyAndNothingIsWritten) {
    settings.Load();
    EXPECT_EQ(settings.Address(), u"");
    settings.Save();
    EXPECT_FALSE(Platform::PathExists(folder));
}

TEST_F(StorageSettingsTest, TheDocumentsExampleIsWrittenAndReadSo) {
    const std::string example = DocumentExample("storage-settings") + "\n";
    settings.SetAddress(u"sqlite:/srv/zeb/repository.db");
    settings.Save();
    EXPECT_EQ(Read(), example);
    Write(example);
    settings.Load();
    EXPECT_EQ(settings.Address(), u"sqlite:/srv/zeb/repository.db");
}

TEST_F(StorageSettingsTest, TheAddressIsKeptAndReadBack) {
    settings.SetAddress(u"sqlite:/srv/čvor 1.db");
    settings.Save();
    StorageSettings other;
    other.SetFolder(folder);
    other.Load();
    EXPECT_EQ(other.Address(), u"sqlite:/srv/čvor 1.db");
}

TEST_F(StorageSettingsTest, TheDefaultPlaceIsKeptAsAnEmptyAddress) {
    Write("address = sqlite:/srv/r.db\n");
    settings.Load();
    settings.SetAddress(u"");
    settings.Save();
    EXPECT_NE(Read().find("\naddress = \n"), std::string::npos);
    settings.Load();
    EXPECT_EQ(settings.Address(), u"");
}

TEST_F(StorageSettingsTest, TheFileAndItsFoldersArePrivate) {
    settings.SetAddress(u"sqlite:/srv/r.db");
    settings.Save();
    const std::string native = (temporary.Native() / "a/b").string();
    struct stat status = {};
    ASSERT_EQ(stat((native + "/ZEBXRepositoryClientPlugin_Sql.ini").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    ASSERT_EQ(stat(native.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(StorageSettingsTest, AFileThatSaysTheSameIsNotWrittenAgain) {
    settings.SetAddress(u"sqlite:/srv/r.db");
    settings.Save();
    struct stat before = {};
    struct stat after = {};
    const std::string native =
        (temporary.Native() / "a/b").string() + "/ZEBXRepositoryClientPlugin_Sql.ini";
    ASSERT_EQ(stat(native.c_str(), &before), 0);
    settings.Save();
    ASSERT_EQ(stat(native.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(StorageSettingsTest, AFileThatSomebodyWroteByHandIsLeftUntilTheAddressIsAnother) {
    const std::string byHand = "# the office's\n\naddress=sqlite:/srv/r.db\n";
    Write(byHand);
    settings.Load();
    settings.Save();
    EXPECT_EQ(Read(), byHand);
    settings.SetAddress(u"sqlite:/srv/other.db");
    settings.Save();
    EXPECT_NE(Read().find("\naddress = sqlite:/srv/other.db\n"), std::string::npos);
}

TEST_F(StorageSettingsTest, BlanksCommentsAndCarriageReturnsAreAccepted) {
    Write("# a comment\r\n\r\n  \n  address =  sqlite:/srv/a b.db \r\n");
    settings.Load();
    EXPECT_EQ(settings.Address(), u"sqlite:/srv/a b.db");
}

TEST_F(StorageSettingsTest, ALineThatIsNotUnderstoodIsNamed) {
    using Expected = std::pair<MessageNumber, CString>;
    EXPECT_EQ(Complaint("# a\nnonsense\n"), Expected(MessageNumber::SettingsLine, u"2"));
    EXPECT_EQ(Complaint("addr"), Expected(MessageNumber::SettingsLine, u"1"));
    EXPECT_EQ(Complaint("address = sqli"), Expected(MessageNumber::SettingsLine, u"1"));
    EXPECT_EQ(Complaint("address = sqlite:relative.db"),
              Expected(MessageNumber::SettingsLine, u"1"));
    EXPECT_EQ(Complaint("address = sqlite:/a\npassword = x\n"),
              Expected(MessageNumber::SettingsLine, u"2"));
    EXPECT_EQ(Complaint("address = sqlite:/a\naddress = sqlite:/b\n"),
              Expected(MessageNumber::SettingsLine, u"2"));
    EXPECT_EQ(Complaint(std::string("\0\xFF\n", 3)), Expected(MessageNumber::SettingsLine, u"1"));
    EXPECT_EQ(settings.Address(), u"");
}

TEST_F(StorageSettingsTest, AFileThatIsCutBeforeTheAddressIsNotTakenForTheDefault) {
    EXPECT_EQ(Complaint("").first, MessageNumber::SettingsCut);
    EXPECT_EQ(Complaint("# Written by").first, MessageNumber::SettingsCut);
}

TEST_F(StorageSettingsTest, AFolderInTheFilesPlaceIsTold) {
    Platform::CreateFolderChain(file);
    const auto load = ErrorOf([&] { settings.Load(); });
    ASSERT_TRUE(load);
    EXPECT_EQ(load->Messages().at(0).number, MessageNumber::SettingsUnreadable);
    settings.SetAddress(u"sqlite:/srv/r.db");
    const auto save = ErrorOf([&] { settings.Save(); });
    ASSERT_TRUE(save);
    EXPECT_EQ(save->Kind(), Problem::Configuration);
    EXPECT_EQ(save->Messages().at(0).number, MessageNumber::SettingsNotWritten);
}

TEST_F(StorageSettingsTest, WithoutASettingsFolderOnlyTheDefaultPlaceCanBeKept) {
    settings.SetFolder(u"");
    settings.Load();
    settings.Save();
    settings.SetAddress(u"sqlite:/srv/r.db");
    const auto error = ErrorOf([&] { settings.Save(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Messages().at(0).number, MessageNumber::NoSettingsFolder);
}

} // namespace
} // namespace Storage
