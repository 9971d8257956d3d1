// SPDX-License-Identifier: MIT
#include "client/dialog/windows/DialogUser.h"

#include "platform/host/DocumentManager.h"
#include "platform/os/Module.h"

#include <QApplication>
#include <QTimer>
#include <gmock/gmock.h>

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::Return;

namespace {

class MainWindow : public DialogUser {
protected:
    static std::vector<CString> TabsOfEverybody() {
        return {Msg(381), Msg(350), Msg(249), Msg(10379)};
    }
    static std::vector<CString> TabsOfAdministrators() {
        auto tabs = TabsOfEverybody();
        tabs.push_back(Msg(10380));
        return tabs;
    }
    static constexpr int kClose = 1;
    static constexpr int kConnection = 100;
    static constexpr int kLoadEverything = 111;
};

} // namespace

TEST_F(MainWindow, HasFourTabsInTheirOrderForAUserWhoIsNoAdministrator) {
    Open([this] {
        EXPECT_EQ(TabCaptions(), TabsOfEverybody());
        EXPECT_EQ(Tabs()->currentIndex(), 0);
    });
}

TEST_F(MainWindow, HasTheAdministrationTabAsTheFifthForAnAdministrator) {
    isAdmin = 1;
    Open([this] { EXPECT_EQ(TabCaptions(), TabsOfAdministrators()); });
}

TEST_F(MainWindow, OpeningIsTracedWithTheAdministratorsMode) {
    const std::string function = "CDlgNetworkRepositoryConfiguration::OnInitDialog";
    const std::string start = "DlgNetworkRepositoryConfiguration " + function + " ";
    const std::string enters = start + "Entering function , " + function;
    const std::string exits = start + "Exiting function , " + function;
    Open([] {});
    EXPECT_THAT(trace.Lines(), ElementsAre(enters, start + "Admin mode OFF", exits));
    isAdmin = 1;
    Open([] {});
    EXPECT_THAT(trace.Lines(), ElementsAre(_, _, _, enters, start + "Admin mode ON", exits));
}

TEST_F(MainWindow, AsksForTheConnectionParametersBeforeTheRights) {
    testing::Mock::VerifyAndClearExpectations(&backend);
    const InSequence order;
    EXPECT_CALL(backend, HasConnectionParameters()).WillOnce(Return(1));
    EXPECT_CALL(backend, AmIAdmin()).WillOnce(Return(0));
    Open([] {});
}

TEST_F(MainWindow, WithoutConnectionParametersTheirButtonAloneIsDisabled) {
    hasConnectionParameters = 0;
    Open([] {
        EXPECT_FALSE(Control<QWidget>(Window(), kConnection)->isEnabled());
        EXPECT_TRUE(Control<QWidget>(Window(), kClose)->isEnabled());
        EXPECT_TRUE(Control<QWidget>(Window(), kLoadEverything)->isEnabled());
        Click(Window(), kConnection); // nothing is edited
    });
}

TEST_F(MainWindow, CloseEndsItWithOne) {
    EXPECT_EQ(Open([] { Click(Window(), kClose); }), 1);
}

TEST_F(MainWindow, EnterInAListPressesCloseTheDefaultButton) {
    EXPECT_EQ(Open([this] {
                  auto* const list = Control<QTreeView>(Page(NCF), 113);
                  list->setFocus();
                  QTest::keyClick(list, Qt::Key_Return);
              }),
              1);
}

TEST_F(MainWindow, EscapeClosesItFromEveryPage) {
    for (const Tab tab : {GS, Catalogues, FOC, NCF})
        EXPECT_EQ(Open([this, tab] { QTest::keyClick(Page(tab), Qt::Key_Escape); }), 2);
}

TEST_F(MainWindow, ThePagesStartAnewWithEachOpening) {
    RegisterSomeOfEach();
    Open([this] { Click(Page(NCF), 117); });
    Open(
        [this] { EXPECT_THAT(TicksOf(Control<QTreeView>(Page(NCF), 113)), ElementsAre(0, 0, 0)); });
}

TEST_F(MainWindow, ThePagesKeepTheirTicksWhileTheUserTurnsThem) {
    RegisterSomeOfEach();
    Open([this] {
        Click(Page(NCF), 117);
        Page(GS);
        EXPECT_THAT(TicksOf(Control<QTreeView>(Page(NCF), 113)), ElementsAre(2, 2, 2));
    });
}

