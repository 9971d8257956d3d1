// SPDX-License-Identifier: MIT
#include "client/dialog/rules/CatalogueLoading.h"
#include "client/manager/CatalogueTransferTest.h"

using namespace Repository;

namespace {

class CataloguePage : public CatalogueTransferTest {
protected:
    CataloguePage() {
        DeclareCatalogues(workstation,
                          {Declared(u"A"), Declared(u"B"), Declared(u"C"), Declared(u"D")});
    }
    static std::vector<CatalogueRow> Rows(const std::vector<int>& checkStates) {
        auto rows = VisibleCatalogues();
        for (std::size_t row = 0; row < checkStates.size(); ++row)
            rows.at(row).checkState = checkStates[row];
        return rows;
    }
    static WorkspaceLines::Line Loaded(const CString& name) {
        return {1, Msg(10372) + u": '" + name + u"'"};
    }
};

} // namespace

TEST_F(CataloguePage, LoadSelectedLoadsTheRowsWithExactlyOneTick) {
    NetIs({Record(u"x")});
    LoadSelectedCatalogues(manager, Rows({0, 1, 2, -1}));
    EXPECT_EQ(log.Lines(), Lines{Loaded(u"Name of B")});
    EXPECT_EQ(SavedOutline(u"B"), u"x");
    EXPECT_EQ(SavedOutline(u"A"), u"");
}

TEST_F(CataloguePage, LoadSelectedWithoutATickLoadsNothingAndSaysNothing) {
    NetIs({Record(u"x")});
    LoadSelectedCatalogues(manager, Rows({0, 0, 0, 0}));
    EXPECT_EQ(log.Lines(), Lines{});
    EXPECT_EQ(SavedOutline(u"A"), u"");
}

TEST_F(CataloguePage, LoadAllLoadsEveryRow) {
    NetIs({Record(u"x")});
    LoadAllCatalogues(manager, Rows({0, 1, 2, -1}));
    EXPECT_EQ(log.Lines().size(), 4U);
    EXPECT_EQ(SavedOutline(u"D"), u"x");
}

TEST_F(CataloguePage, LoadAllOfNoRowsShowsAndHidesTheProgressBar) {
    ExpectAccessible(1);
    LoadAllCatalogues(manager, {});
    EXPECT_THAT(steps.Take(), testing::ElementsAre(Loading(0), u"hidden"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(CataloguePage, BothButtonsDoNothingWhereTheRepositoryIsNotAccessible) {
    ExpectAccessible(0);
    LoadSelectedCatalogues(manager, Rows({1, 1, 1, 1}));
    testing::Mock::VerifyAndClearExpectations(&backend);
    ExpectAccessible(0);
    LoadAllCatalogues(manager, Rows({}));
    EXPECT_EQ(log.Lines(), Lines{});
    EXPECT_THAT(steps.Take(), testing::IsEmpty());
    EXPECT_THAT(trace.Lines(), testing::IsEmpty());
}

TEST_F(CataloguePage, WhenTheRepositoryGoesAwayTheProgressBarStays) {
    NetIs({Record(u"x")});
    goneAfter = 1 + 3 + 3 + 1; // the button, two rows with an item each, the third row
    LoadAllCatalogues(manager, Rows({}));
    EXPECT_EQ(log.Lines(), (Lines{Loaded(u"Name of A"), Loaded(u"Name of B")}));
    ASSERT_TRUE(steps.Shown());
    EXPECT_EQ(steps.Shown()->position, 2);
}
