// SPDX-License-Identifier: MIT
#include "platform/window/InterruptionWatch.h"

#include "platform/host/Interruption.h"
#include "platform/window/Busy.h"
#include "platform/window/DialogWindow.h"

namespace Platform {
namespace {

constexpr int kBetweenLooksMs = 100; // a signal handler may not wake the window system itself

} // namespace

InterruptionWatch::InterruptionWatch(DialogWindow& window) {
    QObject::connect(&m_timer, &QTimer::timeout, &window, [&window] {
        if (IsInterrupted() && !IsWorking(window))
            window.End(kIdCancel);
    });
    m_timer.start(kBetweenLooksMs);
}

} // namespace Platform
