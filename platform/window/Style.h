// SPDX-License-Identifier: MIT
// Qt's Fusion, whatever is installed, with clearer edges: its own ones are faint, and in a dark
// scheme darker than what is around them.
#pragma once

#include <QProxyStyle>

namespace Platform {

class Style : public QProxyStyle {
public:
    Style();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace Platform
