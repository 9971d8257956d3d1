// SPDX-License-Identifier: MIT
// The backend as the manager uses it, with what the user reads in the workspace log.
#include "storage/SqlBackend.h"
#include "EnglishMessages.h"
#include "TestFiles.h"
#include "WorkspaceLog.h"
#include "platform/os/Environment.h"
#include "platform/os/File.h"
#include "storage/Administration.h"
#include "storage/sqlite/SqliteConnection.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/Workstation.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace Storage {
namespace {

using Platform::FromUtf8;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SqlBackendTest : public testing::Test {
protected:
    SqlBackendTest() {
        access->SetMsgProvider(&messages);
        backend.SetVersion(u"1.2.3.4");
        backend.SetSettingsPath(settingsFolder.c_str());
        backend.LoadSettings();
        backend.SaveSettings();
    }
    void Create() {
        CString text;
        ASSERT_EQ(administration.Connect(address, true, text), Problem::None) << FromText(text);
    }
    static std::string FromText(const CString& text) { return Platform::ToUtf8(text); }
    std::vector<CString> Ids(const char16_t* kind = u"001_LABEL") {
        std::vector<CString> ids = {u"what was there"};
        EXPECT_EQ(backend.GetRepositoryFileIds(4, kind, ids), 1);
        return ids;
    }
    std::string Ask(SqlText sql) {
        const auto connection = OpenRepository({workstation.Folder().Path() + u"repository.db"});
        const auto rows = connection->Query(sql, {});
        return rows->Next() ? std::string(rows->Text(0)) : "(none)";
    }
    void Plant(SqlText sql) {
        OpenRepository({workstation.Folder().Path() + u"repository.db"})->Execute(sql, {});
    }

    Workstation workstation;
    EnglishMessages messages;
    WorkspaceLog log;
    fs::path native = workstation.Folder().Native() / "repository.db";
    CString address = u"sqlite:" + FromUtf8(native.string());
    CString settingsFolder = workstation.Folder().Path() + u"settings\\";
    CString settingsFile = settingsFolder + u"ZEBXRepositoryClientPlugin_Sql.ini";
    Connector connector = OpenRepository;
    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>(
        [this](const Address& place) { return connector(place); });
    SqlBackend backend{access};
    Administration administration{access};
};

TEST_F(SqlBackendTest, SaysWhatItIs) {
    EXPECT_EQ(backend.GetNameMsgNum(), 20000);
    EXPECT_EQ(backend.IsMultipleGSSupported(), 1);
    EXPECT_EQ(backend.HasConnectionParameters(), 1);
}

TEST_F(SqlBackendTest, FilesGoInAndComeOut) {
    Create();
    EXPECT_EQ(backend.RegisterContent(4, u"001_LABEL", 10313), 1);
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"b.dwg", "2"), MakeFile(u"a.dwg", "1")}), 1);
    const auto ids = Ids();
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(ids[0].c_str())), "1");
    EXPECT_THAT(Ids(u"UNKNOWN"), IsEmpty());
    EXPECT_FALSE(backend.GetRepositoryFile(u"unknown"));
    EXPECT_FALSE(backend.GetRepositoryFile(nullptr));
    EXPECT_THAT(log.Take(), IsEmpty());
    EXPECT_EQ(administration.TakeLastProblem(), Problem::None);
}

TEST_F(SqlBackendTest, TheNullAndTheEmptyNameMeanTheDefaultSettings) {
    Create();
    EXPECT_EQ(backend.SaveGS(u"<one/>", {}, nullptr), 1);
    CString xml;
    std::vector<CString> files;
    EXPECT_EQ(backend.LoadGS(xml, files, u""), 1);
    EXPECT_EQ(xml, u"<one/>");
    EXPECT_EQ(backend.SaveGS(u"<two/>", {MakeFile(u"f", "1")}, u""), 1);
    EXPECT_EQ(backend.LoadGS(xml, files, nullptr), 1);
    EXPECT_EQ(xml, u"<two/>");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(files[0].c_str())), "1");
    EXPECT_EQ(backend.SaveGS(nullptr, {}, u"N"), 1);
    std::vector<CString> names = {u"what was there"};
    EXPECT_EQ(backend.GetAvailableGS(names), 1);
    EXPECT_THAT(names, ElementsAre(u"", u"N"));
}

