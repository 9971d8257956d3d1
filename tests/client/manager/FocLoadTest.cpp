// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SetArgReferee;

namespace {

class FocLoad : public ManagerTest {
protected:
    FocLoad() {
        ForgetKinds();
        Register(u"K", u"sub");
    }

    boost::shared_ptr<CFOCMetadata> Register(const char16_t* id, const char16_t* subfolder,
                                             int optional = 0,
                                             enmBaseFolder baseFolder = BaseFolderSupport) {
        const auto kind =
            boost::make_shared<CFOCMetadata>(id, 10321, baseFolder, subfolder, u"", optional);
        manager.RegisterFOCMetadata(kind);
        return kind;
    }
    // A kind that needs two drawing kinds, named in another order than the registry's.
    void RegisterWithDependents(const char16_t* id) {
        Register(id, u"sub")->GetDependentNCFs() = {u"NCF2", u"NCF1"};
        for (const char16_t* ncfId : {u"NCF1", u"NCF2"})
            manager.RegisterNCFMetadata(boost::make_shared<CNCFMetadata>(
                ncfId, 10313, BaseFolderSupport, u"ncf", NCFTypePattern, u"*.dwg", 0));
    }

    void ExpectListing(const char16_t* id, const std::vector<CString>& fileIds) {
        EXPECT_CALL(backend, GetRepositoryFileIds(5, TextIs(id), testing::IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<2>(fileIds), Return(1)));
    }
    // The listing of a drawing kind that has no file.
    void ExpectDependent(const char16_t* ncfId, int answer = 1) {
        EXPECT_CALL(backend, GetRepositoryFileIds(4, TextIs(ncfId), _)).WillOnce(Return(answer));
    }
    void ExpectFetch(const char16_t* fileId, const File& file) {
        EXPECT_CALL(backend, GetRepositoryFile(TextIs(fileId))).WillOnce(Return(file));
    }
    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
    }
};

} // namespace

TEST_F(FocLoad, OfAnUnknownKindIsNoErrorAndTouchesNothing) {
    EXPECT_EQ(manager.LoadFOC(u"unknown", 1), 1);
    EXPECT_EQ(manager.LoadFOC(nullptr, 1), 1);
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocLoad, WritesEveryStoredFileInTheOrderOfTheList) {
    const InSequence order;
    ExpectListing(u"K", {u"id of b", u"id of a"});
    ExpectFetch(u"id of b", Stored(u"b.xml", "second letter"));
    ExpectAccessible(1);
    ExpectFetch(u"id of a", Stored(u"a.xml", ""));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadFOC(u"K", 0), 1);

    EXPECT_EQ(Read(SupportFolder() / "sub/b.xml"), "second letter");
    EXPECT_EQ(Read(SupportFolder() / "sub/a.xml"), "");
    EXPECT_EQ(log.Lines(), (Lines{Success(u"b.xml"), Success(u"a.xml")}));
}

TEST_F(FocLoad, WritesItsLinesAboutNothingButTheFile) {
    ExpectListing(u"K", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);
    manager.LoadFOC(u"K", 0);

    ASSERT_EQ(log.Messages().size(), 1U);
    const auto& message = log.Messages().front();
    EXPECT_EQ(message.entityType, 0);
    EXPECT_EQ(message.name, u"");
    EXPECT_EQ(message.objectId, nullptr);
    EXPECT_EQ(message.selectionType, 0);
}

