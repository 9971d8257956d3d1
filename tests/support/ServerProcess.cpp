// SPDX-License-Identifier: MIT
#include "support/ServerProcess.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

std::vector<char*> Pointers(Words& words) {
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

bool BecomeServerUser() {
    return geteuid() != 0 ||
           (setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 && setuid(kNobody) == 0);
}

// Nothing of the environment of whoever runs the tests reaches the server, PGDATA least of all.
pid_t Start(Words words, const fs::path& log, const fs::path& input) {
    Words environment = {"PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8", "TZ=UTC", "HOME=/"};
    const std::vector<char*> arguments = Pointers(words);
    const std::vector<char*> variables = Pointers(environment);
    const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    const int in = open(input.c_str(), O_RDONLY | O_CLOEXEC);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        // After the change of the user, which would undo it.
        const bool ready = BecomeServerUser() && prctl(PR_SET_PDEATHSIG, SIGQUIT) == 0 &&
                           getppid() == parent && chdir("/") == 0;
        if (ready && setpgid(0, 0) == 0 && dup2(in, 0) == 0 && dup2(out, 1) == 1 &&
            dup2(out, 2) == 2)
            execve(arguments[0], arguments.data(), variables.data());
        _exit(126);
    }
    close(out);
    close(in);
    if (child < 0)
        throw std::runtime_error("no process for " + words[0]);
    return child;
}

pid_t ParentOf(const fs::path& processFolder) {
    std::ifstream file(processFolder / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t name = line.rfind(')');
    if (name == std::string::npos)
        return -1;
    std::istringstream rest(line.substr(name + 1));
    std::string state;
    pid_t parent = -1;
    rest >> state >> parent;
    return parent;
}

std::vector<pid_t> ChildrenOf(pid_t parent) {
    std::vector<pid_t> children;
    for (const auto& entry : fs::directory_iterator("/proc"))
        if (const pid_t id = std::atoi(entry.path().filename().c_str()); id > 0)
            if (ParentOf(entry.path()) == parent)
                children.push_back(id);
    return children;
}

// Its sockets are closed then.
void WaitForEnd(int process) {
    pollfd end{process, POLLIN, 0};
    while (poll(&end, 1, -1) < 0) {
    }
}

} // namespace

uid_t ServerUser() {
    return geteuid() == 0 ? kNobody : geteuid();
}

void GiveToServerUser(const fs::path& folder) {
    if (geteuid() != 0)
        return;
    const auto give = [](const fs::path& path) {
        if (lchown(path.c_str(), kNobody, kNobody) != 0)
            throw std::runtime_error("cannot give away " + path.string());
    };
    give(folder);
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        give(entry.path());
}

void RunServerProgram(const Words& words, const std::string& input) {
    std::string name = (fs::temp_directory_path() / "zebx-run-XXXXXX").string();
    close(mkostemp(name.data(), O_CLOEXEC));
    std::ofstream(name + "-in") << input;
    int status = 0;
    waitpid(Start(words, name, name + "-in"), &status, 0);
    std::ostringstream written;
    written << std::ifstream(name).rdbuf();
    fs::remove(name);
    fs::remove(name + "-in");
    if (status != 0)
        throw std::runtime_error(words[0] + " failed: " + written.str());
}

ServerProcess::ServerProcess(const Words& words, const fs::path& log)
    : m_id(Start(words, log, "/dev/null")) {}

ServerProcess::~ServerProcess() {
    if (!IsRunning())
        return;
    SignalAll(SIGKILL);
    Wait();
}

bool ServerProcess::IsRunning() {
    if (m_id > 0 && waitpid(m_id, nullptr, WNOHANG) != 0)
        m_id = -1;
    return m_id > 0;
}

void ServerProcess::Signal(int signal) const {
    if (m_id > 0)
        kill(m_id, signal);
}

void ServerProcess::SignalAll(int signal) const {
    if (m_id <= 0)
        return;
    // It starts no other ones from here on.
    kill(m_id, SIGSTOP);
    std::vector<int> children;
    for (const pid_t child : ChildrenOf(m_id)) {
        children.push_back(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
        kill(child, signal);
    }
    kill(m_id, signal);
    for (const int child : children) {
        if (child >= 0 && signal == SIGKILL)
            WaitForEnd(child);
        close(child);
    }
}

void ServerProcess::Wait() {
    if (m_id > 0)
        waitpid(m_id, nullptr, 0);
    m_id = -1;
}
