// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::IsNull;
using testing::Return;
using testing::SaveArg;

namespace {

constexpr int kDisplayName = 10321;

class FocSave : public ManagerTest {
protected:
    FocSave() { ForgetKinds(); }

    boost::shared_ptr<CFOCMetadata> Register(const char16_t* id, std::vector<CString> fileNames,
                                             int optional = 0,
                                             enmBaseFolder baseFolder = BaseFolderSupport,
                                             const char16_t* fileManagerId = u"") {
        const auto kind = boost::make_shared<CFOCMetadata>(id, kDisplayName, baseFolder, u"sub",
                                                           fileManagerId, optional);
        kind->GetFileNames() = std::move(fileNames);
        manager.RegisterFOCMetadata(kind);
        return kind;
    }
    // Makes the kind need two drawing kinds, named in another order than the registry's.
    void GiveDependents(const boost::shared_ptr<CFOCMetadata>& kind) {
        kind->GetDependentNCFs() = {u"NCF2", u"NCF1"};
        for (const char16_t* id : {u"NCF1", u"NCF2"})
            manager.RegisterNCFMetadata(boost::make_shared<CNCFMetadata>(
                id, 10313, BaseFolderSupport, u"ncf", NCFTypeSingleFile, u"n.dwg", 0));
    }

    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
    }
    void ExpectAnnouncement(const char16_t* id, int answer = 1) {
        EXPECT_CALL(backend, RegisterContent(5, TextIs(id), kDisplayName)).WillOnce(Return(answer));
    }
    void ExpectSending(int answer) {
        EXPECT_CALL(backend, AddRepositoryFiles(_))
            .WillOnce(DoAll(SaveArg<0>(&sent), Return(answer)));
    }
    void ExpectWholeSaving(const char16_t* id, int answer = 1) {
        const InSequence order;
        ExpectAnnouncement(id);
        ExpectAccessible(1);
        ExpectSending(answer);
    }
    // A drawing kind that the storage refuses, so that nothing of it is sent.
    void ExpectRefusedDependent(const char16_t* id) {
        ExpectAccessible(1);
        EXPECT_CALL(backend, RegisterContent(4, TextIs(id), 10313)).WillOnce(Return(0));
    }

    RepositoryFiles sent;
};

} // namespace

