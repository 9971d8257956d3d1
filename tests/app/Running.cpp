// SPDX-License-Identifier: MIT
#include "Running.h"

#include <fcntl.h>
#include <fstream>
#include <sched.h>
#include <signal.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace AppTest {
namespace {

constexpr int kPipeBytes = 4096;

// The mask of the signals that the process has handlers for.
unsigned long long CaughtSignals(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigCgt:"))
            return std::stoull(line.substr(7), nullptr, 16);
    }
    return 0;
}

} // namespace

Running::Running(const Station& station, const std::vector<std::string>& arguments)
    : m_out((station.Folder() / "running-out").string()) {
    std::vector<std::string> words = {(fs::path(ZEBX_BUILD_DIR) / "bin/zebx").string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = station.Environment();
    std::vector<char*> wordPointers = Pointers(words);
    std::vector<char*> environmentPointers = Pointers(environment);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    // Small, so that a program that is not read from soon stands still.
    if (fcntl(ends[1], F_SETPIPE_SZ, kPipeBytes) < 0)
        throw std::runtime_error("no small pipe");
    m_child = fork();
    if (m_child == 0) {
        const int out = open(m_out.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (dup2(out, 1) == 1 && dup2(ends[1], 2) == 2)
            execve(wordPointers[0], wordPointers.data(), environmentPointers.data());
        _exit(126);
    }
    close(ends[1]);
    m_errors = ends[0];
}

Running::~Running() {
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    close(m_errors);
}

bool Running::ReadMore() {
    char buffer[256];
    const ssize_t size = read(m_errors, buffer, sizeof buffer);
    if (size > 0)
        m_err.append(buffer, static_cast<std::size_t>(size));
    return size > 0;
}

bool Running::WaitFor(const std::string& text) {
    while (m_err.find(text) == std::string::npos) {
        if (!ReadMore())
            return false;
    }
    return true;
}

void Running::Signal(int signal) const {
    kill(m_child, signal);
}

bool Running::WaitUntilItStandsStill() const {
    constexpr int kAlmostFull = kPipeBytes - 64; // a line does not fit
    int told = 0;
    while (ioctl(m_errors, FIONREAD, &told) == 0 && told < kAlmostFull) {
        siginfo_t ended = {};
        if (waitid(P_PID, static_cast<id_t>(m_child), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            ended.si_pid == m_child)
            return false;
        sched_yield();
    }
    return true;
}

void Running::WaitUntilNotCaught(int signal) const {
    while (CaughtSignals(m_child) >> (signal - 1) & 1)
        sched_yield();
}

Ended Running::Finish() {
    while (ReadMore()) {
    }
    int status = 0;
    waitpid(m_child, &status, 0);
    m_child = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), Bytes(m_out), m_err};
}

} // namespace AppTest
