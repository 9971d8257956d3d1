// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <gmock/gmock.h>
#include <stdexcept>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kControls[] = {
    {100, ControlClass::PushButton, u"Ask", 7, 7, 50, 14},
    {kIdOk, ControlClass::DefaultPushButton, u"Close", 7, 30, 50, 14},
};
constexpr DialogTemplate kLook = {u"Sample", 100, 60, kControls};
constexpr DialogTemplate kOtherLook = {u"Other", 100, 60, kControls};

void Click(const QString& title, int id) {
    QTest::mouseClick(ControlOf(WindowTitled(title), id), Qt::LeftButton);
}

class ADialog : public WindowTest {
protected:
    SampleDialog dialog{kLook};
};

TEST_F(ADialog, TellsWhichButtonWasPressedAndEndsWithTheResult) {
    Soon([] {
        Click("Sample", 100);
        Click("Sample", kIdOk);
    });
    dialog.onClicked = [this](int id) {
        if (id == kIdOk)
            dialog.EndDialog(7);
    };
    EXPECT_EQ(dialog.DoModal(), 7);
    EXPECT_THAT(dialog.clicked, ElementsAre(100, kIdOk));
    EXPECT_FALSE(dialog.IsShown());
}

TEST_F(ADialog, EndsByItselfForOkAndCancel) {
    Soon([] { Click("Sample", kIdOk); });
    EXPECT_EQ(dialog.DoModal(), kIdOk);
    Soon([] { WindowTitled("Sample")->close(); });
    EXPECT_EQ(dialog.DoModal(), kIdCancel);
    EXPECT_THAT(dialog.clicked, ElementsAre(kIdOk, kIdCancel));
}

TEST_F(ADialog, OpensOnceAndKeepsItsPlace) {
    int opened = 0;
    dialog.onInit = [&opened] { ++opened; };
    QPoint place;
    for (int i = 0; i < 2; ++i) {
        Soon([&place, i] {
            if (i == 0)
                WindowTitled("Sample")->move(123, 45);
            place = WindowTitled("Sample")->pos();
            Click("Sample", kIdOk);
        });
        dialog.DoModal();
    }
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(place, QPoint(123, 45));
}

TEST_F(ADialog, ThatIsEndedWhileItOpensIsNotShown) {
    dialog.onInit = [this] { dialog.EndDialog(5); };
    EXPECT_EQ(dialog.DoModal(), 5);
    Soon([] { Click("Sample", kIdOk); });
    EXPECT_EQ(dialog.DoModal(), kIdOk) << "the next time it is";
}

TEST_F(ADialog, OpenedByAHandlerTakesInputAndItsOpenerDoesNot) {
    SampleDialog inner(kOtherLook);
    dialog.onClicked = [&](int id) {
        if (id == kIdOk)
            return dialog.EndDialog(id);
        Soon([&] {
            Click("Sample", 100);
            QTest::mouseClick(WindowTitled("Sample")->windowHandle(), Qt::LeftButton, {},
                              ControlOf(WindowTitled("Sample"), 100)->geometry().center());
            WindowTitled("Sample")->close();
            EXPECT_THAT(dialog.clicked, ElementsAre(100)) << "dropped";
            Click("Other", 100);
            EXPECT_THAT(inner.clicked, ElementsAre(100));
            Click("Other", kIdOk);
        });
        inner.onClicked = [&](int innerId) {
            if (innerId == kIdOk)
                inner.EndDialog(3);
        };
        EXPECT_EQ(inner.DoModal(), 3);
        EXPECT_TRUE(dialog.IsShown());
    };
    Soon([] {
        Click("Sample", 100);
        Click("Sample", kIdOk);
    });
    EXPECT_EQ(dialog.DoModal(), kIdOk);
}

TEST_F(ADialog, IsTheParentOfTheOneThatIsShownAfterItAndOtherWindowsStayUsable) {
    SampleDialog inner(kOtherLook);
    constexpr DialogTemplate kLogLook = {u"Log", 100, 60, kControls};
    SampleDialog log(kLogLook);
    log.onClicked = [](int) {};
    log.Show();
    dialog.onClicked = [&](int id) {
        if (id == kIdOk)
            return dialog.EndDialog(id);
        Soon([&] {
            EXPECT_EQ(WindowTitled("Other")->parentWidget(), WindowTitled("Sample"));
            EXPECT_EQ(WindowTitled("Other")->windowModality(), Qt::WindowModal);
            EXPECT_EQ(QApplication::activeModalWidget(), WindowTitled("Other"));
            Click("Other", kIdOk);
        });
        inner.DoModal();
    };
    Soon([] {
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "nothing is blocked";
        Click("Log", 100);
        Click("Sample", 100);
        Click("Sample", kIdOk);
    });
    dialog.DoModal();
    EXPECT_THAT(log.clicked, ElementsAre(100));
}

TEST_F(ADialog, StopsWhatItsHandlersThrow) {
    dialog.onInit = [] { throw std::runtime_error("at the opening"); };
    dialog.onClicked = [this](int id) {
        if (id == kIdOk)
            dialog.EndDialog(id);
        throw 7;
    };
    Soon([] {
        Click("Sample", 100);
        Click("Sample", kIdOk);
    });
    EXPECT_EQ(dialog.DoModal(), kIdOk);
    EXPECT_THAT(dialog.clicked, ElementsAre(100, kIdOk));
}

TEST_F(ADialog, CanEndItsLifeInItsOwnHandler) {
    auto* const shortLived = new SampleDialog(kOtherLook);
    shortLived->onClicked = [shortLived](int) { delete shortLived; };
    shortLived->Show();
    Click("Other", 100);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(WindowTitled("Other"), nullptr);
}

TEST_F(ADialog, ShownInOneLoopAndDestroyedThereEndsAsCancelled) {
    auto outer = std::make_unique<SampleDialog>(kOtherLook);
    Soon([&outer] { outer.reset(); });
    EXPECT_EQ(outer->DoModal(), kIdCancel);
}

} // namespace
