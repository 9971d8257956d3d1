// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include "platform/host/FileSteps.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QWindow>
#include <gmock/gmock.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kControls[] = {
    {100, ControlClass::PushButton, u"Load", 7, 7, 50, 14},
    {101, ControlClass::PushButton, u"Other", 7, 25, 50, 14},
    {102, ControlClass::TextField, nullptr, 7, 45, 50, 12},
    {103, ControlClass::Label, nullptr, 7, 60, 50, 8},
};
constexpr DialogTemplate kLook = {u"Busy", 100, 80, kControls};
constexpr DialogTemplate kLogLook = {u"Log", 100, 80, kControls};

constexpr int kPatienceMs = 5000;

class PaintCounter : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        painted += event->type() == QEvent::Paint;
        return false;
    }
    int painted = 0;
};

class WhileAHandlerWorks : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Show();
        log.SetUsableWhileBusy(true);
        log.onClicked = [](int) {};
        log.Show();
        window = WindowTitled("Busy");
        logWindow = WindowTitled("Log");
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    }
    // Presses "Load", whose handler does `work`, and then works off what is left.
    template<class Work>
    void Load(Work work) {
        dialog.onClicked = [work](int id) {
            if (id == 100)
                work();
        };
        ClickOn(window, 100);
        QApplication::processEvents();
    }
    static void ClickOn(QWidget* in, int id) {
        const QPoint place = ControlOf(in, id)->geometry().center();
        QTest::mouseClick(in->windowHandle(), Qt::LeftButton, {}, place);
    }
    // Pumps until it is so.
    template<class Condition>
    static void PumpUntil(Condition condition) {
        QElapsedTimer time;
        time.start();
        while (!condition() && time.elapsed() < kPatienceMs)
            PumpWindows();
        EXPECT_TRUE(condition());
    }
    SampleDialog dialog{kLook};
    SampleDialog log{kLogLook};
    QWidget* window = nullptr;
    QWidget* logWindow = nullptr;
};

TEST_F(WhileAHandlerWorks, ClicksAndKeysAreDroppedAndNotKept) {
    Load([this] {
        bool hasTyped = false;
        Soon([this, &hasTyped] {
            ClickOn(window, 100);
            ClickOn(window, 101);
            QTest::keyClick(window->windowHandle(), Qt::Key_Return);
            QTest::keyClick(window->windowHandle(), 'o', Qt::AltModifier);
            QTest::keyClicks(ControlOf(window, 102), "typed");
            ControlOf<QAbstractButton>(window, 101)->click();
            hasTyped = true;
        });
        PumpUntil([&hasTyped] { return hasTyped; });
    });
    QTest::qWait(150); // a key's button is pressed for a moment before it counts
    EXPECT_THAT(dialog.clicked, ElementsAre(100));
    EXPECT_EQ(dialog.Text(102), u"");
    dialog.onClicked = [](int) {};
    ClickOn(window, 101);
    EXPECT_THAT(dialog.clicked, ElementsAre(100, 101)) << "and afterwards it is as before";
}

TEST_F(WhileAHandlerWorks, WhatTheUserDidWithoutAPumpIsDroppedWithItsEnd) {
    Load([this] {
        Soon([this] { ClickOn(window, 101); });
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < 60) // long enough for a user to do something
            continue;
    });
    EXPECT_THAT(dialog.clicked, ElementsAre(100));
}

TEST_F(WhileAHandlerWorks, AWindowThatIsUsableThenReactsAndItsHandlersWorkNest) {
    std::vector<CString> order;
    log.onClicked = [&](int id) {
        order.push_back(u"log begins");
        bool hasTried = false;
        Soon([&] {
            ClickOn(window, 101);
            ClickOn(logWindow, 101);
            hasTried = true;
        });
        PumpUntil([&hasTried] { return hasTried; });
        order.push_back(u"log ends");
        (void)id;
    };
    Load([&] {
        Soon([&] { ClickOn(logWindow, 100); });
        PumpUntil([&] { return order.size() == 2; });
        order.push_back(u"load ends");
    });
    EXPECT_THAT(order, ElementsAre(u"log begins", u"log ends", u"load ends"));
    EXPECT_THAT(log.clicked, ElementsAre(100)) << "not twice at a time";
    EXPECT_THAT(dialog.clicked, ElementsAre(100));
}

TEST_F(WhileAHandlerWorks, WindowsArePaintedAndMoved) {
    PaintCounter counter;
    ControlOf(window, 103)->installEventFilter(&counter);
    Load([&] {
        counter.painted = 0;
        dialog.SetText(103, u"something new");
        Soon([this] { window->windowHandle()->setPosition(77, 66); });
        PumpUntil(
            [&] { return counter.painted > 0 && window->geometry().topLeft() == QPoint(77, 66); });
    });
}

TEST_F(WhileAHandlerWorks, FileStepsPumpAndGoOnToTheFormerListener) {
    std::vector<FileStep> told;
    auto before = SetFileStepListener([&told](FileStep step) { told.push_back(step); });
    Load([&] {
        bool hasRun = false;
        Soon([&hasRun] { hasRun = true; });
        QElapsedTimer time;
        time.start();
        TellFileStep(FileStep::Read);
        while (!hasRun && time.elapsed() < kPatienceMs)
            TellFileStep(FileStep::Stored);
        EXPECT_TRUE(hasRun);
    });
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told.front(), FileStep::Read);
    const std::size_t toldSoFar = told.size();
    TellFileStep(FileStep::Written);
    EXPECT_EQ(told.size(), toldSoFar + 1) << "put back";
    SetFileStepListener(std::move(before));
}

TEST_F(WhileAHandlerWorks, AWindowIsNotClosedByTheUser) {
    Load([this] {
        bool hasTried = false;
        Soon([&] {
            window->close();
            hasTried = true;
        });
        PumpUntil([&hasTried] { return hasTried; });
    });
    EXPECT_TRUE(dialog.IsShown());
    EXPECT_THAT(dialog.clicked, ElementsAre(100));
}

TEST_F(WhileAHandlerWorks, TheUserIsAskedForAFileWithoutTheWaitCursor) {
    std::optional<CString> chosen = u"not asked";
    Load([&] {
        const WaitCursor waiting;
        Soon([&] {
            auto* const chooser = dynamic_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(chooser);
            EXPECT_EQ(chooser->windowTitle(), "Where?");
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
            ClickOn(window, 101);
            QTest::keyClick(chooser, Qt::Key_Escape);
        });
        chosen = ChooseFile({u"Where?", u"", u"x.txt", u"Texts (*.txt)", true});
        EXPECT_TRUE(QApplication::overrideCursor());
    });
    EXPECT_EQ(chosen, std::nullopt);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_THAT(dialog.clicked, ElementsAre(100));
}

TEST_F(WhileAHandlerWorks, AChosenFileIsGivenWithItsFullPath) {
    const QString folder = QDir::tempPath();
    Load([&] {
        Soon([] {
            auto* const chooser = dynamic_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(chooser);
            QTest::keyClick(chooser->focusWidget(), Qt::Key_Return);
        });
        const auto chosen =
            ChooseFile({u"Where?", folder.toStdU16String(), u"zebx none such.txt", u"", true});
        EXPECT_EQ(chosen, (folder + "/zebx none such.txt").toStdU16String());
    });
}

TEST_F(WhileAHandlerWorks, OutsideOfOnePumpingDoesNothing) {
    bool hasRun = false;
    Soon([&hasRun] { hasRun = true; });
    PumpWindows();
    EXPECT_FALSE(hasRun);
    QApplication::processEvents();
    EXPECT_TRUE(hasRun);
}

} // namespace
