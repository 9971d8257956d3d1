// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <gmock/gmock.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kControls[] = {
    {10, ControlClass::GroupBox, u"Repository", 7, 7, 200, 60},
    {11, ControlClass::DropDownList, nullptr, 14, 20, 80, 60},
    {12, ControlClass::Label, u"Address:", 7, 70, 50, 8},
    {13, ControlClass::TextField, nullptr, 60, 70, 80, 12},
    {14, ControlClass::IconButton, u"ALL", 150, 70, 18, 16},
    {15, ControlClass::CheckBox, u"Make", 7, 90, 50, 10},
    {16, ControlClass::RadioButton, u"One", 60, 90, 40, 10},
    {17, ControlClass::RadioButton, u"Two", 105, 90, 40, 10},
    {18, ControlClass::ReadOnlyText, u"read", 7, 105, 90, 30},
    {19, ControlClass::ProgressBar, nullptr, 100, 105, 90, 10},
    {20, ControlClass::Label, nullptr, 7, 140, 90, 8},
    {21, ControlClass::PushButton, u"Go", 100, 140, 50, 14},
    {22, ControlClass::RadioButton, u"Another group", 7, 150, 90, 10},
};
constexpr DialogTemplate kLook = {u"Controls", 210, 165, kControls};

class Controls : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Create();
        window = WindowTitled("Controls");
        ASSERT_TRUE(window);
    }
    QString NameOf(int id) {
        QApplication::processEvents();
        QWidget* const control = ControlOf(window, id);
        return QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name);
    }
    SampleDialog dialog{kLook};
    QWidget* window = nullptr;
};

TEST_F(Controls, ReturnTheTextThatWasSetWhateverIsInIt) {
    const CString strange = CString(u"a&b&&c \"[*]\" <b>x</b>\n") + char16_t(0xD800) + u'\0' + u"z";
    for (const int id : {10, 12, 14, 15, 16, 18, 20, 21}) {
        dialog.SetText(id, strange);
        EXPECT_EQ(dialog.Text(id), strange) << id;
    }
    dialog.SetTitle(strange);
    EXPECT_EQ(dialog.Title(), strange);
    dialog.SetText(13, u"plain & simple");
    EXPECT_EQ(dialog.Text(13), u"plain & simple");
    dialog.Show();
    window->grab();
}

TEST_F(Controls, ShowAnAmpersandAsItIs) {
    dialog.SetText(21, u"R & D");
    dialog.SetText(20, u"R & D");
    QApplication::processEvents();
    EXPECT_EQ(ControlOf<QPushButton>(window, 21)->text().count("&&"), 1);
    EXPECT_EQ(ControlOf<QLabel>(window, 20)->text(), "R & D");
}

TEST_F(Controls, ALabelOfOneLineCutsNoLetterInHalf) {
    dialog.Show();
    dialog.SetText(20, u"short");
    const QWidget* const label = ControlOf(window, 20);
    const auto rightmost = [label] {
        const QImage image = const_cast<QWidget*>(label)->grab().toImage();
        const QColor ground = image.pixelColor(0, image.height() - 1);
        int right = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                right = image.pixelColor(x, y) == ground ? right : x;
        }
        return right;
    };
    EXPECT_LT(rightmost(), label->width() / 2);
    dialog.SetText(20, CString(300, u'W') + u" end");
    EXPECT_GT(rightmost(), label->width() / 2);
    EXPECT_LT(rightmost(), label->width() - 1) << "shortened, not cut off";
    EXPECT_EQ(dialog.Text(20).size(), 304U);
}

TEST_F(Controls, AWindowsTitleIsShownAsItIs) {
    dialog.SetTitle(u"Log [*] of today");
    EXPECT_EQ(window->windowTitle(), "Log [*][*] of today") << "Qt's way to write it";
    EXPECT_EQ(dialog.Title(), u"Log [*] of today");
}

