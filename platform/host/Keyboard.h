// SPDX-License-Identifier: MIT
// The keyboard of the terminal at which somebody types a command line.
#pragma once

#include "platform/Export.h"

namespace Platform {

// What waiting for a key came to.
enum class KeyEvent {
    Byte,
    EndOfInput,  // also after a signal that is to end the process
    Interruption // SIGINT: what was typed is not wanted
};

// While one stands, SIGINT, SIGTERM and SIGHUP wait until Read does, and end its waiting; a
// signal that the process was started to ignore stays ignored.  Only a program may have one,
// never a library; one at a time, and none beside an InterruptionGuard.  Afterwards the signals
// do what they did before, and SIGTERM or SIGHUP, had it come, does so then: in between the
// terminal can be put back into order.
class ZEBX_EXPORT Keyboard {
public:
    Keyboard();
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    // Waits for the next byte of the standard input; `byte` is set with KeyEvent::Byte alone.
    KeyEvent Read(unsigned char& byte);
};

} // namespace Platform