TEST_F(SqlBackendTest, SettingsThatNobodySavedAreNoFailureButZero) {
    Create();
    CString xml = u"what was there";
    std::vector<CString> files = {u"what was there"};
    // Not an empty text: it would replace the local settings.
    EXPECT_EQ(backend.LoadGS(xml, files, u""), 0);
    EXPECT_EQ(xml, u"what was there");
    EXPECT_THAT(files, IsEmpty());
    EXPECT_THAT(log.Take(), IsEmpty());
    EXPECT_EQ(administration.TakeLastProblem(), Problem::None);
}

TEST_F(SqlBackendTest, RepositoryItemsGoInAndComeOut) {
    Create();
    auto item = boost::make_shared<Repository::CNetRepositoryItem>();
    item->SetId(u"i");
    item->SetName(u"old");
    item->GetFiles()->push_back(MakeFile(u"a.dwg", "1"));
    EXPECT_EQ(backend.AddRepositoryItem(u"TAG", item), 1);
    EXPECT_EQ(backend.RenameRepositoryItem(u"TAG", u"i", u"new"), 1);
    std::vector<RepositoryItemPtr> items(1);
    EXPECT_EQ(backend.GetRepositoryItems(u"TAG", items), 1);
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0]->GetName(), u"new");
    for (const int flag : {0, 1, 77})
        EXPECT_EQ(backend.GetRepositoryItemById(u"TAG", u"i", flag)->GetFiles()->size(), 1u);
    EXPECT_EQ(backend.DeleteRepositoryItem(u"TAG", u"i"), 1);
    EXPECT_EQ(backend.GetRepositoryItems(u"TAG", items), 1);
    EXPECT_THAT(items, IsEmpty());
    EXPECT_FALSE(backend.GetRepositoryItemById(u"TAG", u"i", 0));
    EXPECT_EQ(backend.GetRepositoryItems(nullptr, items), 1);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(SqlBackendTest, CatalogueItemsGoInAndComeOut) {
    Create();
    auto item = boost::make_shared<Repository::CNetCatalogueItem>();
    item->SetCatalogueTag(u"TAG");
    item->SetCatalogueId(u"i");
    item->GetFiles()->push_back(MakeFile(u"a.dwg", "1"));
    EXPECT_EQ(backend.AddCatalogItem(item), 1);
    std::vector<CatalogueItemPtr> items(3);
    // The null parent and the empty one are the top level.
    for (const char16_t* parent : {static_cast<const char16_t*>(nullptr), u""}) {
        EXPECT_EQ(backend.GetChildCatalogItems(u"TAG", parent, items, 1), 1);
        ASSERT_EQ(items.size(), 1u);
        EXPECT_EQ(items[0]->GetFiles()->size(), 1u);
    }
    EXPECT_THAT(*backend.GetCatalogItemById(u"TAG", u"i", 0)->GetFiles(), IsEmpty());
    EXPECT_EQ(backend.GetCatalogItemById(u"TAG", u"i", 1)->GetFiles()->size(), 1u);
    EXPECT_EQ(backend.DeleteCatalogItem(u"TAG", u"i"), 1);
    EXPECT_EQ(backend.GetChildCatalogItems(u"UNKNOWN", u"unknown", items, 1), 1);
    EXPECT_THAT(items, IsEmpty());
    EXPECT_FALSE(backend.GetCatalogItemById(u"TAG", u"i", 1));
    EXPECT_FALSE(backend.GetCatalogItemById(nullptr, nullptr, 1));
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(SqlBackendTest, WhatIsRefusedGivesZeroAndALineForEachReason) {
    Create();
    EXPECT_EQ(backend.AddRepositoryFiles(
                  {MakeFile(u"a/b", "1"), MakeFile(u"COM1", "2"), MakeFile(u"good", "3")}),
              0);
    EXPECT_THAT(log.Take(),
                ElementsAre(u"The file \"a/b\" (001_LABEL) was refused: the name holds a \"/\" or "
                            u"a \"\\\".",
                            u"The file \"COM1\" (001_LABEL) was refused: some systems read the "
                            u"name as that of a device."));
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Refused);
    EXPECT_EQ(administration.TakeLastProblem(), Problem::None);
    EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(SqlBackendTest, EmptyHandlesAndUnknownItemsAreRefused) {
    Create();
    EXPECT_EQ(backend.AddRepositoryItem(u"TAG", nullptr), 0);
    EXPECT_EQ(backend.AddCatalogItem(nullptr), 0);
    EXPECT_EQ(backend.DeleteRepositoryItem(u"TAG", u"i"), 0);
    EXPECT_EQ(backend.RenameRepositoryItem(u"TAG", u"i", u"n"), 0);
    EXPECT_EQ(backend.DeleteCatalogItem(u"TAG", u"i"), 0);
    EXPECT_EQ(log.Take().size(), 5u);
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Refused);
}

