// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QTabBar>
#include <QTabWidget>
#include <gmock/gmock.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kMainControls[] = {
    {101, ControlClass::TabControl, nullptr, 7, 7, 200, 120},
    {kIdOk, ControlClass::DefaultPushButton, u"Close", 100, 150, 60, 14},
};
constexpr DialogTemplate kMainLook = {u"Tabs", 214, 170, kMainControls};
constexpr ControlTemplate kPageControls[] = {
    {114, ControlClass::CheckBox, u"Keep", 7, 7, 60, 14},
    {115, ControlClass::PushButton, u"Load", 7, 30, 60, 14},
};
constexpr DialogTemplate kPageLook = {u"", 200, 100, kPageControls};

class ATabDialog : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        main.Create();
        main.AddTab(0, first, u"First & best");
        main.AddTab(7, second, u"Second");
    }
    SamplePage first{kPageLook};
    SamplePage second{kPageLook};
    SampleTabDialog main{kMainLook, 101};
};

TEST_F(ATabDialog, HasThePagesInTheirOrder) {
    EXPECT_EQ(main.TabCount(), 2);
    EXPECT_EQ(main.TabCaption(0), u"First & best");
    EXPECT_EQ(main.TabCaption(1), u"Second");
    EXPECT_EQ(main.TabCaption(2), u"");
    EXPECT_TRUE(main.HasTab(second));
    EXPECT_EQ(main.SelectedTab(), 0);
    main.SelectTab(1);
    EXPECT_EQ(main.SelectedTab(), 1);
}

TEST_F(ATabDialog, TakesAPageOnce) {
    main.AddTab(0, first, u"Again");
    EXPECT_EQ(main.TabCount(), 2);
    EXPECT_EQ(main.TabCaption(0), u"First & best");
}

TEST_F(ATabDialog, APageThatWasTakenOutKeepsItsStateAndCanComeBack) {
    first.SetChecked(114, true);
    main.RemoveTab(first);
    main.RemoveTab(first);
    EXPECT_EQ(main.TabCount(), 1);
    EXPECT_FALSE(main.HasTab(first));
    EXPECT_TRUE(first.IsChecked(114));
    int opened = 0;
    first.onInit = [&opened] { ++opened; };
    main.AddTab(1, first, u"Back");
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(main.TabCaption(1), u"Back");
    EXPECT_TRUE(first.IsChecked(114));
}

TEST_F(ATabDialog, APageTellsItsClicksAndHandsOnEnterAndEscape) {
    main.Show();
    QWidget* const window = WindowTitled("Tabs");
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    const QWidget* const page = window->findChild<QTabWidget*>()->currentWidget();
    QTest::mouseClick(ControlOf(page, 115), Qt::LeftButton);
    EXPECT_THAT(first.clicked, ElementsAre(115));
    first.SetFocus(114);
    main.onClicked = [](int) {};
    QTest::keyClick(window->windowHandle(), Qt::Key_Return);
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    EXPECT_THAT(main.clicked, ElementsAre(kIdOk, kIdCancel));
    EXPECT_THAT(first.clicked, ElementsAre(115));
}

TEST_F(ATabDialog, APageCannotEndOrOpenByItself) {
    main.Show();
    first.EndDialog(3);
    first.Show();
    EXPECT_EQ(first.DoModal(), kIdCancel);
    EXPECT_TRUE(main.IsShown());
    EXPECT_EQ(main.TabCount(), 2);
}

TEST_F(ATabDialog, PagesAndDialogEndInAnyOrder) {
    auto inner = std::make_unique<SamplePage>(kPageLook);
    main.AddTab(0, *inner, u"Gone soon");
    main.Show();
    inner.reset();
    EXPECT_EQ(main.TabCount(), 2);
    EXPECT_EQ(WindowTitled("Tabs")->findChild<QTabBar*>()->count(), 2);
    {
        SampleTabDialog other(kMainLook, 101);
        SamplePage outlived(kPageLook);
        other.Create();
        other.AddTab(0, outlived, u"x");
    }
    auto early = std::make_unique<SampleTabDialog>(kMainLook, 101);
    SamplePage page(kPageLook);
    early->Create();
    early->AddTab(0, page, u"x");
    page.SetChecked(114, true);
    early.reset();
    EXPECT_TRUE(page.IsChecked(114));
}

TEST_F(ATabDialog, BeforeItsWindowIsMadeHasNoTabs) {
    SampleTabDialog notMade(kMainLook, 101);
    notMade.AddTab(0, first, u"x");
    EXPECT_EQ(notMade.TabCount(), 0);
    EXPECT_EQ(notMade.SelectedTab(), -1);
    EXPECT_TRUE(main.HasTab(first));
}

} // namespace
