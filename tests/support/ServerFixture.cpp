// SPDX-License-Identifier: MIT
// server_fixture start|stop FILE: starts the server that the tests of one run of CTest share, and
// writes into FILE where it stands; stops it again.  It ends by itself when CTest does.
//
// On a machine without a server's programs it starts nothing: the tests say so themselves.
#include "support/PrivateServer.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

int WatchProcess(pid_t process) {
    return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

void WaitFor(int one, int other) {
    pollfd ends[] = {{one, POLLIN, 0}, {other, POLLIN, 0}};
    while (poll(ends, 2, -1) < 0) {
    }
}

void Publish(const fs::path& file, const PrivateServer& server) {
    fs::create_directories(file.parent_path());
    const std::string temporary = file.string() + ".new";
    std::ofstream(temporary) << server.Folder().string() << '\n'
                             << server.Port() << '\n'
                             << getpid() << '\n';
    fs::rename(temporary, file);
}

// Tells `ready` what went wrong, or nothing, and stays until it is stopped.
int Serve(const fs::path& file, pid_t ctest, int ready) {
    setsid();
    sigset_t stop;
    sigemptyset(&stop);
    sigaddset(&stop, SIGTERM);
    sigprocmask(SIG_BLOCK, &stop, nullptr);
    const int nothing = open("/dev/null", O_RDWR);
    for (const int standard : {0, 1, 2})
        dup2(nothing, standard);
    const int end = WatchProcess(ctest);
    try {
        const PrivateServer server;
        Publish(file, server);
        close(ready);
        WaitFor(end, signalfd(-1, &stop, SFD_CLOEXEC));
        fs::remove(file);
        return 0;
    } catch (const std::exception& error) {
        [[maybe_unused]] const auto told = write(ready, error.what(), strlen(error.what()));
        return 1;
    }
}

void Stop(const fs::path& file) {
    std::string folder;
    int port = 0;
    pid_t process = 0;
    std::ifstream stream(file);
    if (!(stream >> folder >> port >> process) || !fs::exists(folder))
        return;
    const int end = WatchProcess(process);
    if (end >= 0 && kill(process, SIGTERM) == 0)
        WaitFor(end, end);
}

int Start(const fs::path& file) {
    if (const std::string why = PrivateServer::WhyNot(); !why.empty()) {
        std::cout << why << '\n';
        return 0;
    }
    Stop(file);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return 1;
    const pid_t ctest = getppid();
    if (fork() == 0)
        _exit(Serve(file, ctest, ends[1]));
    close(ends[1]);
    std::string failure(4096, '\0');
    const ssize_t size = read(ends[0], failure.data(), failure.size());
    if (size > 0)
        std::cerr << failure.substr(0, static_cast<std::size_t>(size)) << '\n';
    return size == 0 ? 0 : 1;
}

} // namespace

int main(int count, char** words) {
    const std::string verb = count == 3 ? words[1] : "";
    if (verb == "start")
        return Start(words[2]);
    if (verb == "stop") {
        Stop(words[2]);
        return 0;
    }
    std::cerr << "usage: server_fixture start|stop FILE\n";
    return 2;
}
