// SPDX-License-Identifier: MIT
#include "platform/window/GroupFrame.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace Platform {
namespace {

constexpr int kTitleIndent = 7;
constexpr int kTitleMargin = 3;
constexpr double kRadius = 2;

} // namespace

bool GroupFrame::event(QEvent* event) {
    if (event->type() != QEvent::Shortcut)
        return QGroupBox::event(event);
    if (onKey)
        onKey();
    return true;
}

void GroupFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int line = fontMetrics().height();
    const int middle = line / 2;
    const int flags = Qt::TextShowMnemonic | Qt::TextSingleLine;
    const QString shown =
        fontMetrics().elidedText(title(), Qt::ElideRight, width() - 2 * kTitleIndent, flags);
    const QRect place(kTitleIndent, 0, fontMetrics().size(flags, shown).width(), line);

    painter.save();
    if (!shown.isEmpty()) {
        const QRect gap = place.adjusted(-kTitleMargin, 0, kTitleMargin, 0);
        painter.setClipRegion(QRegion(rect()) - QRegion(gap));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    QColor colour = palette().color(QPalette::WindowText);
    colour.setAlphaF(0.3F);
    painter.setPen(colour);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, middle + 0.5, -0.5, -0.5), kRadius,
                            kRadius);
    painter.restore();

    style()->drawItemText(&painter, place, Qt::AlignLeft | flags, palette(), isEnabled(), shown,
                          QPalette::WindowText);
}

} // namespace Platform
