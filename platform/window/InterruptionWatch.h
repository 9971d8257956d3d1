// SPDX-License-Identifier: MIT
// Ends a window that is shown modally when the user wishes the work to stop (Ctrl-C at the
// terminal), as soon as none of its handlers works.
#pragma once

#include <QTimer>

namespace Platform {

class DialogWindow;

class InterruptionWatch {
public:
    // The window must outlive it.
    explicit InterruptionWatch(DialogWindow& window);

private:
    QTimer m_timer;
};

} // namespace Platform
