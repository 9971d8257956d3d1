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

class NcfLoad : public ManagerTest {
protected:
    NcfLoad() {
        ForgetKinds();
        Register(u"K", u"sub");
    }

    void Register(const char16_t* id, const char16_t* subfolder, int optional = 0,
                  enmBaseFolder baseFolder = BaseFolderSupport) {
        manager.RegisterNCFMetadata(boost::make_shared<CNCFMetadata>(
            id, 10313, baseFolder, subfolder, NCFTypePattern, u"*.dwg", optional));
    }

    // The backend lists these files of the kind.
    void ExpectListing(const char16_t* id, const std::vector<CString>& fileIds) {
        EXPECT_CALL(backend, GetRepositoryFileIds(4, TextIs(id), testing::IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<2>(fileIds), Return(1)));
    }
    void ExpectFetch(const char16_t* fileId, const File& file) {
        EXPECT_CALL(backend, GetRepositoryFile(TextIs(fileId))).WillOnce(Return(file));
    }
    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
    }
};

} // namespace

TEST_F(NcfLoad, OfAnUnknownKindIsNoErrorAndTouchesNothing) {
    EXPECT_EQ(manager.LoadNCF(u"unknown"), 1);
    EXPECT_EQ(manager.LoadNCF(nullptr), 1);
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfLoad, WritesEveryStoredFileInTheOrderOfTheList) {
    const InSequence order;
    ExpectListing(u"K", {u"id of b", u"id of a"});
    ExpectFetch(u"id of b", Stored(u"b.dwg", "second letter"));
    ExpectAccessible(1);
    ExpectFetch(u"id of a", Stored(u"a.dwg", ""));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"K"), 1);

    EXPECT_EQ(Read(SupportFolder() / "sub/b.dwg"), "second letter");
    EXPECT_EQ(Read(SupportFolder() / "sub/a.dwg"), "");
    EXPECT_EQ(log.Lines(), (Lines{Success(u"b.dwg"), Success(u"a.dwg")}));
}

TEST_F(NcfLoad, WritesEveryByteAsItIs) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    ExpectListing(u"K", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", bytes));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"K"), 1);
    EXPECT_EQ(Read(SupportFolder() / "sub/a.dwg"), bytes);
}

TEST_F(NcfLoad, LeavesNothingOfALongerFileThatStoodThere) {
    Write(SupportFolder() / "sub/a.dwg", "something longer");
    ExpectListing(u"K", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", "short"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"K"), 1);
    EXPECT_EQ(Read(SupportFolder() / "sub/a.dwg"), "short");
}

TEST_F(NcfLoad, RemovesNoLocalFile) {
    Write(SupportFolder() / "sub/mine.dwg", "mine");
    ExpectListing(u"K", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"K"), 1);
    EXPECT_EQ(Read(SupportFolder() / "sub/mine.dwg"), "mine");
}

