// SPDX-License-Identifier: MIT
#include "platform/window/TextLabel.h"

#include "platform/window/QtText.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace Platform {

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

bool TextLabel::IsCutOff() const {
    return !wordWrap() && fontMetrics().horizontalAdvance(text()) > width();
}

bool TextLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || !IsCutOff())
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), PlainToolTip(text()), this);
    return true;
}

void TextLabel::paintEvent(QPaintEvent* event) {
    if (!IsCutOff())
        return QLabel::paintEvent(event);
    QPainter painter(this);
    style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideMiddle, width()),
                          foregroundRole());
}

void TextLabel::resizeEvent(QResizeEvent* event) {
    setWordWrap(height() >= 2 * fontMetrics().height());
    QLabel::resizeEvent(event);
}

} // namespace Platform