TEST_F(MainWindow, LoadEverythingRunsThePagesActionsInTheFixedOrderAndNotTheAdministrations) {
    isAdmin = 1;
    RegisterFOC(u"F", 10321);
    RegisterNCF(u"N", 10313);
    DeclareCatalogues(workstation, {Declared(u"C")});
    bool isWaiting = false;
    {
        const InSequence order;
        ExpectLoading(5, u"F");
        ExpectLoading(4, u"N");
        EXPECT_CALL(backend, LoadGS(_, _, _)).WillOnce(Return(0));
        EXPECT_CALL(backend, GetChildCatalogItems(TextIs(u"C"), _, _, _)).WillOnce([&] {
            isWaiting = QApplication::overrideCursor() != nullptr;
            return 1;
        });
    }
    Open([] { Click(Window(), kLoadEverything); });
    EXPECT_TRUE(isWaiting);
    EXPECT_FALSE(QApplication::overrideCursor());
    EXPECT_EQ(log.Lines(), (Lines{NotDone(10371), {1, Msg(10372) + u": 'Name of C'"}}));
}

TEST_F(MainWindow, LoadEverythingIsTracedWithItsMarkers) {
    isAccessible = 0;
    Open([] { Click(Window(), kLoadEverything); });
    std::vector<std::string> words;
    for (const std::string& line : trace.Lines())
        words.push_back(line.substr(line.rfind(' ') + 1));
    EXPECT_THAT(
        words,
        ElementsAre(_, _, _, "CDlgNetworkRepositoryConfiguration::OnBnClickedButtonLoadall",
                    "CDlgTabFOC::OnBnClickedBtnLoadall", "CDlgTabFOC::OnBnClickedBtnLoadall",
                    "Marker", "CDlgTabNCF::OnBnClickedBtnLoadall",
                    "CDlgTabNCF::OnBnClickedBtnLoadall", "Marker",
                    "CDlgTabGS::OnBnClickedBtnLoadall", "CDlgTabGS::OnBnClickedBtnLoadall",
                    "Marker", "CDlgNetworkRepositoryConfiguration::OnBnClickedButtonLoadall"));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(MainWindow, TheConnectionIsEditedAndAppliedAndTheTabsFollowTheNewRights) {
    const InSequence order;
    for (const int rights : {1, 1, 0, 0}) {
        EXPECT_CALL(backend, EditConnectionParameters()).WillOnce(Return(0));
        EXPECT_CALL(backend, ApplyConnectionParameters()).WillOnce([this, rights] {
            isAdmin = rights;
            return 0;
        });
    }
    Open([this] {
        Click(Window(), kConnection);
        EXPECT_EQ(TabCaptions(), TabsOfAdministrators());
        Click(Window(), kConnection);
        EXPECT_EQ(TabCaptions(), TabsOfAdministrators());
        Page(Admin);
        Click(Window(), kConnection);
        EXPECT_EQ(TabCaptions(), TabsOfEverybody());
        Click(Window(), kConnection);
        EXPECT_EQ(TabCaptions(), TabsOfEverybody());
    });
    const std::string line = "DlgNetworkRepositoryConfiguration "
                             "CDlgNetworkRepositoryConfiguration::OnBnClickedButtonConnection ";
    EXPECT_THAT(trace.Lines(), testing::Contains(line + "Admin mode ON").Times(2));
    EXPECT_THAT(trace.Lines(), testing::Contains(line + "Admin mode OFF").Times(2));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(MainWindow, AdministrationThatComesBackCanBeUsed) {
    isAdmin = 1;
    EXPECT_CALL(backend, EditConnectionParameters()).Times(2);
    EXPECT_CALL(backend, ApplyConnectionParameters())
        .WillOnce([this] { return isAdmin = 0; })
        .WillOnce([this] { return isAdmin = 1; });
    Open([this] {
        Click(Window(), kConnection);
        Click(Window(), kConnection);
        Click(Page(Admin), 103);
    });
    EXPECT_EQ(log.Lines().back(), NotDone(10374));
}

TEST_F(MainWindow, IsShownByTheManagerThroughItsModule) {
    workstation.Add(ZEBX_DIALOG_MODULE, "ZEBXRepositoryClientDialog.arx");
    bool wasShown = false;
    QTimer::singleShot(0, [&] {
        wasShown = Window() && Window()->isVisible();
        EXPECT_TRUE(Platform::DocumentManager::Instance()->IsDocumentLocked());
        Click(Window(), kClose);
    });
    manager.ShowConfigurationDialog();
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(Platform::DocumentManager::Instance()->IsDocumentLocked());
    EXPECT_EQ(log.Lines(), Lines{});
}
