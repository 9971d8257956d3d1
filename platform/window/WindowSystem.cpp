// SPDX-License-Identifier: MIT
#include "platform/window/WindowSystem.h"

#include "platform/window/QtText.h"

#include <QApplication>
#include <QClipboard>

namespace Platform {

WaitCursor::WaitCursor() {
    if (qApp)
        QApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor() {
    if (qApp)
        QApplication::restoreOverrideCursor();
}

void SetClipboardText(const CString& text) {
    if (qApp)
        QGuiApplication::clipboard()->setText(ToQt(text));
}

} // namespace Platform
