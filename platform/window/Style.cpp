// SPDX-License-Identifier: MIT
#include "platform/window/Style.h"

#include <QPainter>
#include <QStyleOption>

namespace Platform {
namespace {

constexpr double kRadius = 2;

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() < 0.5F;
}

// Boxes are told from what is around them by their edge alone, fields by their colour as well.
QPen EdgePen(const QStyleOption& option, double strength) {
    QColor colour = option.palette.color(QPalette::Text);
    colour.setAlphaF(static_cast<float>(strength));
    return QPen(colour, 1);
}

void DrawEdge(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
    const QRectF edge = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    switch (element) {
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck:
        painter.setPen(EdgePen(option, 0.6));
        painter.drawRect(edge);
        break;
    case QStyle::PE_IndicatorRadioButton:
        painter.setPen(EdgePen(option, 0.6));
        painter.drawEllipse(edge);
        break;
    case QStyle::PE_Frame:
    case QStyle::PE_FrameLineEdit:
        if (!IsDark(option.palette))
            break;
        painter.setPen(EdgePen(option, 0.3));
        painter.drawRoundedRect(edge, kRadius, kRadius);
        break;
    default:
        break;
    }
}

} // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    DrawEdge(element, *option, *painter);
    painter->restore();
}

} // namespace Platform
