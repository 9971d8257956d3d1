// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QComboBox>
#include <QFontMetricsF>

using namespace Platform;

namespace {

constexpr ControlTemplate kControls[] = {
    {10, ControlClass::PushButton, u"a", 7, 7, 50, 14},
    {11, ControlClass::DefaultPushButton, u"b", 60, 7, 50, 14, MoveRight},
    {12, ControlClass::IconButton, u"c", 113, 7, 18, 16, MoveDown},
    {13, ControlClass::GroupBox, u"d", 7, 30, 100, 40, GrowWide | GrowTall},
    {14, ControlClass::ListView, nullptr, 7, 80, 100, 40, GrowWide},
    {15, ControlClass::Label, u"e", 7, 130, 50, 8, GrowTall},
    {16, ControlClass::TextField, nullptr, 60, 130, 50, 12, MoveRight | MoveDown},
    {17, ControlClass::ReadOnlyText, u"f", 7, 145, 50, 30},
    {18, ControlClass::CheckBox, u"g", 60, 145, 50, 10},
    {19, ControlClass::RadioButton, u"h", 60, 160, 50, 10},
    {20, ControlClass::ProgressBar, nullptr, 7, 180, 100, 10},
    {21, ControlClass::TabControl, nullptr, 120, 30, 50, 40},
    {22, ControlClass::DropDownList, nullptr, 7, 195, 100, 80},
};
constexpr DialogTemplate kLook = {u"Layout", 180, 220, kControls};

constexpr ControlTemplate kInPage[] = {
    {30, ControlClass::PushButton, u"p", 5, 6, 20, 10, MoveRight}};
constexpr DialogTemplate kPage = {u"", 45, 20, kInPage};

constexpr ControlTemplate kTabs[] = {
    {50, ControlClass::TabControl, nullptr, 7, 7, 100, 60, GrowWide | GrowTall}};
constexpr DialogTemplate kMain = {u"Main", 114, 74, kTabs};

// In pixels, by the rule in Template.h.
struct Units {
    double across, down;
    int X(int x) const { return static_cast<int>(std::lround(x * across)); }
    int Y(int y) const { return static_cast<int>(std::lround(y * down)); }
    QRect Of(int x, int y, int width, int height) const {
        return QRect(QPoint(X(x), Y(y)), QPoint(X(x + width) - 1, Y(y + height) - 1));
    }
};

Units UnitsOfTheFont() {
    const QFontMetricsF metrics{QApplication::font()};
    double width = 0;
    for (char16_t letter = u'a'; letter <= u'z'; ++letter) {
        width += metrics.horizontalAdvance(QChar(letter));
        width += metrics.horizontalAdvance(QChar(letter).toUpper());
    }
    return {width / 52 / 4, metrics.height() / 8};
}

QRect ExpectedPlace(const ControlTemplate& look) {
    // A drop-down list's height is that of its open list.
    const int height = look.kind == ControlClass::DropDownList ? 12 : look.height;
    return UnitsOfTheFont().Of(look.x, look.y, look.width, height);
}

class ALayout : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Show();
        window = WindowTitled("Layout");
        ASSERT_TRUE(window);
    }
    SampleDialog dialog{kLook};
    QWidget* window = nullptr;
};

TEST_F(ALayout, OpensAtTheTemplatesSizeAndGetsNoSmaller) {
    const QSize size(UnitsOfTheFont().X(180), UnitsOfTheFont().Y(220));
    EXPECT_EQ(window->size(), size);
    EXPECT_EQ(window->minimumSize(), size);
}

TEST_F(ALayout, PutsEachClassOfControlWhereTheTemplateSays) {
    for (const ControlTemplate& look : kControls)
        EXPECT_EQ(ControlOf(window, look.id)->geometry(), ExpectedPlace(look)) << look.id;
}

TEST_F(ALayout, MovesAndGrowsControlsAsTheirTemplatesSay) {
    window->resize(window->size() + QSize(40, 30));
    QApplication::processEvents();
    for (const ControlTemplate& look : kControls) {
        QRect expected = ExpectedPlace(look);
        expected.translate(look.onResize & MoveRight ? 40 : 0, look.onResize & MoveDown ? 30 : 0);
        expected.adjust(0, 0, look.onResize & GrowWide ? 40 : 0, look.onResize & GrowTall ? 30 : 0);
        EXPECT_EQ(ControlOf(window, look.id)->geometry(), expected) << look.id;
    }
}

TEST_F(ALayout, FollowsTheFont) {
    QFont larger = QApplication::font();
    larger.setPointSize(larger.pointSize() * 2);
    const int before = ControlOf(window, 10)->width();
    window->setFont(larger);
    EXPECT_NEAR(ControlOf(window, 10)->width(), before * 2, before * 0.2);
    EXPECT_GE(window->minimumWidth(), window->childrenRect().right());
}

TEST_F(ALayout, OfAPageBeginsInTheTabsContentAndGrowsWithTheTabs) {
    SamplePage page(kPage);
    SampleTabDialog main(kMain, 50);
    main.Create();
    main.AddTab(0, page, u"Page");
    main.Show();
    QApplication::processEvents();
    const QWidget* const button = ControlOf(WindowTitled("Main"), 30);
    const QRect place = UnitsOfTheFont().Of(5, 6, 20, 10);
    EXPECT_EQ(button->geometry(), place);
    QWidget* const shown = WindowTitled("Main");
    shown->resize(shown->size() + QSize(25, 10));
    QApplication::processEvents();
    EXPECT_EQ(button->geometry(), place.translated(25, 0));
    EXPECT_EQ(button->parentWidget()->window(), shown);
}

TEST_F(ALayout, AClosedDropDownListShowsItsWholeText) {
    auto* const list = ControlOf<QComboBox>(window, 22);
    EXPECT_GE(list->height(), QFontMetrics(QApplication::font()).height() + 4);
}

} // namespace
