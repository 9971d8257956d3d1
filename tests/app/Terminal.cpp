// SPDX-License-Identifier: MIT
#include "Terminal.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <stdexcept>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace AppTest {

Terminal::Terminal(const Station& station, const std::vector<std::string>& arguments) {
    m_terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_terminal < 0 || grantpt(m_terminal) != 0 || unlockpt(m_terminal) != 0)
        throw std::runtime_error("no pseudo-terminal");
    const std::string name = ptsname(m_terminal);
    std::vector<std::string> words = {(fs::path(ZEBX_BUILD_DIR) / "bin/zebx").string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = station.Environment();
    environment.emplace_back("TERM=xterm");
    const std::vector<char*> wordPointers = Pointers(words);
    const std::vector<char*> environmentPointers = Pointers(environment);
    m_child = fork();
    if (m_child != 0)
        return;
    // A session of its own, so that this terminal's Ctrl-C reaches it.
    setsid();
    const int terminal = open(name.c_str(), O_RDWR);
    if (ioctl(terminal, TIOCSCTTY, 0) == 0 && dup2(terminal, 0) == 0 && dup2(terminal, 1) == 1 &&
        dup2(terminal, 2) == 2)
        execve(wordPointers[0], wordPointers.data(), environmentPointers.data());
    _exit(126);
}

Terminal::~Terminal() {
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    close(m_terminal);
}

void Terminal::Type(const std::string& keys) const {
    if (write(m_terminal, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        throw std::runtime_error("the terminal takes no keys");
}

bool Terminal::ReadMore() {
    char buffer[256];
    const ssize_t size = read(m_terminal, buffer, sizeof buffer); // fails when nobody is there
    if (size > 0)
        m_shown.append(buffer, static_cast<std::size_t>(size));
    return size > 0;
}

bool Terminal::WaitFor(const std::string& text) {
    while (m_shown.find(text) == std::string::npos) {
        if (!ReadMore())
            return false;
    }
    m_shown.erase(0, m_shown.find(text) + text.size());
    return true;
}

bool Terminal::WaitForPrompt() {
    if (!WaitFor("Command: "))
        return false;
    termios settings = {};
    while (tcgetattr(m_terminal, &settings) == 0 && (settings.c_lflag & ICANON) != 0)
        sched_yield();
    return true;
}

void Terminal::Signal(int signal) const {
    kill(m_child, signal);
}

Ended Terminal::Finish() {
    while (ReadMore()) {
    }
    int status = 0;
    waitpid(m_child, &status, 0);
    m_child = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), m_shown, {}};
}

} // namespace AppTest
