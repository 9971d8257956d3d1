// SPDX-License-Identifier: MIT
#include "client/dialog/rules/Sending.h"
#include "client/dialog/KindsTest.h"
#include "client/manager/LocalCatalogues.h"
#include "platform/text/Fill.h"
#include "platform/text/Utf8.h"

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsNull;
using testing::Return;

namespace {

class AdminPage : public KindsTest {
protected:
    template<class What>
    static std::vector<CString> TextsOf(const SendEntries<What>& entries) {
        std::vector<CString> texts;
        for (const auto& entry : entries)
            texts.push_back(entry.text);
        return texts;
    }
    static CString ForAll(int number) { return u"<" + Msg(number) + u">"; }

    void ExpectItem(const char16_t* reference, const char16_t* id, int answer = 1) {
        EXPECT_CALL(backend, AddCatalogItem(testing::Truly([=](const auto& item) {
                        return item->GetCatalogueTag() == reference && item->GetCatalogueId() == id;
                    })))
            .WillOnce(Return(answer));
    }
    static WorkspaceLines::Line Sent(const CString& name) { return {1, Msg(10714) + u" " + name}; }
    static WorkspaceLines::Line NotSent(const CString& name) {
        return {4, Msg(10715) + u" " + name};
    }
    static WorkspaceLines::Line KindNotSent(int msgNum) { return Failure(10332, Msg(msgNum)); }

    Sending sending{manager};
};

} // namespace

TEST_F(AdminPage, ListsEveryCatalogueThatIsNotHiddenBehindTheEntryForAll) {
    CatalogueDeclaration hidden = Declared(u"H");
    hidden.hidden = true;
    DeclareCatalogues(workstation, {Declared(u"Z"), hidden, Declared(u"A")});
    const auto entries = sending.Catalogues();
    EXPECT_THAT(TextsOf(entries), ElementsAre(ForAll(10376), u"Name of Z", u"Name of A"));
    EXPECT_FALSE(entries[0].what);
    EXPECT_EQ(entries[1].what->GetCatalogReference(), u"Z");
    EXPECT_EQ(entries[2].what->GetCatalogReference(), u"A");
}

TEST_F(AdminPage, ListsTheKindsThatAreNotOptionalOrSwitchedOnBehindTheEntryForAll) {
    RegisterNCF(u"002", 10314);
    RegisterNCF(u"001", 10316);
    RegisterNCF(u"OFF", 10313, kOptional);
    RegisterNCF(u"ON", 10315, kOptional);
    RegisterFOC(u"002", 10324);
    RegisterFOC(u"001", 10328);
    RegisterFOC(u"OFF", 10321, kOptional);
    RegisterFOC(u"ON", 10325, kOptional);
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const auto ncf = sending.NCFKinds();
    EXPECT_THAT(TextsOf(ncf), ElementsAre(ForAll(10029), Msg(10316), Msg(10314), Msg(10315)));
    EXPECT_FALSE(ncf[0].what);
    EXPECT_EQ(ncf[1].what, manager.GetNCFMetadataById(u"001").get());
    const auto foc = sending.FOCKinds();
    EXPECT_THAT(TextsOf(foc), ElementsAre(ForAll(10375), Msg(10328), Msg(10324), Msg(10325)));
    EXPECT_FALSE(foc[0].what);
    EXPECT_EQ(foc[1].what, manager.GetFOCMetadataById(u"001").get());
}

TEST_F(AdminPage, SendsTheLocalGeneralSettingsUnderNoName) {
    Write(SupportFolder() / "GeneralSettings.xml", "<gs/>");
    EXPECT_CALL(backend, SaveGS(TextIs(u"<gs/>"), _, IsNull())).WillOnce(Return(1));
    sending.SendGS();
    EXPECT_EQ(log.Lines(), Lines{Done(10373)});
}

TEST_F(AdminPage, SendingGeneralSettingsHasSucceededOnlyWithAResultAboveZero) {
    Write(SupportFolder() / "GeneralSettings.xml", "<gs/>");
    EXPECT_CALL(backend, SaveGS(_, _, _)).WillOnce(Return(0)).WillOnce(Return(-1));
    sending.SendGS();
    sending.SendGS();
    EXPECT_EQ(log.Lines(), (Lines{NotDone(10374), NotDone(10374)}));
}

TEST_F(AdminPage, AWorkstationWithoutGeneralSettingsSendsNoneAndSaysWhereTheyWouldBe) {
    sending.SendGS();
    const CString folder = Platform::FromUtf8(SupportFolder().string());
    EXPECT_EQ(log.Lines(), (Lines{{4, Platform::Fill(Msg(22009), {folder})}, NotDone(10374)}));
}

TEST_F(AdminPage, SendsOneKindOfDrawings) {
    RegisterNCF(u"A", 10313);
    RegisterNCF(u"B", 10314);
    Write(SupportFolder() / "ncf/b.dwg", "b");
    const InSequence order;
    ExpectAccessible(1);
    ExpectSending(4, u"B", 1);
    ExpectAccessible(1);
    EXPECT_CALL(backend, AddRepositoryFiles(_)).WillOnce(Return(1));
    sending.SendNCF(manager.GetNCFMetadataById(u"B").get());
    EXPECT_EQ(log.Lines(), Lines{Done(10712)});
}

TEST_F(AdminPage, SaysThatAKindOfDrawingsWasNotSent) {
    RegisterNCF(u"A", 10313);
    const InSequence order;
    ExpectAccessible(1);
    ExpectSending(4, u"A", 0);
    sending.SendNCF(manager.GetNCFMetadataById(u"A").get());
    EXPECT_EQ(log.Lines(), Lines{NotDone(10713)});
}

