// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include "platform/host/Interruption.h"

#include <QTest>
#include <QTimer>

using namespace Platform;

namespace {

constexpr ControlTemplate kControls[] = {
    {100, ControlClass::PushButton, u"Work", 7, 7, 50, 14},
    {kIdOk, ControlClass::DefaultPushButton, u"Close", 7, 30, 50, 14},
};
constexpr DialogTemplate kLook = {u"Sample", 100, 60, kControls};

class AnInterruption : public WindowTest {
protected:
    const InterruptionGuard interruptible; // forgets it at its end
};

TEST_F(AnInterruption, EndsADialogThatIsShown) {
    SampleDialog dialog(kLook);
    QTimer::singleShot(0, RequestInterruption);
    EXPECT_EQ(dialog.DoModal(), kIdCancel);
    EXPECT_FALSE(dialog.IsShown());
}

TEST_F(AnInterruption, WaitsForTheHandlerThatWorks) {
    SampleDialog dialog(kLook);
    bool wasShownWhileWorking = false;
    dialog.onClicked = [&](int) {
        RequestInterruption();
        QTest::qWait(300); // in which it is looked for, and not acted on
        wasShownWhileWorking = dialog.IsShown();
    };
    QTimer::singleShot(
        0, [] { QTest::mouseClick(ControlOf(WindowTitled("Sample"), 100), Qt::LeftButton); });
    EXPECT_EQ(dialog.DoModal(), kIdCancel);
    EXPECT_TRUE(wasShownWhileWorking);
}

TEST_F(AnInterruption, EndsADialogAboveAnotherAndThenThatOne) {
    SampleDialog below(kLook);
    SampleDialog above(kLook);
    int result = -1;
    below.onClicked = [&](int) {
        QTimer::singleShot(0, RequestInterruption);
        result = above.DoModal();
    };
    QTimer::singleShot(
        0, [] { QTest::mouseClick(ControlOf(WindowTitled("Sample"), 100), Qt::LeftButton); });
    EXPECT_EQ(below.DoModal(), kIdCancel);
    EXPECT_EQ(result, kIdCancel);
}

} // namespace