TEST_F(FocSave, OfAnUnknownKindGivesZeroAndAsksNothing) {
    EXPECT_EQ(manager.SaveFOC(u"unknown", 0), 0);
    EXPECT_EQ(manager.SaveFOC(nullptr, 0), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

// SaveNCF asks for the connection first: kept.
TEST_F(FocSave, AnnouncesTheKindBeforeItAsksForTheConnection) {
    Register(u"K", {u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    const InSequence order;
    ExpectAnnouncement(u"K");
    ExpectAccessible(0);

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocSave, SendsTheNamedFilesInTheOrderOfTheirNames) {
    Register(u"K", {u"b.xml", u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    Write(SupportFolder() / "sub/b.xml", "b");
    Write(SupportFolder() / "sub/c.xml", "c");
    const InSequence order;
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 1);
    EXPECT_EQ(NamesOf(sent), (std::vector<CString>{u"b.xml", u"a.xml"}));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocSave, LabelsEachFile) {
    const auto kind =
        boost::make_shared<CFOCMetadata>(u"OWN", kDisplayName, BaseFolderSupport, u"sub", u"", 0);
    kind->GetFileNames().push_back(u"a.xml");
    manager.GetFOCMetadata()[u"KEY"] = kind;
    Write(SupportFolder() / "sub/a.xml", "content");
    ExpectWholeSaving(u"KEY");

    EXPECT_EQ(manager.SaveFOC(u"KEY", 0), 1);

    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0]->GetFileManagerId(), u"FOC");
    EXPECT_EQ(sent[0]->GetOriginId(), u"KEY");
    EXPECT_EQ(sent[0]->GetCustomParameter(), u"OWN");
    EXPECT_EQ(sent[0]->GetFileType(), 5);
    EXPECT_EQ(sent[0]->GetFileName(), u"a.xml");
    EXPECT_EQ(sent[0]->GetFileId(), u"");
    EXPECT_EQ(BytesOf(sent[0]), "content");
}

TEST_F(FocSave, TakesItsNamesLiterally) {
    Register(u"K", {u"*.xml"});
    Write(SupportFolder() / "sub/a.xml", "matches");
    Write(SupportFolder() / "sub/*.xml", "is");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 1);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(BytesOf(sent[0]), "is");
}

TEST_F(FocSave, SkipsAMissingFileSilently) {
    Register(u"K", {u"missing.xml", u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 1);
    EXPECT_EQ(NamesOf(sent), std::vector<CString>{u"a.xml"});
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocSave, ReadsBelowTheInstallationFolderForBaseFolderZero) {
    Register(u"K", {u"a.xml"}, 0, BaseFolderInstall);
    Write(workstation.Native() / "sub/a.xml", "installed");
    Write(SupportFolder() / "sub/a.xml", "support");
    ExpectWholeSaving(u"K");

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 1);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(BytesOf(sent[0]), "installed");
}

// SaveNCF gives up here: kept.
TEST_F(FocSave, SendsTheFilesAlsoWhenTheStorageRefusesTheKind) {
    Register(u"K", {u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    const InSequence order;
    ExpectAnnouncement(u"K", 0);
    ExpectAccessible(1);
    ExpectSending(1);

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 1);
}

// SaveNCF gives 0 here: kept.
TEST_F(FocSave, WithoutAnyFileGivesWhatTheAnnouncementGaveAndSavesNoDependent) {
    GiveDependents(Register(u"K", {u"missing.xml"}));
    for (const int answer : {0, 1, 42, -3}) {
        const InSequence order;
        ExpectAnnouncement(u"K", answer);
        ExpectAccessible(1);

        EXPECT_EQ(manager.SaveFOC(u"K", 1), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocSave, GivesTheStoragesResultAsItIs) {
    Register(u"K", {u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    for (const int answer : {0, 1, 42, -3}) {
        ExpectWholeSaving(u"K", answer);
        EXPECT_EQ(manager.SaveFOC(u"K", 0), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(FocSave, SavesTheDependentsInTheirListsOrderAndDoesNotCountTheirResults) {
    for (const int unused : {0, 1}) {
        ForgetKinds();
        GiveDependents(Register(u"K", {u"a.xml"}));
        Write(SupportFolder() / "sub/a.xml", "a");
        Write(SupportFolder() / "ncf/n.dwg", "n");
        RepositoryFiles drawings;
        const InSequence order;
        ExpectWholeSaving(u"K", 42);
        ExpectAccessible(1);
        ExpectRefusedDependent(u"NCF2");
        ExpectAccessible(1);
        ExpectAccessible(1);
        EXPECT_CALL(backend, RegisterContent(4, TextIs(u"NCF1"), 10313)).WillOnce(Return(1));
        ExpectAccessible(1);
        EXPECT_CALL(backend, AddRepositoryFiles(_))
            .WillOnce(DoAll(SaveArg<0>(&drawings), Return(0)));

        EXPECT_EQ(manager.SaveFOC(u"K", unused), 42);
        EXPECT_EQ(NamesOf(drawings), std::vector<CString>{u"n.dwg"});
        EXPECT_EQ(log.Lines(), Lines{});
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(FocSave, SavesTheDependentsAlsoWhenTheStorageDidNotTakeTheFiles) {
    GiveDependents(Register(u"K", {u"a.xml"}));
    Write(SupportFolder() / "sub/a.xml", "a");
    const InSequence order;
    ExpectWholeSaving(u"K", 0);
    ExpectAccessible(1);
    ExpectRefusedDependent(u"NCF2");
    ExpectAccessible(1);
    ExpectRefusedDependent(u"NCF1");

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 0);
}

TEST_F(FocSave, GivesZeroWhenTheConnectionIsLostBeforeADependentAlthoughItsFilesAreStored) {
    GiveDependents(Register(u"K", {u"a.xml"}));
    Write(SupportFolder() / "sub/a.xml", "a");
    const InSequence order;
    ExpectWholeSaving(u"K", 1);
    ExpectAccessible(1);
    ExpectRefusedDependent(u"NCF2");
    ExpectAccessible(0);

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 0);
}

TEST_F(FocSave, LeavesTheFilesToTheKindsFileManager) {
    const auto fileManager = ReplaceFileManager(u"M");
    Register(u"K", {u"a.xml"}, 0, BaseFolderSupport, u"M");
    Write(SupportFolder() / "sub/a.xml", "never read");
    const File own = Stored(u"own.xml", "own");
    own->SetFileManagerId(u"M");
    const InSequence order;
    ExpectAnnouncement(u"K");
    EXPECT_CALL(*fileManager, GetFiles(testing::IsEmpty(), IsNull()))
        .WillOnce([&](RepositoryFiles& files, const char16_t*) { files.push_back(own); });
    ExpectAccessible(1);
    ExpectSending(1);

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 1);
    EXPECT_EQ(sent, RepositoryFiles{own});
    // The labels are the file manager's affair.
    EXPECT_EQ(own->GetFileManagerId(), u"M");
    EXPECT_EQ(own->GetOriginId(), u"");
    EXPECT_EQ(own->GetFileType(), 0);
}

TEST_F(FocSave, GivesWhatTheAnnouncementGaveWhenTheFileManagerHasNoFile) {
    const auto fileManager = ReplaceFileManager(u"M");
    Register(u"K", {u"a.xml"}, 0, BaseFolderSupport, u"M");
    Write(SupportFolder() / "sub/a.xml", "never read");
    const InSequence order;
    ExpectAnnouncement(u"K", 5);
    EXPECT_CALL(*fileManager, GetFiles(_, IsNull()));
    ExpectAccessible(1);

    EXPECT_EQ(manager.SaveFOC(u"K", 0), 5);
}

TEST_F(FocSave, FailsWhenAFileManagerThrows) {
    const auto fileManager = ReplaceFileManager(u"M");
    Register(u"K", {}, 0, BaseFolderSupport, u"M");
    ExpectAnnouncement(u"K");
    EXPECT_CALL(*fileManager, GetFiles(_, _)).WillOnce(testing::Throw(std::runtime_error("x")));
    EXPECT_EQ(manager.SaveFOC(u"K", 0), 0);
}

TEST_F(FocSave, OfEverythingIsDoneWithoutACallWhenThereIsNoKind) {
    EXPECT_EQ(manager.SaveAllFOC(0), 1);
}

TEST_F(FocSave, OfEverythingTakesTheKindsInOrderAndAsksForNoConnectionItself) {
    Register(u"B", {u"a.xml"});
    Register(u"A", {u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    const InSequence order;
    ExpectWholeSaving(u"A");
    ExpectWholeSaving(u"B");

    EXPECT_EQ(manager.SaveAllFOC(0), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

// Every other loop stops when the connection is lost: kept.
TEST_F(FocSave, OfEverythingTriesEveryKindAlsoWhenTheStorageIsGone) {
    Register(u"A", {u"a.xml"});
    Register(u"B", {u"a.xml"});
    const InSequence order;
    ExpectAnnouncement(u"A", 0);
    ExpectAccessible(0);
    ExpectAnnouncement(u"B", 0);
    ExpectAccessible(0);

    EXPECT_EQ(manager.SaveAllFOC(0), 0);
    EXPECT_EQ(log.Lines(),
              (Lines{Failure(10332, Msg(kDisplayName)), Failure(10332, Msg(kDisplayName))}));
}

TEST_F(FocSave, OfEverythingTellsOfAKindThatCouldNotBeSentAndGoesOn) {
    Register(u"A", {u"a.xml"});
    Register(u"B", {u"a.xml"});
    Write(SupportFolder() / "sub/a.xml", "a");
    const InSequence order;
    ExpectWholeSaving(u"A", 0);
    ExpectWholeSaving(u"B");

    EXPECT_EQ(manager.SaveAllFOC(0), 0);
    EXPECT_EQ(log.Lines(), Lines{Failure(10332, Msg(kDisplayName))});
}

TEST_F(FocSave, OfEverythingSkipsAnOptionalKindThatIsNotSwitchedOn) {
    Register(u"OFF", {u"a.xml"}, 1);
    Register(u"ON", {u"a.xml"}, 1);
    Write(SupportFolder() / "sub/a.xml", "a");
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const InSequence order;
    ExpectWholeSaving(u"ON");

    EXPECT_EQ(manager.SaveAllFOC(0), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}