TEST_F(AdminPage, SendsEveryKindOfDrawingsWithTheEntryForAll) {
    RegisterNCF(u"A", 10313);
    RegisterNCF(u"B", 10314);
    const InSequence order;
    ExpectAccessible(1);
    for (const char16_t* id : {u"A", u"B"}) {
        ExpectAccessible(1);
        ExpectSending(4, id, 0);
        ExpectAccessible(1);
    }
    sending.SendNCF(nullptr);
    EXPECT_EQ(log.Lines(), (Lines{KindNotSent(10313), KindNotSent(10314), NotDone(10713)}));
}

TEST_F(AdminPage, SendsOneKindOfConfigurationFiles) {
    RegisterFOC(u"A", 10321);
    RegisterFOC(u"B", 10324);
    const InSequence order;
    ExpectSending(5, u"B", 1);
    ExpectAccessible(1);
    sending.SendFOC(manager.GetFOCMetadataById(u"B").get());
    EXPECT_EQ(log.Lines(), Lines{Done(10712)});
}

TEST_F(AdminPage, SaysThatAKindOfConfigurationFilesWasNotSent) {
    RegisterFOC(u"A", 10321);
    const InSequence order;
    ExpectSending(5, u"A", 1);
    ExpectAccessible(0);
    sending.SendFOC(manager.GetFOCMetadataById(u"A").get());
    EXPECT_EQ(log.Lines(), Lines{NotDone(10713)});
}

TEST_F(AdminPage, SendsEveryKindOfConfigurationFilesWithTheEntryForAll) {
    RegisterFOC(u"A", 10321);
    RegisterFOC(u"B", 10324);
    const InSequence order;
    for (const char16_t* id : {u"A", u"B"}) {
        ExpectSending(5, id, 1);
        ExpectAccessible(1);
    }
    sending.SendFOC(nullptr);
    EXPECT_EQ(log.Lines(), Lines{Done(10712)});
}

TEST_F(AdminPage, TellsOfALocalFileThatCouldNotBeReadBeforeTheOutcome) {
    RegisterNCF(u"A", 10313);
    const auto huge = SupportFolder() / "ncf/huge.dwg";
    Write(huge, "");
    std::filesystem::resize_file(huge, std::uintmax_t{5} << 30); // takes no space
    Write(SupportFolder() / "ncf/good.dwg", "good");
    const InSequence order;
    ExpectAccessible(1);
    ExpectSending(4, u"A", 1);
    ExpectAccessible(1);
    EXPECT_CALL(backend, AddRepositoryFiles(testing::SizeIs(1))).WillOnce(Return(1));
    sending.SendNCF(manager.GetNCFMetadataById(u"A").get());
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].first, 4);
    EXPECT_NE(lines[0].second.find(Platform::FromUtf8(huge.string())), CString::npos);
    EXPECT_EQ(lines[1], Done(10712));
}

TEST_F(AdminPage, SendsTheChosenCatalogueAlone) {
    DeclareCatalogues(workstation, {Declared(u"A"), Declared(u"B")});
    MakeCatalogue(u"B", {Leaf(u"x", u"x")});
    const auto entries = sending.Catalogues();
    const InSequence order;
    ExpectItem(u"B", u"x");
    ExpectAccessible(1);
    sending.SendCatalogues(entries[2].what);
    EXPECT_EQ(log.Lines(), Lines{Sent(u"Name of B")});
}

TEST_F(AdminPage, SendsEveryCatalogueOfTheListWithTheEntryForAllAndALineEach) {
    CatalogueDeclaration hidden = Declared(u"H");
    hidden.hidden = true;
    DeclareCatalogues(workstation, {Declared(u"A"), hidden, Declared(u"B"), Declared(u"C")});
    for (const char16_t* reference : {u"A", u"H", u"B"})
        MakeCatalogue(reference, {Leaf(u"x", u"x")});
    sending.Catalogues();
    const InSequence order;
    ExpectItem(u"A", u"x", 0);
    ExpectAccessible(1);
    ExpectItem(u"B", u"x");
    ExpectAccessible(1);
    sending.SendCatalogues(nullptr);
    EXPECT_EQ(log.Lines(), (Lines{NotSent(u"Name of A"), Sent(u"Name of B"), Sent(u"Name of C")}));
}

TEST_F(AdminPage, ACatalogueStopsWhereTheRepositoryWentAwayAndTheNextHasItsLineToo) {
    DeclareCatalogues(workstation, {Declared(u"A"), Declared(u"B")});
    MakeCatalogue(u"A", {Leaf(u"x", u"x"), Leaf(u"y", u"y")});
    MakeCatalogue(u"B", {Leaf(u"z", u"z")});
    sending.Catalogues();
    const InSequence order;
    ExpectItem(u"A", u"x");
    ExpectAccessible(0);
    ExpectItem(u"B", u"z", 0);
    ExpectAccessible(0);
    sending.SendCatalogues(nullptr);
    EXPECT_EQ(log.Lines(), (Lines{NotSent(u"Name of A"), NotSent(u"Name of B")}));
}

TEST_F(AdminPage, TracesTheWalkOfACatalogueAndNothingElse) {
    DeclareCatalogues(workstation, {Declared(u"A")});
    RegisterFOC(u"A", 10321);
    sending.Catalogues();
    sending.SendCatalogues(nullptr);
    const std::string scope = "DlgTabAdmin CDlgTabAdmin::SendCatalogToNetRepo ";
    EXPECT_THAT(trace.Lines(),
                ElementsAre(scope + "Entering function , CDlgTabAdmin::SendCatalogToNetRepo",
                            scope + "strRefCat = 'A'",
                            scope + "Exiting function , CDlgTabAdmin::SendCatalogToNetRepo"));
}
