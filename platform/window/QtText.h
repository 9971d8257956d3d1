// SPDX-License-Identifier: MIT
// Texts on their way into Qt and out of it; used inside platform/window only.
#pragma once

#include "platform/text/Text.h"

#include <QString>

namespace Platform {

// Unit by unit: Qt's own conversion would drop a byte order mark at the beginning.
inline QString ToQt(CStringView text) {
    return QString(reinterpret_cast<const QChar*>(text.data()),
                   static_cast<qsizetype>(text.size()));
}

inline CString FromQt(const QString& text) {
    const auto* units = reinterpret_cast<const char16_t*>(text.constData());
    return CString(units, static_cast<std::size_t>(text.size()));
}

// As it is shown: what would end a line or the text is a blank.
QString OneLine(CStringView text);
// For a tool tip, which would take some texts for HTML.
QString PlainToolTip(const QString& text);

} // namespace Platform
