// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"
#include "platform/text/Fill.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SaveArg;

namespace {

constexpr int kDisplayName = 10313;

class NcfSave : public ManagerTest {
protected:
    NcfSave() { ForgetKinds(); }

    void Register(const char16_t* id, enmNCFType type, const char16_t* file, int optional = 0,
                  enmBaseFolder baseFolder = BaseFolderSupport,
                  const char16_t* subfolder = u"sub") {
        manager.RegisterNCFMetadata(boost::make_shared<CNCFMetadata>(
            id, kDisplayName, baseFolder, subfolder, type, file, optional));
    }

    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
    }
    void ExpectAnnouncement(const char16_t* id, int answer = 1) {
        EXPECT_CALL(backend, RegisterContent(4, TextIs(id), kDisplayName)).WillOnce(Return(answer));
    }
    // The files that are sent stand in `sent` afterwards.
    void ExpectSending(int answer) {
        EXPECT_CALL(backend, AddRepositoryFiles(_))
            .WillOnce(DoAll(SaveArg<0>(&sent), Return(answer)));
    }
    // All calls of one kind that is sent without a failure.
    void ExpectWholeSaving(const char16_t* id, int answer = 1) {
        const InSequence order;
        ExpectAccessible(1);
        ExpectAnnouncement(id);
        ExpectAccessible(1);
        ExpectSending(answer);
    }
    WorkspaceLines::Line NothingMatches(CStringView pattern) const {
        return {2, Platform::Fill(u"%s (%s)", {Msg(10384), pattern})};
    }

    RepositoryFiles sent;
};

} // namespace

TEST_F(NcfSave, OfAnUnknownKindGivesZeroAndAsksNothing) {
    EXPECT_EQ(manager.SaveNCF(u"unknown"), 0);
    EXPECT_EQ(manager.SaveNCF(nullptr), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, GivesZeroWhenNotConnected) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    ExpectAccessible(0);
    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

// SaveFOC goes on after a refusal: kept.
TEST_F(NcfSave, GivesUpBeforeReadingWhenTheStorageRefusesTheKind) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAnnouncement(u"K", 0);

    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    // A search that matched nothing would have left its line.
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, AnnouncesTheKindThenSendsItsFilesOnce) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    Write(SupportFolder() / "sub/b.dwg", "b");
    const InSequence order;
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    EXPECT_EQ(NamesOf(sent), (std::vector<CString>{u"a.dwg", u"b.dwg"}));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, LabelsEachFile) {
    // Under another key than its own identifier, so that the two can be told apart.
    manager.GetNCFMetadata()[u"KEY"] = boost::make_shared<CNCFMetadata>(
        u"OWN", kDisplayName, BaseFolderSupport, u"sub", NCFTypePattern, u"*.dwg", 0);
    Write(SupportFolder() / "sub/a.dwg", "content");
    ExpectAnnouncement(u"KEY");
    ExpectSending(1);
    EXPECT_CALL(backend, IsRepositoryAccessible()).WillRepeatedly(Return(1));

    EXPECT_EQ(manager.SaveNCF(u"KEY"), 1);

    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0]->GetFileManagerId(), u"NCF");
    EXPECT_EQ(sent[0]->GetCustomParameter(), u"OWN");
    EXPECT_EQ(sent[0]->GetFileType(), 4);
    EXPECT_EQ(sent[0]->GetOriginId(), u"KEY");
    EXPECT_EQ(sent[0]->GetFileName(), u"a.dwg");
    EXPECT_EQ(sent[0]->GetFileId(), u"");
    EXPECT_EQ(BytesOf(sent[0]), "content");
}

TEST_F(NcfSave, SendsWhatThePatternMatchesWithoutRegardToCaseInFoldedOrder) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    for (const char* name : {"b.DWG", "A.dwg", "c, d.Dwg", "other.txt", "dwg"})
        Write(SupportFolder() / "sub" / name, name);
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    EXPECT_EQ(NamesOf(sent), (std::vector<CString>{u"A.dwg", u"b.DWG", u"c, d.Dwg"}));
}

