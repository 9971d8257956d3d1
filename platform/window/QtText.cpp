// SPDX-License-Identifier: MIT
#include "platform/window/QtText.h"

#include <QTextDocument>

namespace Platform {

QString OneLine(CStringView text) {
    QString line = ToQt(text);
    for (QChar& unit : line) {
        const char16_t code = unit.unicode();
        if (code < 0x20 || code == 0x7F || code == 0x2028 || code == 0x2029)
            unit = u' ';
    }
    return line;
}

QString PlainToolTip(const QString& text) {
    if (!Qt::mightBeRichText(text))
        return text;
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

} // namespace Platform
