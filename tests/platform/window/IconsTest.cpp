// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QAbstractButton>
#include <QPalette>

using namespace Platform;

namespace {

constexpr ControlTemplate kControls[] = {{10, ControlClass::IconButton, u"ALL", 7, 7, 18, 16}};
constexpr DialogTemplate kLook = {u"Icons", 40, 40, kControls};

class Icons : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Create();
        button = ControlOf<QAbstractButton>(WindowTitled("Icons"), 10);
    }
    void TearDown() override { QApplication::setPalette(QPalette()); }
    QImage Drawn(const char16_t* name, int size = 16, double ratio = 1) {
        dialog.SetIcon(10, name);
        const QPixmap pixmap = button->icon().pixmap(QSize(size, size), ratio);
        return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    }
    static void SetTextColour(const QColor& colour) {
        QPalette palette;
        palette.setColor(QPalette::Text, colour);
        QApplication::setPalette(palette);
    }
    static int PixelsOf(const QImage& image, const QColor& colour) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == colour;
        }
        return count;
    }
    SampleDialog dialog{kLook};
    QAbstractButton* button = nullptr;
};

TEST_F(Icons, AreThereAndAllDifferent) {
    const std::vector<const char16_t*> names = {u"IDI_SELALL", u"IDI_DESELALL", u"IDI_SUCCESS",
                                                u"IDI_WARNING", u"IDI_FAILURE"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_FALSE(Drawn(names[i]).isNull());
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(Drawn(names[i]).convertToFormat(QImage::Format_Alpha8),
                      Drawn(names[j]).convertToFormat(QImage::Format_Alpha8))
                << "different shapes, not colours alone";
    }
}

TEST_F(Icons, TakeTheColourOfTextsInEachScheme) {
    for (const char16_t* name : {u"IDI_SELALL", u"IDI_DESELALL"}) {
        SetTextColour(Qt::black);
        EXPECT_GT(PixelsOf(Drawn(name), Qt::black), 20);
        SetTextColour(Qt::white);
        EXPECT_GT(PixelsOf(Drawn(name), Qt::white), 20);
        EXPECT_EQ(PixelsOf(Drawn(name), Qt::black), 0);
    }
}

TEST_F(Icons, AreDrawnAnewForEachScaleNotEnlarged) {
    for (const double ratio : {1.5, 2.0, 3.0}) {
        const int pixels = static_cast<int>(16 * ratio);
        const QImage image = Drawn(u"IDI_SUCCESS", 16, ratio);
        ASSERT_EQ(image.size(), QSize(pixels, pixels));
        const QImage enlarged =
            Drawn(u"IDI_SUCCESS", 16, 1)
                .scaled(pixels, pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        EXPECT_NE(image, enlarged);
        // At each scale the line between the shape and what is around it is one pixel thin.
        int blurred = 0;
        for (int x = 0; x < pixels / 2; ++x) {
            const int alpha = image.pixelColor(x, pixels / 2).alpha();
            blurred += alpha > 0 && alpha < 255;
        }
        EXPECT_LE(blurred, 1) << ratio;
    }
}

TEST_F(Icons, OfAButtonThatIsOffArePaler) {
    SetTextColour(Qt::black);
    dialog.SetIcon(10, u"IDI_SELALL");
    const QImage off = button->icon().pixmap(QSize(16, 16), QIcon::Disabled).toImage();
    EXPECT_EQ(PixelsOf(off.convertToFormat(QImage::Format_ARGB32), Qt::black), 0);
}

TEST_F(Icons, StandInPlaceOfTheButtonsText) {
    EXPECT_NE(button->text(), "");
    dialog.SetIcon(10, u"IDI_SELALL");
    QApplication::processEvents();
    EXPECT_EQ(button->text(), "");
    EXPECT_EQ(dialog.Text(10), u"ALL");
    dialog.SetIcon(10, u"IDI_NO_SUCH_ICON");
    QApplication::processEvents();
    EXPECT_NE(button->text(), "") << "without an icon it has its text";
}

} // namespace
