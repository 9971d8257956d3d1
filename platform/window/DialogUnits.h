// SPDX-License-Identifier: MIT
// Dialog units: the positions of a template as pixels at the font's size.
#pragma once

#include "platform/window/Template.h"

#include <QFont>
#include <QRect>

namespace Platform {

class DialogUnits {
public:
    // Average width of the 52 Latin letters, and the height of a line.
    explicit DialogUnits(const QFont& font);

    // Edges are rounded, not sizes: what touches in the template touches on the screen.
    QRect ToPixels(int x, int y, int width, int height) const;
    QSize ToPixels(int width, int height) const;

private:
    double m_across;
    double m_down;
};

// `place` when the window is larger than its template by `growth`.
QRect Resized(const QRect& place, unsigned onResize, const QSize& growth);

} // namespace Platform
