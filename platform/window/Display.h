// SPDX-License-Identifier: MIT
// Whether a window system answers; Qt would end the process where none does.
#pragma once

#include <QString>

namespace Platform {

struct Display {
    QString platform; // Qt's name of it
    QString problem;  // why it cannot be used; empty: it can
};

// Looks at QT_QPA_PLATFORM, DISPLAY and WAYLAND_DISPLAY.
Display FindDisplay();

} // namespace Platform
