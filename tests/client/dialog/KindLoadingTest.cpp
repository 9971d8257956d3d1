// SPDX-License-Identifier: MIT
#include "client/dialog/rules/KindLoading.h"
#include "client/dialog/KindsTest.h"

using namespace Repository;
using testing::InSequence;

namespace {

class NCFPage : public KindsTest {
protected:
    NCFPage() {
        for (const char16_t* id : {u"A", u"B", u"C"})
            RegisterNCF(id, 10313);
    }
    // Of the registered kinds, with these check states.
    std::vector<KindRow<CNCFMetadata>> Rows(const std::vector<int>& checkStates) const {
        auto rows = page.Rows();
        for (std::size_t row = 0; row < checkStates.size(); ++row)
            rows.at(row).checkState = checkStates[row];
        return rows;
    }

    KindLoading<CNCFMetadata> page{manager};
};

class FOCPage : public KindsTest {
protected:
    FOCPage() {
        for (const char16_t* id : {u"A", u"B", u"C"})
            RegisterFOC(id, 10321);
    }
    std::vector<KindRow<CFOCMetadata>> Rows(const std::vector<int>& checkStates) const {
        auto rows = page.Rows();
        for (std::size_t row = 0; row < checkStates.size(); ++row)
            rows.at(row).checkState = checkStates[row];
        return rows;
    }

    KindLoading<CFOCMetadata> page{manager};
};

} // namespace

TEST_F(NCFPage, RowsAreTheKindsInTheRegistrysOrderByTheirMessagesNotTicked) {
    ForgetKinds();
    RegisterNCF(u"002", 10314);
    RegisterNCF(u"001", 10316);
    const auto rows = page.Rows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].kind, manager.GetNCFMetadataById(u"001").get());
    EXPECT_EQ(rows[0].name, Msg(10316));
    EXPECT_EQ(rows[0].checkState, 0);
    EXPECT_EQ(rows[1].kind, manager.GetNCFMetadataById(u"002").get());
    EXPECT_EQ(rows[1].name, Msg(10314));
}

TEST_F(NCFPage, AnOptionalKindHasARowOnlyWhenItIsSwitchedOn) {
    RegisterNCF(u"OFF", 10313, kOptional);
    RegisterNCF(u"ON", 10313, kOptional);
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const auto rows = page.Rows();
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[3].kind->GetId(), u"ON");
}

TEST_F(NCFPage, AnEmptyHandleInTheRegistryHasNoRow) {
    manager.GetNCFMetadata()[u"B"].reset();
    EXPECT_EQ(page.Rows().size(), 2U);
}

TEST_F(NCFPage, LoadSelectedAsksBeforeEachRowAndAfterEachLoad) {
    const InSequence order;
    ExpectAccessible(1);
    ExpectLoading(4, u"A");
    ExpectAccessible(1);
    ExpectAccessible(1); // before the row without a tick
    ExpectAccessible(1);
    ExpectLoading(4, u"C");
    ExpectAccessible(1);
    page.LoadSelected(Rows({1, 0, 1}));
    EXPECT_EQ(log.Lines(), Lines{}); // what the manager has to tell, it tells itself
}

TEST_F(NCFPage, LoadSelectedDoesNothingWhereTheRepositoryIsNotAccessible) {
    ExpectAccessible(0);
    page.LoadSelected(Rows({1, 1, 1}));
}

TEST_F(NCFPage, LoadSelectedStopsAfterTheLoadWithWhichTheRepositoryWentAway) {
    const InSequence order;
    ExpectAccessible(1);
    ExpectLoading(4, u"A");
    ExpectAccessible(0);
    page.LoadSelected(Rows({1, 1, 1}));
}

TEST_F(NCFPage, LoadSelectedStopsBeforeTheRowAtWhichTheRepositoryIsGone) {
    const InSequence order;
    ExpectAccessible(1);
    ExpectLoading(4, u"A");
    ExpectAccessible(1);
    ExpectAccessible(0);
    page.LoadSelected(Rows({1, 1, 1}));
}

TEST_F(NCFPage, AnyCheckStateButNoneIsATick) {
    const InSequence order;
    for (const char16_t* id : {u"A", u"B", u"C"}) {
        ExpectAccessible(1);
        ExpectLoading(4, id);
        ExpectAccessible(1);
    }
    page.LoadSelected(Rows({1, 2, -1}));
}

TEST_F(NCFPage, LoadSelectedWithoutATickLoadsNothing) {
    EXPECT_CALL(backend, IsRepositoryAccessible()).Times(3).WillRepeatedly(testing::Return(1));
    page.LoadSelected(Rows({0, 0, 0}));
}

TEST_F(NCFPage, ATickedRowWithoutAKindIsPassedOver) {
    auto rows = Rows({1, 1, 0});
    rows[0].kind = nullptr;
    const InSequence order;
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectLoading(4, u"B");
    ExpectAccessible(1);
    ExpectAccessible(1);
    page.LoadSelected(rows);
}

TEST_F(NCFPage, AnOptionalKindThatIsSwitchedOffIsNeverLoaded) {
    ForgetKinds();
    RegisterNCF(u"OFF", 10313, kOptional);
    page.LoadSelected(Rows({})); // not even the repository is asked for
}