TEST_F(NcfSave, SearchesOnlyTheKindsOwnFolder) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/deeper/a.dwg", "a");
    Write(SupportFolder() / "b.dwg", "b");
    Write(SupportFolder() / "sub/c.dwg", "c");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    EXPECT_EQ(NamesOf(sent), std::vector<CString>{u"c.dwg"});
}

TEST_F(NcfSave, FindsFilesOfAPatternThatNamesAFolder) {
    Register(u"K", NCFTypePattern, u"deeper\\*.dwg");
    Write(SupportFolder() / "sub/deeper/a.dwg", "a");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    EXPECT_EQ(NamesOf(sent), std::vector<CString>{u"a.dwg"});
}

TEST_F(NcfSave, LeavesOutFoldersThatMatchWithoutALine) {
    Register(u"K", NCFTypePattern, u"*");
    std::filesystem::create_directories(SupportFolder() / "sub/folder.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    EXPECT_EQ(NamesOf(sent), std::vector<CString>{u"a.dwg"});
    EXPECT_EQ(log.Lines(), Lines{});
}

// The folder itself and its parent match: that is a match, so there is no warning.  Kept.
TEST_F(NcfSave, GivesZeroWithoutAWarningWhenNothingThatMatchesCanBeRead) {
    Register(u"K", NCFTypePattern, u"*");
    std::filesystem::create_directories(SupportFolder() / "sub");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAnnouncement(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, WarnsOfAPatternThatMatchesNothing) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    std::filesystem::create_directories(SupportFolder() / "sub");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAnnouncement(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{NothingMatches(workstation.Support() + u"sub\\*.dwg")});
}

TEST_F(NcfSave, WarnsLikewiseWhenTheFolderIsMissing) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    ExpectAccessible(1);
    ExpectAnnouncement(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{NothingMatches(workstation.Support() + u"sub\\*.dwg")});
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
}

