// SPDX-License-Identifier: MIT
// Whether a window system answers; Qt would end the process where none does.
#pragma once

#include <QString>
#include <memory>

namespace Platform {

struct Display {
    QString platform; // Qt's name of it
    QString problem;  // why it cannot be used; empty: it can
    // An X server that its last client leaves may begin anew and answer nobody meanwhile: this
    // is kept until Qt has a connection of its own.
    std::shared_ptr<void> connection;
};

// Looks at QT_QPA_PLATFORM, DISPLAY and WAYLAND_DISPLAY.
Display FindDisplay();

} // namespace Platform