TEST_F(NCFPage, LoadAllLoadsEveryKindWhereTheRepositoryIsAccessible) {
    const InSequence order;
    ExpectAccessible(1); // the page
    ExpectAccessible(1); // the manager
    for (const char16_t* id : {u"A", u"B", u"C"}) {
        ExpectLoading(4, id);
        ExpectAccessible(1);
    }
    page.LoadAll();
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NCFPage, LoadAllDoesNothingAndSaysNothingWhereTheRepositoryIsNotAccessible) {
    ExpectAccessible(0);
    page.LoadAll();
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(NCFPage, TracesItsTwoButtons) {
    page.LoadSelected({});
    EXPECT_EQ(trace.Lines(), TraceOf("DlgTabNCF", "CDlgTabNCF::OnBnClickedBtnLoadSelected"));
}

TEST_F(NCFPage, TracesLoadAllAlsoWhereItDoesNothing) {
    ExpectAccessible(0);
    page.LoadAll();
    EXPECT_EQ(trace.Lines(), TraceOf("DlgTabNCF", "CDlgTabNCF::OnBnClickedBtnLoadall"));
}

TEST_F(FOCPage, RowsAreTheKindsInTheRegistrysOrderByTheirMessagesNotTicked) {
    ForgetKinds();
    RegisterFOC(u"002", 10324);
    RegisterFOC(u"001", 10328);
    const auto rows = page.Rows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].kind, manager.GetFOCMetadataById(u"001").get());
    EXPECT_EQ(rows[0].name, Msg(10328));
    EXPECT_EQ(rows[0].checkState, 0);
    EXPECT_EQ(rows[1].name, Msg(10324));
}

TEST_F(FOCPage, AnOptionalKindHasARowOnlyWhenItIsSwitchedOn) {
    RegisterFOC(u"OFF", 10321, kOptional);
    RegisterFOC(u"ON", 10321, kOptional);
    workstation.WriteSettings("[kinds]\nenabled = ON\n");
    const auto rows = page.Rows();
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[3].kind->GetId(), u"ON");
}

TEST_F(FOCPage, LoadSelectedAsksAfterEachLoadAlone) {
    const InSequence order;
    ExpectLoading(5, u"A"); // kept: the page of drawings asks first
    ExpectAccessible(1);
    ExpectLoading(5, u"C");
    ExpectAccessible(1);
    page.LoadSelected(Rows({1, 0, 1}));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FOCPage, LoadSelectedLoadsTheDrawingsThatAKindNeedsToo) {
    RegisterNCF(u"N", 10313);
    manager.GetFOCMetadataById(u"A")->GetDependentNCFs() = {u"N"};
    const InSequence order;
    ExpectLoading(5, u"A");
    ExpectLoading(4, u"N");
    ExpectAccessible(1);
    page.LoadSelected(Rows({1, 0, 0}));
}

TEST_F(FOCPage, LoadSelectedTriesTheFirstKindAlsoWhereTheRepositoryIsNotAccessible) {
    const InSequence order;
    ExpectLoading(5, u"B");
    ExpectAccessible(0);
    page.LoadSelected(Rows({0, 1, 1}));
}

TEST_F(FOCPage, AnyCheckStateButNoneIsATick) {
    const InSequence order;
    for (const char16_t* id : {u"A", u"B", u"C"}) {
        ExpectLoading(5, id);
        ExpectAccessible(1);
    }
    page.LoadSelected(Rows({1, 2, -1}));
}

TEST_F(FOCPage, LoadSelectedWithoutATickDoesNothing) {
    page.LoadSelected(Rows({0, 0, 0})); // not even the repository is asked for
}

TEST_F(FOCPage, ATickedRowWithoutAKindIsPassedOver) {
    auto rows = Rows({1, 1, 0});
    rows[0].kind = nullptr;
    const InSequence order;
    ExpectLoading(5, u"B");
    ExpectAccessible(1);
    page.LoadSelected(rows);
}

TEST_F(FOCPage, LoadAllLoadsEveryKindWhereTheRepositoryIsAccessible) {
    const InSequence order;
    ExpectAccessible(1); // the page
    ExpectAccessible(1); // the manager
    for (const char16_t* id : {u"A", u"B", u"C"}) {
        ExpectAccessible(1);
        ExpectLoading(5, id);
    }
    page.LoadAll();
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FOCPage, LoadAllDoesNothingAndSaysNothingWhereTheRepositoryIsNotAccessible) {
    ExpectAccessible(0);
    page.LoadAll();
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(FOCPage, TracesItsTwoButtons) {
    page.LoadSelected({});
    EXPECT_EQ(trace.Lines(), TraceOf("DlgTabFOC", "CDlgTabFOC::OnBnClickedBtnLoadSelected"));
}

TEST_F(FOCPage, TracesLoadAllAlsoWhereItDoesNothing) {
    ExpectAccessible(0);
    page.LoadAll();
    EXPECT_EQ(trace.Lines(), TraceOf("DlgTabFOC", "CDlgTabFOC::OnBnClickedBtnLoadall"));
}