TEST_F(NcfSave, TakesAnyTypeButOneAsAPattern) {
    Register(u"K", static_cast<enmNCFType>(2), u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    EXPECT_EQ(sent.size(), 1U);
}

TEST_F(NcfSave, SendsTheOneFileOfASingleFileKind) {
    Register(u"K", NCFTypeSingleFile, u"a.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    Write(SupportFolder() / "sub/b.dwg", "b");
    const InSequence order;
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    ASSERT_EQ(NamesOf(sent), std::vector<CString>{u"a.dwg"});
    EXPECT_EQ(sent[0]->GetFileManagerId(), u"NCF");
    EXPECT_EQ(sent[0]->GetFileType(), 4);
}

TEST_F(NcfSave, TakesTheNameOfASingleFileKindLiterally) {
    Register(u"K", NCFTypeSingleFile, u"a*.dwg");
    Write(SupportFolder() / "sub/ab.dwg", "matches");
    Write(SupportFolder() / "sub/a*.dwg", "is");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(BytesOf(sent[0]), "is");
}

TEST_F(NcfSave, SkipsAMissingSingleFileSilently) {
    Register(u"K", NCFTypeSingleFile, u"a.dwg");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAnnouncement(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, ReadsBelowTheInstallationFolderForBaseFolderZero) {
    Register(u"K", NCFTypePattern, u"*.dwg", 0, BaseFolderInstall);
    Write(workstation.Native() / "sub/a.dwg", "installed");
    Write(SupportFolder() / "sub/a.dwg", "support");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(BytesOf(sent[0]), "installed");
}

TEST_F(NcfSave, ReadsBelowTheSupportFolderForAnyOtherBaseFolder) {
    Register(u"K", NCFTypePattern, u"*.dwg", 0, static_cast<enmBaseFolder>(-1));
    Write(workstation.Native() / "sub/a.dwg", "installed");
    Write(SupportFolder() / "sub/a.dwg", "support");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveNCF(u"K"), 1);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(BytesOf(sent[0]), "support");
}

TEST_F(NcfSave, SendsNothingWhenTheConnectionIsLostWhileCollecting) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAnnouncement(u"K");
    ExpectAccessible(0);

    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, GivesTheStoragesResultAsItIs) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    for (const int answer : {0, 1, 42, -3}) {
        ExpectWholeSaving(u"K", answer);
        EXPECT_EQ(manager.SaveNCF(u"K"), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(NcfSave, FailsWhenABackendThrows) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    ExpectAccessible(1);
    EXPECT_CALL(backend, RegisterContent(_, _, _)).WillOnce(testing::Throw(std::bad_alloc()));
    EXPECT_EQ(manager.SaveNCF(u"K"), 0);
}

TEST_F(NcfSave, OfEverythingGivesZeroAndAsksNothingElseWhenNotConnected) {
    Register(u"K", NCFTypePattern, u"*.dwg");
    ExpectAccessible(0);
    EXPECT_EQ(manager.SaveAllNCFs(), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, OfEverythingIsDoneWhenThereIsNoKind) {
    ExpectAccessible(1);
    EXPECT_EQ(manager.SaveAllNCFs(), 1);
}

TEST_F(NcfSave, OfEverythingTakesTheKindsInOrderAndAsksForTheConnectionAfterEach) {
    Register(u"B", NCFTypePattern, u"*.dwg");
    Register(u"A", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectWholeSaving(u"A");
    ExpectAccessible(1);
    ExpectWholeSaving(u"B");
    ExpectAccessible(1);

    EXPECT_EQ(manager.SaveAllNCFs(), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, OfEverythingTellsOfAKindThatCouldNotBeSentAndGoesOn) {
    Register(u"A", NCFTypeSingleFile, u"missing.dwg");
    Register(u"B", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectAnnouncement(u"A");
    ExpectAccessible(1);
    ExpectWholeSaving(u"B");
    ExpectAccessible(1);

    EXPECT_EQ(manager.SaveAllNCFs(), 0);
    EXPECT_EQ(log.Lines(), Lines{Failure(10332, Msg(kDisplayName))});
}

TEST_F(NcfSave, OfEverythingWarnsOfThePatternBeforeItTellsOfTheKind) {
    Register(u"A", NCFTypePattern, u"*.dwg");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectAnnouncement(u"A");
    ExpectAccessible(1);

    EXPECT_EQ(manager.SaveAllNCFs(), 0);
    EXPECT_EQ(log.Lines(), (Lines{NothingMatches(workstation.Support() + u"sub\\*.dwg"),
                                  Failure(10332, Msg(kDisplayName))}));
}

TEST_F(NcfSave, OfEverythingStopsWhenTheConnectionIsLostBetweenKinds) {
    Register(u"A", NCFTypePattern, u"*.dwg");
    Register(u"B", NCFTypePattern, u"*.dwg");
    Write(SupportFolder() / "sub/a.dwg", "a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectWholeSaving(u"A");
    ExpectAccessible(0);

    EXPECT_EQ(manager.SaveAllNCFs(), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, OfEverythingSkipsAnOptionalKindThatIsNotSwitchedOn) {
    Register(u"OFF", NCFTypePattern, u"*.dwg", 1);
    ExpectAccessible(1);

    EXPECT_EQ(manager.SaveAllNCFs(), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfSave, OfEverythingTakesAnOptionalKindThatIsSwitchedOn) {
    Register(u"OFF", NCFTypePattern, u"*.dwg", 1);
    Register(u"ON", NCFTypePattern, u"*.dwg", 1);
    Write(SupportFolder() / "sub/a.dwg", "a");
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const InSequence order;
    ExpectAccessible(1);
    ExpectWholeSaving(u"ON");
    ExpectAccessible(1);

    EXPECT_EQ(manager.SaveAllNCFs(), 1);
}
