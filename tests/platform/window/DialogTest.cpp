// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kControls[] = {
    {100, ControlClass::PushButton, u"Ask", 7, 7, 50, 14},
    {kIdOk, ControlClass::DefaultPushButton, u"Close", 7, 30, 50, 14},
};
constexpr DialogTemplate kLook = {u"Sample", 100, 60, kControls};

class ADialog : public WindowTest {};

TEST_F(ADialog, TellsWhichButtonWasPressedAndEndsWithTheResult) {
    SampleDialog dialog(kLook);
    QTimer::singleShot(0, [] {
        QWidget* const window = WindowTitled("Sample");
        QTest::mouseClick(ControlOf(window, 100), Qt::LeftButton);
        QTest::mouseClick(ControlOf(window, kIdOk), Qt::LeftButton);
    });
    dialog.onClicked = [&dialog](int id) {
        if (id == kIdOk)
            dialog.EndDialog(7);
    };
    EXPECT_EQ(dialog.DoModal(), 7);
    EXPECT_THAT(dialog.clicked, ElementsAre(100, kIdOk));
}

} // namespace