TEST_F(FocLoad, CreatesEveryMissingFolderEvenWhenNothingIsStored) {
    Register(u"DEEP", u"a\\b\\c");
    ExpectListing(u"DEEP", {});

    EXPECT_EQ(manager.LoadFOC(u"DEEP", 0), 1);
    EXPECT_TRUE(std::filesystem::is_directory(SupportFolder() / "a/b/c"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocLoad, WritesBelowTheInstallationFolderForBaseFolderZero) {
    Register(u"INSTALLED", u"sub", 0, BaseFolderInstall);
    ExpectListing(u"INSTALLED", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadFOC(u"INSTALLED", 0), 1);
    EXPECT_EQ(Read(workstation.Native() / "sub/a.xml"), "a");
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
}

TEST_F(FocLoad, WritesBelowTheSupportFolderForAnyOtherBaseFolder) {
    Register(u"SEVEN", u"sub", 0, static_cast<enmBaseFolder>(7));
    ExpectListing(u"SEVEN", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadFOC(u"SEVEN", 0), 1);
    EXPECT_EQ(Read(SupportFolder() / "sub/a.xml"), "a");
}

// LoadNCF does not write the file in hand: kept.
TEST_F(FocLoad, WritesTheFileInHandBeforeItAsksForTheConnection) {
    const InSequence order;
    ExpectListing(u"K", {u"1", u"2"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce([&] {
        EXPECT_EQ(Read(SupportFolder() / "sub/a.xml"), "a");
        EXPECT_EQ(log.Lines(), Lines{});
        return 0;
    });

    EXPECT_EQ(manager.LoadFOC(u"K", 0), 0);
    EXPECT_EQ(Read(SupportFolder() / "sub/a.xml"), "a");
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocLoad, LoadsNoDependentWhenTheConnectionIsLost) {
    RegisterWithDependents(u"D");
    const InSequence order;
    ExpectListing(u"D", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(0);

    EXPECT_EQ(manager.LoadFOC(u"D", 1), 0);
}

// LoadNCF names the kind here: kept.
TEST_F(FocLoad, TellsOfAStoredFileThatCameBackEmptyAsANullFileAndGoesOn) {
    const InSequence order;
    ExpectListing(u"K", {u"gone", u"2"});
    ExpectFetch(u"gone", nullptr);
    ExpectAccessible(1);
    ExpectFetch(u"2", Stored(u"b.xml", "b"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadFOC(u"K", 0), 1);
    EXPECT_EQ(log.Lines(), (Lines{{4, u"NULL File"}, Success(u"b.xml")}));
}

TEST_F(FocLoad, LoadsTheDependentsAlsoAfterAFileThatCameBackEmpty) {
    RegisterWithDependents(u"D");
    const InSequence order;
    ExpectListing(u"D", {u"gone"});
    ExpectFetch(u"gone", nullptr);
    ExpectAccessible(1);
    ExpectDependent(u"NCF2");
    ExpectDependent(u"NCF1");

    EXPECT_EQ(manager.LoadFOC(u"D", 1), 1);
}

TEST_F(FocLoad, TriesEveryFileWhenOneCannotBeWrittenAndThenLoadsNoDependent) {
    RegisterWithDependents(u"D");
    std::filesystem::create_directories(SupportFolder() / "sub/b.xml");
    ExpectListing(u"D", {u"1", u"2", u"3"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectFetch(u"2", Stored(u"b.xml", "b"));
    ExpectFetch(u"3", Stored(u"c.xml", "c"));
    EXPECT_CALL(backend, IsRepositoryAccessible()).Times(3).WillRepeatedly(Return(1));

    EXPECT_EQ(manager.LoadFOC(u"D", 1), 0);
    EXPECT_EQ(Read(SupportFolder() / "sub/c.xml"), "c");
    EXPECT_EQ(log.Lines(), (Lines{Success(u"a.xml"), Failure(10334, u"b.xml"), Success(u"c.xml")}));
}

TEST_F(FocLoad, LoadsNoDependentUnlessAsked) {
    RegisterWithDependents(u"D");
    ExpectListing(u"D", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadFOC(u"D", 0), 1);
}

TEST_F(FocLoad, LoadsTheDependentsInTheirListsOrderWhenEveryFileWasWritten) {
    RegisterWithDependents(u"D");
    const InSequence order;
    ExpectListing(u"D", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);
    ExpectDependent(u"NCF2");
    ExpectDependent(u"NCF1");

    EXPECT_EQ(manager.LoadFOC(u"D", 7), 1);
}

TEST_F(FocLoad, LoadsTheDependentsAlsoWhenTheStorageListsNoFile) {
    RegisterWithDependents(u"D");
    const InSequence order;
    ExpectListing(u"D", {});
    ExpectDependent(u"NCF2");
    ExpectDependent(u"NCF1");

    EXPECT_EQ(manager.LoadFOC(u"D", 1), 1);
}

TEST_F(FocLoad, LoadsTheDependentsAlsoWhenTheStorageRefusesToList) {
    RegisterWithDependents(u"D");
    const InSequence order;
    EXPECT_CALL(backend, GetRepositoryFileIds(5, TextIs(u"D"), _))
        .WillOnce(DoAll(SetArgReferee<2>(std::vector<CString>{u"1"}), Return(0)));
    ExpectDependent(u"NCF2");
    ExpectDependent(u"NCF1");

    EXPECT_EQ(manager.LoadFOC(u"D", 1), 1);
}

TEST_F(FocLoad, DoesNotCountTheDependentsResults) {
    RegisterWithDependents(u"D");
    std::filesystem::create_directories(SupportFolder() / "ncf/x.dwg");
    const InSequence order;
    ExpectListing(u"D", {});
    EXPECT_CALL(backend, GetRepositoryFileIds(4, TextIs(u"NCF2"), _))
        .WillOnce(DoAll(SetArgReferee<2>(std::vector<CString>{u"1"}), Return(1)));
    ExpectFetch(u"1", Stored(u"x.dwg", "x"));
    ExpectAccessible(1);
    ExpectDependent(u"NCF1");

    EXPECT_EQ(manager.LoadFOC(u"D", 1), 1);
    EXPECT_EQ(log.Lines(), Lines{Failure(10334, u"x.dwg")});
}

TEST_F(FocLoad, FailsWhenABackendThrows) {
    EXPECT_CALL(backend, GetRepositoryFileIds(_, _, _))
        .WillOnce(testing::Throw(std::runtime_error("x")));
    EXPECT_EQ(manager.LoadFOC(u"K", 1), 0);
}

// LoadAllNCFs gives 0 here: kept.
TEST_F(FocLoad, OfEverythingIsASuccessWhenNotConnectedAtTheStart) {
    ExpectAccessible(0);
    EXPECT_EQ(manager.LoadAllFOC(1), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocLoad, OfEverythingIsDoneWhenThereIsNoKind) {
    ForgetKinds();
    ExpectAccessible(1);
    EXPECT_EQ(manager.LoadAllFOC(0), 1);
}

TEST_F(FocLoad, OfEverythingTakesTheKindsInOrderAndAsksForTheConnectionBeforeEach) {
    Register(u"A", u"a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"A", {});
    ExpectAccessible(1);
    ExpectListing(u"K", {});

    EXPECT_EQ(manager.LoadAllFOC(0), 1);
}

TEST_F(FocLoad, OfEverythingAlwaysLoadsTheDependents) {
    for (const int unused : {0, 1}) {
        ForgetKinds();
        RegisterWithDependents(u"D");
        const InSequence order;
        ExpectAccessible(1);
        ExpectAccessible(1);
        ExpectListing(u"D", {});
        ExpectDependent(u"NCF2");
        ExpectDependent(u"NCF1");

        EXPECT_EQ(manager.LoadAllFOC(unused), 1);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(FocLoad, OfEverythingStopsWhenTheConnectionIsLostBetweenKinds) {
    Register(u"A", u"a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"A", {});
    ExpectAccessible(0);

    EXPECT_EQ(manager.LoadAllFOC(0), 0);
}

TEST_F(FocLoad, OfEverythingGoesOnAfterAKindThatFailed) {
    Register(u"A", u"a");
    std::filesystem::create_directories(SupportFolder() / "a/x.xml");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"A", {u"1"});
    ExpectFetch(u"1", Stored(u"x.xml", "x"));
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"K", {});

    EXPECT_EQ(manager.LoadAllFOC(0), 0);
    EXPECT_EQ(log.Lines(), Lines{Failure(10334, u"x.xml")});
}

TEST_F(FocLoad, OfEverythingAsksForTheConnectionAlsoBeforeAKindThatItSkips) {
    ForgetKinds();
    Register(u"OFF", u"off", 1);
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(0);

    EXPECT_EQ(manager.LoadAllFOC(0), 0);
}

TEST_F(FocLoad, OfEverythingSkipsAnOptionalKindThatIsNotSwitchedOn) {
    ForgetKinds();
    Register(u"OFF", u"off", 1);
    Register(u"ON", u"on", 1);
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"ON", {});

    EXPECT_EQ(manager.LoadAllFOC(0), 1);
    EXPECT_FALSE(std::filesystem::exists(SupportFolder() / "off"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FocLoad, OfEverythingGoesByTheRegistrysKeys) {
    ForgetKinds();
    manager.GetFOCMetadata()[u"KEY"] =
        boost::make_shared<CFOCMetadata>(u"OWN", 1, BaseFolderSupport, u"sub", u"", 1);
    workstation.WriteSettings("[kinds]\nenabled = OWN\n");
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"KEY", {});

    EXPECT_EQ(manager.LoadAllFOC(0), 1);
}
