// SPDX-License-Identifier: MIT
#include "platform/host/Keyboard.h"

#include <array>
#include <cerrno>
#include <signal.h>
#include <sys/select.h>
#include <unistd.h>

namespace Platform {
namespace {

constexpr int kStandardInput = 0;
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t g_signal = 0; // the last one that came
sigset_t g_maskBefore;
std::array<struct sigaction, kSignals.size()> g_before;

extern "C" void OnSignalAtPrompt(int signal) {
    // What ends the process is not forgotten over a Ctrl-C.
    if (g_signal == 0 || g_signal == SIGINT)
        g_signal = signal;
}

// Until there is a byte, or the end, to read; false for a signal.
bool WaitForInput() {
    fd_set input;
    FD_ZERO(&input);
    FD_SET(kStandardInput, &input);
    // The signals come through here alone, so that none slips in between a look and a wait.
    const int ready =
        ::pselect(kStandardInput + 1, &input, nullptr, nullptr, nullptr, &g_maskBefore);
    return ready >= 0 || errno != EINTR;
}

} // namespace

Keyboard::Keyboard() {
    g_signal = 0;
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : kSignals)
        sigaddset(&held, signal);
    ::pthread_sigmask(SIG_BLOCK, &held, &g_maskBefore);
    struct sigaction action = {};
    action.sa_handler = OnSignalAtPrompt;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], nullptr, &g_before[i]);
        if (g_before[i].sa_handler != SIG_IGN)
            ::sigaction(kSignals[i], &action, nullptr);
    }
}

Keyboard::~Keyboard() {
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &g_before[i], nullptr);
    ::pthread_sigmask(SIG_SETMASK, &g_maskBefore, nullptr);
    if (g_signal != 0 && g_signal != SIGINT)
        ::raise(g_signal);
}

KeyEvent Keyboard::Read(unsigned char& byte) {
    for (;;) {
        if (g_signal != 0 && g_signal != SIGINT)
            return KeyEvent::EndOfInput;
        if (g_signal == SIGINT) {
            g_signal = 0;
            return KeyEvent::Interruption;
        }
        if (!WaitForInput())
            continue;
        const ssize_t size = ::read(kStandardInput, &byte, 1);
        return size == 1 ? KeyEvent::Byte : KeyEvent::EndOfInput;
    }
}

} // namespace Platform