TEST_F(Controls, OfNoSuchNumberArePassedOver) {
    dialog.SetText(99, u"x");
    dialog.SetChecked(99, true);
    dialog.Enable(99, true);
    dialog.SetIcon(99, u"IDI_SELALL");
    dialog.SetIcon(14, u"IDI_NO_SUCH_ICON");
    dialog.SetIcon(14, nullptr);
    EXPECT_EQ(dialog.Text(99), u"");
    EXPECT_FALSE(dialog.IsChecked(99));
    EXPECT_FALSE(dialog.IsEnabled(99));
    EXPECT_EQ(dialog.List(99).AddRow({u"x"}), -1);
    EXPECT_EQ(dialog.List(99).RowCount(), 0);
    EXPECT_EQ(dialog.DropDown(21).Add(u"x"), -1) << "it is a button";
}

TEST_F(Controls, BeforeTheirWindowIsMadeAreNotThere) {
    SampleDialog notMade(kLook);
    notMade.SetText(21, u"x");
    notMade.SetTitle(u"x");
    notMade.EndDialog(1);
    notMade.Hide();
    EXPECT_EQ(notMade.Text(21), u"");
    EXPECT_FALSE(notMade.IsShown());
    EXPECT_EQ(notMade.List(11).RowCount(), 0);
}

TEST_F(Controls, AreDisabledAndHidden) {
    dialog.Enable(21, false);
    EXPECT_FALSE(dialog.IsEnabled(21));
    QTest::mouseClick(ControlOf(window, 21), Qt::LeftButton);
    EXPECT_TRUE(dialog.clicked.empty());
    dialog.Enable(21, true);
    EXPECT_TRUE(dialog.IsEnabled(21));
    dialog.SetVisible(21, false);
    dialog.Show();
    EXPECT_FALSE(ControlOf(window, 21)->isVisible());
}

TEST_F(Controls, ThatFollowEachOtherAsRadioButtonsAreOneGroup) {
    dialog.SetChecked(16, true);
    dialog.SetChecked(22, true);
    dialog.SetChecked(17, true);
    EXPECT_FALSE(dialog.IsChecked(16));
    EXPECT_TRUE(dialog.IsChecked(17));
    EXPECT_TRUE(dialog.IsChecked(22));
}

TEST_F(Controls, TellWhatTheUserChangedAndNothingElse) {
    dialog.SetText(13, u"by the program");
    dialog.SetChecked(15, true);
    dialog.SetChecked(16, true);
    dialog.DropDown(11).Add(u"x");
    dialog.DropDown(11).Select(0);
    EXPECT_TRUE(dialog.changed.empty());
    dialog.Show();
    QTest::keyClicks(ControlOf(window, 13), "y");
    QTest::mouseClick(ControlOf(window, 15), Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseClick(ControlOf(window, 17), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_THAT(dialog.changed, ElementsAre(13, 15, 17));
    EXPECT_EQ(dialog.Text(13), u"by the programy");
    EXPECT_FALSE(dialog.IsChecked(15));
}

TEST_F(Controls, AProgressBarStaysInItsRange) {
    auto* const bar = ControlOf<QProgressBar>(window, 19);
    dialog.SetRange(19, 0, 10);
    dialog.SetPosition(19, 4);
    EXPECT_EQ(bar->value(), 4);
    dialog.SetPosition(19, 40);
    EXPECT_EQ(bar->value(), 10);
    dialog.SetRange(19, 0, 0);
    EXPECT_GT(bar->maximum(), bar->minimum()) << "an empty range would run to and fro";
    dialog.SetRange(19, INT_MAX, INT_MIN);
    dialog.SetPosition(19, INT_MIN);
}

TEST_F(Controls, AreNamedForAScreenReader) {
    EXPECT_EQ(NameOf(21), "Go");
    EXPECT_EQ(NameOf(11), "Repository") << "the group around it";
    EXPECT_EQ(NameOf(13), "Address:") << "the label before it";
    EXPECT_EQ(NameOf(14), "ALL");
    dialog.SetToolTip(14, u"Select all");
    EXPECT_EQ(NameOf(14), "Select all");
    dialog.SetAccessibleName(18, u"Result");
    EXPECT_EQ(NameOf(18), "Result");
    dialog.SetText(12, u"Place & name:");
    EXPECT_EQ(NameOf(13), "Place & name:");
}

TEST_F(Controls, ATextToReadCanBeMarkedAndNotEdited) {
    QTest::keyClicks(ControlOf(window, 18), "x");
    EXPECT_EQ(dialog.Text(18), u"read");
    EXPECT_TRUE(dialog.changed.empty());
}

} // namespace
