// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QProxyStyle>
#include <QTreeView>
#include <array>
#include <cmath>

using namespace Platform;

namespace {

constexpr ControlTemplate kControls[] = {
    {10, ControlClass::CheckBox, nullptr, 7, 7, 12, 10},
    {11, ControlClass::RadioButton, nullptr, 30, 7, 12, 10},
    {12, ControlClass::TextField, nullptr, 50, 7, 50, 12},
    {13, ControlClass::ListView, nullptr, 7, 30, 93, 60},
    {14, ControlClass::GroupBox, nullptr, 7, 95, 93, 20},
    {15, ControlClass::Label, u"IIIIIIII", 7, 120, 93, 8},
};
constexpr DialogTemplate kLook = {u"Scheme", 107, 135, kControls};

constexpr ControlTemplate kTabs[] = {{20, ControlClass::TabControl, nullptr, 7, 7, 200, 200}};
constexpr DialogTemplate kMainLook = {u"SchemeTabs", 214, 214, kTabs};

QPalette Dark() {
    QPalette palette(QColor(53, 53, 53), QColor(45, 45, 45));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, QColor(230, 230, 230));
    return palette;
}

double Luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// The greatest contrast in the picture, by WCAG's formula.
double Contrast(const QImage& image) {
    double least = 1;
    double most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double luminance = Luminance(image.pixelColor(x, y));
            least = std::min(least, luminance);
            most = std::max(most, luminance);
        }
    }
    return (most + 0.05) / (least + 0.05);
}

class ASchemeOf : public WindowTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Create();
        ListView list = dialog.List(13);
        list.SetStyle(ListView::CheckBoxes);
        list.InsertColumn(u"");
        list.AddRow({});
        dialog.Show();
        if (GetParam())
            QApplication::setPalette(Dark());
        QApplication::processEvents();
        window = WindowTitled("Scheme");
    }
    void TearDown() override { QApplication::setPalette(QPalette()); }
    QImage Picture(int id) { return ControlOf(window, id)->grab().toImage(); }

    SampleDialog dialog{kLook};
    QWidget* window = nullptr;
};

TEST_P(ASchemeOf, ShowsEmptyBoxesFieldsAndFramesClearly) {
    for (const int id : {10, 11})
        EXPECT_GT(Contrast(Picture(id)), 3) << id;
    for (const int id : {12, 14})
        EXPECT_GT(Contrast(Picture(id)), 1.3) << id;
    EXPECT_GT(Contrast(Picture(15)), 7) << "a text";
}

TEST_P(ASchemeOf, ShowsTheEmptyBoxOfARowClearly) {
    auto* const view = ControlOf<QTreeView>(window, 13);
    const QRect row = view->visualRect(view->model()->index(0, 0)).adjusted(1, 1, -1, -1);
    EXPECT_GT(Contrast(view->viewport()->grab(row).toImage()), 3);
}

TEST_P(ASchemeOf, IsFollowedByAPageWhileItIsShown) {
    QApplication::setPalette(QPalette());
    SamplePage page(kLook);
    SampleTabDialog main(kMainLook, 20);
    main.Create();
    main.AddTab(0, page, u"Page");
    main.Show();
    QApplication::processEvents();
    if (GetParam())
        QApplication::setPalette(Dark());
    QApplication::processEvents();
    const QImage text = ControlOf(WindowTitled("SchemeTabs"), 15)->grab().toImage();
    EXPECT_GT(Contrast(text), 7);
    EXPECT_EQ(Luminance(text.pixelColor(text.width() - 1, 0)) < 0.2, GetParam());
}

TEST_P(ASchemeOf, LooksTheSameWhateverIsInstalled) {
    const auto* const style = dynamic_cast<QProxyStyle*>(QApplication::style());
    ASSERT_TRUE(style);
    EXPECT_EQ(style->baseStyle()->name(), "fusion");
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, ASchemeOf, testing::Bool(), [](const auto& scheme) {
    return scheme.param ? std::string("Dark") : std::string("Light");
});

} // namespace
