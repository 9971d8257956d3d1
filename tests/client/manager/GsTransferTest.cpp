// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/ModuleConfiguration.h"
#include "client/manager/ManagerTest.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::Eq;
using testing::InSequence;
using testing::IsEmpty;
using testing::IsNull;
using testing::Return;
using testing::SetArgReferee;

namespace {

class GsTransfer : public ManagerTest {
protected:
    void ExpectLoading(const char16_t* name, const CString& xml, const std::vector<CString>& ids,
                       int answer = 1) {
        EXPECT_CALL(backend, LoadGS(_, IsEmpty(), TextIs(name)))
            .WillOnce(DoAll(SetArgReferee<0>(xml), SetArgReferee<1>(ids), Return(answer)));
    }
    void ExpectFetch(const char16_t* fileId, const File& file) {
        EXPECT_CALL(backend, GetRepositoryFile(TextIs(fileId))).WillOnce(Return(file));
    }
    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
    }
    std::filesystem::path LocalGs() const { return SupportFolder() / "GeneralSettings.xml"; }
};

} // namespace

TEST_F(GsTransfer, SendsTheTextAloneWithTheBuiltInFileManager) {
    EXPECT_CALL(backend, SaveGS(TextIs(u"<gs/>"), IsEmpty(), TextIs(u"name"))).WillOnce(Return(1));
    EXPECT_EQ(manager.SaveGS(u"<gs/>", u"name"), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(GsTransfer, HandsANullNameOnAsItIs) {
    EXPECT_CALL(backend, SaveGS(TextIs(u"<gs/>"), IsEmpty(), IsNull())).WillOnce(Return(1));
    EXPECT_EQ(manager.SaveGS(u"<gs/>", nullptr), 1);
}

TEST_F(GsTransfer, SendsTheFilesOfTheFileManager) {
    const auto fileManager = ReplaceFileManager(u"GS");
    const File file = Stored(u"a.xml", "a");
    const InSequence order;
    EXPECT_CALL(*fileManager, GetFiles(IsEmpty(), IsNull()))
        .WillOnce([&](RepositoryFiles& files, const char16_t*) { files.push_back(file); });
    EXPECT_CALL(backend, SaveGS(_, RepositoryFiles{file}, _)).WillOnce(Return(1));

    EXPECT_EQ(manager.SaveGS(u"<gs/>", u""), 1);
}

TEST_F(GsTransfer, SendsTheTextAloneWithoutAnyFileManager) {
    FileManagersOf(manager).clear();
    EXPECT_CALL(backend, SaveGS(_, IsEmpty(), _)).WillOnce(Return(1));
    EXPECT_EQ(manager.SaveGS(u"<gs/>", u""), 1);
}

TEST_F(GsTransfer, HasSentWhenTheStoragesResultIsAboveZero) {
    const std::pair<int, int> answers[] = {{1, 1}, {42, 1}, {0, 0}, {-1, 0}};
    for (const auto& [answer, result] : answers) {
        EXPECT_CALL(backend, SaveGS(_, _, _)).WillOnce(Return(answer));
        EXPECT_EQ(manager.SaveGS(u"<gs/>", u""), result);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(GsTransfer, FetchesTheTextAndHandsTheFilesToTheFileManager) {
    const auto fileManager = ReplaceFileManager(u"GS");
    const File a = Stored(u"a.xml", "a");
    const File b = Stored(u"b.xml", "b");
    const InSequence order;
    ExpectLoading(u"name", u"<gs/>", {u"1", u"2"});
    ExpectFetch(u"1", a);
    ExpectAccessible(1);
    ExpectFetch(u"2", b);
    ExpectAccessible(1);
    EXPECT_CALL(*fileManager, PutFiles(Eq(RepositoryFiles{a, b}), 0, IsNull()));

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u"name"), 1);
    EXPECT_EQ(xml, u"<gs/>");
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(GsTransfer, LeavesOutAFileThatCameBackEmpty) {
    const auto fileManager = ReplaceFileManager(u"GS");
    const File b = Stored(u"b.xml", "b");
    const InSequence order;
    ExpectLoading(u"", u"<gs/>", {u"gone", u"2"});
    ExpectFetch(u"gone", nullptr);
    ExpectAccessible(1);
    ExpectFetch(u"2", b);
    ExpectAccessible(1);
    EXPECT_CALL(*fileManager, PutFiles(Eq(RepositoryFiles{b}), 0, _));

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(GsTransfer, CallsTheFileManagerAlsoWhenNoFileIsStored) {
    const auto fileManager = ReplaceFileManager(u"GS");
    const InSequence order;
    ExpectLoading(u"", u"<gs/>", {});
    EXPECT_CALL(*fileManager, PutFiles(IsEmpty(), 0, _));

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 1);
}

TEST_F(GsTransfer, FetchesTheListedFilesAlsoForTheBuiltInFileManagerThatDropsThem) {
    const InSequence order;
    ExpectLoading(u"", u"<gs/>", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 1);
    EXPECT_FALSE(std::filesystem::exists(SupportFolder()));
}

TEST_F(GsTransfer, FetchesTheListedFilesAlsoWithoutAnyFileManager) {
    FileManagersOf(manager).clear();
    const InSequence order;
    ExpectLoading(u"", u"<gs/>", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(1);

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 1);
    EXPECT_EQ(xml, u"<gs/>");
}

TEST_F(GsTransfer, DropsTheFilesWhenTheConnectionIsLostAfterTheFirst) {
    const auto fileManager = ReplaceFileManager(u"GS");
    const InSequence order;
    ExpectLoading(u"", u"<gs/>", {u"1", u"2"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(0);

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(GsTransfer, KeepsInTheTextWhatAStorageLeftThatRefused) {
    const auto fileManager = ReplaceFileManager(u"GS");
    ExpectLoading(u"", u"half a te", {u"1"}, 0);

    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 0);
    EXPECT_EQ(xml, u"half a te");
}

TEST_F(GsTransfer, HandsTheStorageTheTextThatTheCallerHad) {
    EXPECT_CALL(backend, LoadGS(Eq(CString(u"before")), _, _)).WillOnce(Return(0));
    CString xml = u"before";
    EXPECT_EQ(manager.LoadGS(xml, u""), 0);
    EXPECT_EQ(xml, u"before");
}

TEST_F(GsTransfer, MakesTheDefaultGsTheLocalOne) {
    const InSequence order;
    EXPECT_CALL(backend, LoadGS(Eq(CString()), IsEmpty(), TextIs(u"")))
        .WillOnce(DoAll(SetArgReferee<0>(u"<gs>\u0160\u0111\u010d</gs>"), Return(1)));

    EXPECT_EQ(manager.SaveGSLocally(), 1);
    EXPECT_EQ(Read(LocalGs()), "<gs>\xC5\xA0\xC4\x91\xC4\x8D</gs>");
    EXPECT_EQ(ZEBGis::CModuleConfiguration::Instance()->GetCurrentGSXML(),
              u"<gs>\u0160\u0111\u010d</gs>");
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(GsTransfer, MakesAlsoAnEmptyTextTheLocalOne) {
    Write(LocalGs(), "<old/>");
    ExpectLoading(u"", u"", {});

    EXPECT_EQ(manager.SaveGSLocally(), 1);
    EXPECT_EQ(Read(LocalGs()), "");
}

TEST_F(GsTransfer, LeavesTheLocalGsWhenTheStorageRefuses) {
    Write(LocalGs(), "<old/>");
    ExpectLoading(u"", u"<half", {}, 0);

    EXPECT_EQ(manager.SaveGSLocally(), 0);
    EXPECT_EQ(Read(LocalGs()), "<old/>");
}

TEST_F(GsTransfer, LeavesTheLocalGsWhenTheConnectionIsLostAtAFile) {
    Write(LocalGs(), "<old/>");
    ExpectLoading(u"", u"<new/>", {u"1"});
    ExpectFetch(u"1", Stored(u"a.xml", "a"));
    ExpectAccessible(0);

    EXPECT_EQ(manager.SaveGSLocally(), 0);
    EXPECT_EQ(Read(LocalGs()), "<old/>");
}

TEST_F(GsTransfer, GivesZeroWhenTheLocalGsCannotBeWritten) {
    std::filesystem::create_directories(LocalGs());
    ExpectLoading(u"", u"<new/>", {});
    EXPECT_EQ(manager.SaveGSLocally(), 0);
}

TEST_F(GsTransfer, ListsTheStoragesGsAndGivesItsResultAsItIs) {
    for (const int answer : {0, 1, 42, -3}) {
        EXPECT_CALL(backend, GetAvailableGS(_))
            .WillOnce(
                DoAll(SetArgReferee<0>(std::vector<CString>{u"one", u"two"}), Return(answer)));
        std::vector<CString> names;
        EXPECT_EQ(manager.GetAvailableGS(names), answer);
        EXPECT_EQ(names, (std::vector<CString>{u"one", u"two"}));
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(GsTransfer, GivesTheStoragesAnswerToSeveralGsAsItIs) {
    for (const int answer : {0, 1, 42, -3}) {
        EXPECT_CALL(backend, IsMultipleGSSupported()).WillOnce(Return(answer));
        EXPECT_EQ(std::as_const(manager).IsMultipleGSSupported(), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(GsTransfer, FailsWhenABackendThrows) {
    EXPECT_CALL(backend, LoadGS(_, _, _)).WillOnce(testing::Throw(std::runtime_error("x")));
    CString xml;
    EXPECT_EQ(manager.LoadGS(xml, u""), 0);
}