TEST_F(NcfLoad, WritesItsLinesAboutNothingButTheFile) {
    ExpectListing(u"K", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectAccessible(1);
    manager.LoadNCF(u"K");

    ASSERT_EQ(log.Messages().size(), 1U);
    const auto& message = log.Messages().front();
    EXPECT_EQ(message.entityType, 0);
    EXPECT_EQ(message.name, u"");
    EXPECT_EQ(message.objectId, nullptr);
    EXPECT_EQ(message.selectionType, 0);
}

TEST_F(NcfLoad, CreatesEveryMissingFolderEvenWhenNothingIsStored) {
    Register(u"DEEP", u"a\\b\\c");
    ExpectListing(u"DEEP", {});

    EXPECT_EQ(manager.LoadNCF(u"DEEP"), 1);
    EXPECT_TRUE(std::filesystem::is_directory(SupportFolder() / "a/b/c"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfLoad, HasNothingToLoadWhenTheStorageRefusesToList) {
    EXPECT_CALL(backend, GetRepositoryFileIds(4, TextIs(u"K"), _))
        .WillOnce(DoAll(SetArgReferee<2>(std::vector<CString>{u"1"}), Return(0)));

    EXPECT_EQ(manager.LoadNCF(u"K"), 1);
    EXPECT_TRUE(std::filesystem::is_directory(SupportFolder() / "sub"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfLoad, WritesBelowTheInstallationFolderForBaseFolderZero) {
    Register(u"INSTALLED", u"sub", 0, BaseFolderInstall);
    ExpectListing(u"INSTALLED", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"INSTALLED"), 1);
    EXPECT_EQ(Read(workstation.Native() / "sub/a.dwg"), "a");
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
}

TEST_F(NcfLoad, WritesBelowTheSupportFolderForAnyOtherBaseFolder) {
    Register(u"SEVEN", u"sub", 0, static_cast<enmBaseFolder>(7));
    ExpectListing(u"SEVEN", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"SEVEN"), 1);
    EXPECT_EQ(Read(SupportFolder() / "sub/a.dwg"), "a");
}

TEST_F(NcfLoad, WritesIntoTheBaseFolderItselfWithoutASubfolder) {
    Register(u"FLAT", u"");
    ExpectListing(u"FLAT", {u"1"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"FLAT"), 1);
    EXPECT_EQ(Read(SupportFolder() / "a.dwg"), "a");
}

// LoadFOC writes the file in hand first: kept.
TEST_F(NcfLoad, DoesNotWriteTheFileInHandWhenTheConnectionIsLost) {
    const InSequence order;
    ExpectListing(u"K", {u"1", u"2"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectAccessible(0);

    EXPECT_EQ(manager.LoadNCF(u"K"), 0);
    EXPECT_TRUE(std::filesystem::is_empty(SupportFolder() / "sub"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfLoad, StopsWithoutALineWhenTheConnectionIsLostAtAnEmptyFile) {
    ExpectListing(u"K", {u"1"});
    ExpectFetch(u"1", nullptr);
    ExpectAccessible(0);

    EXPECT_EQ(manager.LoadNCF(u"K"), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfLoad, TellsOfAStoredFileThatCameBackEmptyByItsKindAndGoesOn) {
    const InSequence order;
    ExpectListing(u"K", {u"gone", u"2"});
    ExpectFetch(u"gone", nullptr);
    ExpectAccessible(1);
    ExpectFetch(u"2", Stored(u"b.dwg", "b"));
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadNCF(u"K"), 1);
    EXPECT_EQ(log.Lines(), (Lines{{4, u"K"}, Success(u"b.dwg")}));
}

TEST_F(NcfLoad, TriesEveryFileWhenOneCannotBeWritten) {
    std::filesystem::create_directories(SupportFolder() / "sub/b.dwg");
    ExpectListing(u"K", {u"1", u"2", u"3"});
    ExpectFetch(u"1", Stored(u"a.dwg", "a"));
    ExpectFetch(u"2", Stored(u"b.dwg", "b"));
    ExpectFetch(u"3", Stored(u"c.dwg", "c"));
    EXPECT_CALL(backend, IsRepositoryAccessible()).Times(3).WillRepeatedly(Return(1));

    EXPECT_EQ(manager.LoadNCF(u"K"), 0);

    EXPECT_EQ(Read(SupportFolder() / "sub/a.dwg"), "a");
    EXPECT_EQ(Read(SupportFolder() / "sub/c.dwg"), "c");
    EXPECT_EQ(log.Lines(), (Lines{Success(u"a.dwg"), Failure(10334, u"b.dwg"), Success(u"c.dwg")}));
}

TEST_F(NcfLoad, FailsWhenABackendThrows) {
    ExpectListing(u"K", {u"1"});
    EXPECT_CALL(backend, GetRepositoryFile(_)).WillOnce(testing::Throw(std::runtime_error("x")));
    EXPECT_EQ(manager.LoadNCF(u"K"), 0);
}

TEST_F(NcfLoad, OfEverythingGivesZeroAndAsksNothingElseWhenNotConnected) {
    ExpectAccessible(0);
    EXPECT_EQ(manager.LoadAllNCFs(), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NcfLoad, OfEverythingTakesTheKindsInOrderAndAsksForTheConnectionAfterEach) {
    Register(u"A", u"a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectListing(u"A", {});
    ExpectAccessible(1);
    ExpectListing(u"K", {});
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadAllNCFs(), 1);
}

TEST_F(NcfLoad, OfEverythingIsDoneWhenThereIsNoKind) {
    ForgetKinds();
    ExpectAccessible(1);
    EXPECT_EQ(manager.LoadAllNCFs(), 1);
}

TEST_F(NcfLoad, OfEverythingStopsWhenTheConnectionIsLostBetweenKinds) {
    Register(u"A", u"a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectListing(u"A", {});
    ExpectAccessible(0);

    EXPECT_EQ(manager.LoadAllNCFs(), 0);
}

TEST_F(NcfLoad, OfEverythingGoesOnAfterAKindThatFailed) {
    Register(u"A", u"a");
    std::filesystem::create_directories(SupportFolder() / "a/x.dwg");
    const InSequence order;
    ExpectAccessible(1);
    ExpectListing(u"A", {u"1"});
    ExpectFetch(u"1", Stored(u"x.dwg", "x"));
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectListing(u"K", {});
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadAllNCFs(), 0);
    EXPECT_EQ(log.Lines(), Lines{Failure(10334, u"x.dwg")});
}

TEST_F(NcfLoad, OfEverythingSkipsAnOptionalKindThatIsNotSwitchedOn) {
    ForgetKinds();
    Register(u"OFF", u"off", 1);
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadAllNCFs(), 1);
    EXPECT_EQ(log.Lines(), Lines{});
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
}

TEST_F(NcfLoad, OfEverythingTakesAnOptionalKindThatIsSwitchedOn) {
    ForgetKinds();
    Register(u"ON", u"on", 1);
    Register(u"OFF", u"off", 1);
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const InSequence order;
    ExpectAccessible(1);
    ExpectListing(u"ON", {});
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadAllNCFs(), 1);
}

TEST_F(NcfLoad, OfEverythingNeverSkipsAMandatoryKind) {
    workstation.WriteSettings("[kinds]\nenabled = something else\n");
    const InSequence order;
    ExpectAccessible(1);
    ExpectListing(u"K", {});
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadAllNCFs(), 1);
}

// The key names the kind to the storage, its own identifier asks the installation: kept.
TEST_F(NcfLoad, OfEverythingGoesByTheRegistrysKeys) {
    ForgetKinds();
    manager.GetNCFMetadata()[u"KEY"] = boost::make_shared<CNCFMetadata>(
        u"OWN", 10313, BaseFolderSupport, u"sub", NCFTypePattern, u"*.dwg", 1);
    workstation.WriteSettings("[kinds]\nenabled = OWN\n");
    const InSequence order;
    ExpectAccessible(1);
    ExpectListing(u"KEY", {});
    ExpectAccessible(1);

    EXPECT_EQ(manager.LoadAllNCFs(), 1);
}