TEST_F(SqlBackendTest, ABadFileGivesAnEmptyHandleAndALineAndTheRestGoesOn) {
    Create();
    backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "2")});
    Plant("UPDATE stored_file SET name = '../x', name_folded = '../x' WHERE name = 'b.dwg'");
    const auto ids = Ids();
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_FALSE(backend.GetRepositoryFile(ids[0].c_str()));
    EXPECT_EQ(BytesOf(backend.GetRepositoryFile(ids[1].c_str())), "1");
    EXPECT_THAT(log.Take(), ElementsAre(u"The file \"../x\" (001_LABEL) was refused: the name "
                                        u"holds a \"/\" or a \"\\\"."));
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
    // A later success does not make it forgotten.
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Refused);
}

TEST_F(SqlBackendTest, ADamagedContentGivesAnEmptyHandleAndALine) {
    Create();
    backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")});
    Plant("UPDATE content SET bytes = x'32'");
    EXPECT_FALSE(backend.GetRepositoryFile(Ids().at(0).c_str()));
    EXPECT_THAT(log.Take(), ElementsAre(u"The content of \"a.dwg\" (001_LABEL) is damaged in the "
                                        u"repository and is not used. Put a copy of the "
                                        u"repository in its place."));
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Integrity);
}

TEST_F(SqlBackendTest, AFileLeftOutOfAnItemIsToldWhileTheItemComes) {
    Create();
    auto item = boost::make_shared<Repository::CNetCatalogueItem>();
    item->SetCatalogueId(u"i");
    *item->GetFiles() = {MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "2")};
    ASSERT_EQ(backend.AddCatalogItem(item), 1);
    Plant("UPDATE content SET bytes = x'39' WHERE bytes = x'31'");
    const auto fetched = backend.GetCatalogItemById(u"", u"i", 1);
    ASSERT_TRUE(fetched);
    EXPECT_EQ(fetched->GetFiles()->size(), 1u);
    EXPECT_EQ(log.Take().size(), 1u);
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Integrity);
}

TEST_F(SqlBackendTest, RevisionsSayWhoAndWithWhat) {
    Create();
    backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(Ask("SELECT user_name FROM revision"), FromText(Platform::UserName()));
    EXPECT_EQ(Ask("SELECT workstation FROM revision"), FromText(Platform::HostName()));
    EXPECT_EQ(Ask("SELECT program FROM revision"), "ZEBXRepositoryClient 1.2.3.4");
    EXPECT_THAT(Ask("SELECT made_at FROM revision"), testing::MatchesRegex("20..-..-..T..:..:..Z"));
}

TEST_F(SqlBackendTest, WithoutARepositoryNothingWorksAndTheLogSaysItOnce) {
    std::vector<CString> list = {u"what was there"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
        EXPECT_EQ(backend.AmIAdmin(), 0);
        EXPECT_EQ(backend.GetRepositoryFileIds(4, u"K", list), 0);
        EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a", "1")}), 0);
        EXPECT_EQ(backend.ApplyConnectionParameters(), 0);
        EXPECT_FALSE(backend.GetRepositoryFile(u"1"));
        EXPECT_FALSE(backend.GetCatalogItemById(u"T", u"i", 1));
    }
    EXPECT_THAT(list, IsEmpty());
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(FromText(lines[0]), HasSubstr("data/StudioZEB/repository.db"));
    EXPECT_THAT(FromText(lines[0]), HasSubstr("zebx connect --create"));
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Missing);
    EXPECT_FALSE(fs::exists(workstation.Folder().Native() / "data"));
}

