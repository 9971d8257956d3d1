// SPDX-License-Identifier: MIT
// Programs of a database server, run for the tests: as an ordinary user, which PostgreSQL insists
// on, and never longer than the thread lives that started them.
#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

using Words = std::vector<std::string>;

// Whose the server's processes and files are: of "nobody" where root runs the tests.
uid_t ServerUser();
// Gives a folder with everything in it to that user.
void GiveToServerUser(const std::filesystem::path& folder);

// Runs a program to its end; throws what it wrote when it failed.
void RunServerProgram(const Words& words, const std::string& input = {});

// A program that goes on running.
class ServerProcess {
public:
    // What it writes is appended to `log`.
    ServerProcess(const Words& words, const std::filesystem::path& log);
    // Kills what still runs.
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    pid_t Id() const { return m_id; }
    bool IsRunning();
    void Signal(int signal) const;
    // The same for the process and all that it started; those that are killed are gone then, the
    // first one but for Wait.
    void SignalAll(int signal) const;
    void Wait();

private:
    pid_t m_id = -1;
};
