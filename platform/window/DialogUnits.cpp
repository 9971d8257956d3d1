// SPDX-License-Identifier: MIT
#include "platform/window/DialogUnits.h"

#include <QFontMetricsF>
#include <cmath>

namespace Platform {
namespace {

constexpr QStringView kLetters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

int Rounded(double pixels) {
    return static_cast<int>(std::lround(pixels));
}

} // namespace

DialogUnits::DialogUnits(const QFont& font) {
    const QFontMetricsF metrics(font);
    // One by one: side by side some stand closer together.
    double width = 0;
    for (const QChar letter : kLetters)
        width += metrics.horizontalAdvance(letter);
    m_across = width / static_cast<double>(kLetters.size()) / 4;
    m_down = metrics.height() / 8;
}

QRect DialogUnits::ToPixels(int x, int y, int width, int height) const {
    const QPoint begin(Rounded(x * m_across), Rounded(y * m_down));
    const QPoint end(Rounded((x + width) * m_across), Rounded((y + height) * m_down));
    return QRect(begin, QSize(end.x() - begin.x(), end.y() - begin.y()));
}

QSize DialogUnits::ToPixels(int width, int height) const {
    return ToPixels(0, 0, width, height).size();
}

QRect Resized(const QRect& place, unsigned onResize, const QSize& growth) {
    QRect resized = place;
    resized.translate(onResize & MoveRight ? growth.width() : 0,
                      onResize & MoveDown ? growth.height() : 0);
    if (onResize & GrowWide)
        resized.setWidth(resized.width() + growth.width());
    if (onResize & GrowTall)
        resized.setHeight(resized.height() + growth.height());
    return resized;
}

} // namespace Platform
