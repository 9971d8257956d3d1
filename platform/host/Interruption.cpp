// SPDX-License-Identifier: MIT
#include "platform/host/Interruption.h"

#include <array>
#include <atomic>
#include <signal.h>

namespace Platform {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> g_requested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a handler may touch nothing else");

std::array<struct sigaction, kSignals.size()> g_before;

extern "C" void OnSignal(int) {
    RequestInterruption();
    // Whoever asks twice does not want to wait for the file under way.
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        if (g_before[i].sa_handler != SIG_IGN)
            signal(kSignals[i], SIG_DFL);
    }
}

} // namespace

bool IsInterrupted() {
    return g_requested.load(std::memory_order_relaxed);
}

void RequestInterruption() {
    g_requested.store(true, std::memory_order_relaxed);
}

InterruptionGuard::InterruptionGuard() {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &g_before[i]);
        if (g_before[i].sa_handler != SIG_IGN)
            sigaction(kSignals[i], &action, nullptr);
    }
}

InterruptionGuard::~InterruptionGuard() {
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &g_before[i], nullptr);
    g_requested = false;
}

} // namespace Platform