TEST_F(SqlBackendTest, WhatTheStateSaidIsNotRepeatedInTheLog) {
    EXPECT_EQ(administration.State().problem, Problem::Missing);
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(SqlBackendTest, ARepositoryThatVanishesAndComesBackIsNoticed) {
    Create();
    backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
    fs::rename(native, native.string() + ".away");
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(log.Take().size(), 1u);
    fs::rename(native.string() + ".away", native);
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
    EXPECT_EQ(Ids().size(), 1u);
    // The second time it is news again.
    fs::rename(native, native.string() + ".away");
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(log.Take().size(), 1u);
}

TEST_F(SqlBackendTest, ACopyInTheRepositorysPlaceIsUsedFromTheNextCallOn) {
    Create();
    backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")});
    access->Disconnect();
    fs::copy_file(native, native.string() + ".copy");
    backend.AddRepositoryFiles({MakeFile(u"b.dwg", "2")});
    access->Disconnect();
    EXPECT_EQ(Ids().size(), 2u);
    fs::rename(native.string() + ".copy", native);
    EXPECT_EQ(Ids().size(), 1u);
}

TEST_F(SqlBackendTest, SomebodyElseWhoWritesTooLongIsToldAsBusy) {
    Create();
    connector = [](const Address& place) { return OpenSqlite(place.path, {.busyTimeoutMs = 1}); };
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    const auto other = OpenRepository({workstation.Folder().Path() + u"repository.db"});
    other->BeginWrite();
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 0);
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Busy);
    // Readers do not wait.
    EXPECT_THAT(Ids(), IsEmpty());
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
}

TEST_F(SqlBackendTest, WhatIsThrownByNobodysDesignIsAFailureLikeOthers) {
    connector = [](const Address&) -> std::unique_ptr<SqlConnection> {
        throw std::runtime_error("unforeseen");
    };
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Internal);
    EXPECT_THAT(FromText(log.Take().at(0)), HasSubstr("unforeseen"));
    connector = [](const Address&) -> std::unique_ptr<SqlConnection> { throw 1; };
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(administration.State().problem, Problem::Internal);
}

TEST_F(SqlBackendTest, TheOwnerMayWriteAndAUserWithoutRightsMayNot) {
    Create();
    EXPECT_EQ(backend.AmIAdmin(), 1);
    access->Disconnect();
    fs::permissions(workstation.Folder().Native(), fs::perms(0555));
    for (const char* suffix : {"", "-wal", "-shm"})
        fs::permissions(native.string() + suffix, fs::perms(0444));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
        EXPECT_EQ(backend.AmIAdmin(), 0);
        EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a", "1")}), 0);
        EXPECT_EQ(administration.TakeLastProblem(), Problem::NotAllowed);
    }));
    fs::permissions(workstation.Folder().Native(), fs::perms(0755));
}

// Settings

TEST_F(SqlBackendTest, LoadingAndSavingWithoutSettingsWritesNothing) {
    EXPECT_FALSE(Platform::PathExists(settingsFolder));
}

TEST_F(SqlBackendTest, TheAddressIsKeptForTheNextProcess) {
    Create();
    SqlBackend next(boost::make_shared<RepositoryAccess>());
    next.SetSettingsPath(settingsFolder.c_str());
    next.LoadSettings();
    EXPECT_EQ(next.IsRepositoryAccessible(), 1);
}

TEST_F(SqlBackendTest, SettingsThatAreNotUnderstoodAreToldOnceAndSurvive) {
    Platform::CreateFolderChain(settingsFolder);
    Platform::WriteFile(settingsFile, "adress = sqlite:/srv/r.db\n");
    backend.LoadSettings();
    backend.SaveSettings();
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(FromText(lines[0]), HasSubstr("ZEBXRepositoryClientPlugin_Sql.ini"));
    EXPECT_THAT(FromText(lines[0]), HasSubstr("line 1"));
    std::string text;
    Platform::ReadFile(settingsFile, text);
    EXPECT_EQ(text, "adress = sqlite:/srv/r.db\n");
    // Not the default place: it might be another repository than the one that was meant.
    EXPECT_EQ(backend.IsRepositoryAccessible(), 0);
    EXPECT_EQ(administration.State().problem, Problem::Configuration);
    EXPECT_THAT(log.Take(), IsEmpty());
    Create();
    EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
}

TEST_F(SqlBackendTest, NullTextsAreEmptyTexts) {
    backend.SetSettingsPath(nullptr);
    backend.SetVersion(nullptr);
    backend.LoadSettings();
    backend.SaveSettings();
    EXPECT_THAT(log.Take(), IsEmpty());
}

} // namespace
} // namespace Storage
