// SPDX-License-Identifier: MIT
// Workstations of a test, each a process of its own with the backend as the manager uses it.
#pragma once

#include "ServerFailure.h"
#include "storage/SqlBackend.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

namespace Storage {

// What one station wrote down, "what number" a line, and whether the test wants it to end.
class Notes {
public:
    Notes(std::filesystem::path folder, const std::string& name)
        : m_folder(std::move(folder)), m_lines(m_folder / name, std::ios::app) {}

    void Write(const std::string& what, std::int64_t number) {
        m_lines << what << ' ' << number << std::endl;
    }
    bool ShallEnd() const { return std::filesystem::exists(m_folder / "end"); }

private:
    std::filesystem::path m_folder;
    std::ofstream m_lines;
};

// The processes, from outside.
class WorkingStations {
public:
    ~WorkingStations() {
        for (const auto& [name, process] : m_processes)
            kill(process, SIGKILL);
    }

    void Start(const std::string& name, const std::string& uri,
               const std::function<void(SqlBackend&, Notes&)>& work) {
        std::cout.flush();
        const pid_t child = fork();
        if (child == 0)
            std::_Exit(Run(name, uri, work));
        m_processes.emplace_back(name, child);
    }
    // Tells all to end and waits; false when one failed, or did not end in time.
    bool End(std::chrono::seconds time) {
        const std::ofstream wish(m_folder.Native() / "end");
        const auto end = std::chrono::steady_clock::now() + time;
        bool good = true;
        for (const auto& [name, process] : m_processes) {
            int status = 0;
            while (waitpid(process, &status, WNOHANG) == 0) {
                if (std::chrono::steady_clock::now() > end) {
                    std::cout << name << " does not end\n";
                    kill(process, SIGKILL);
                    waitpid(process, &status, 0);
                    break;
                }
                usleep(10'000);
            }
            if (status != 0)
                std::cout << name << " ended with wait status " << status << '\n';
            good = good && status == 0;
        }
        m_processes.clear();
        return good;
    }
    // The numbers that a station wrote down behind that word.
    std::vector<std::int64_t> Noted(const std::string& name, const std::string& what) const {
        std::vector<std::int64_t> numbers;
        std::ifstream file(m_folder.Native() / name);
        std::string word;
        for (std::int64_t number = 0; file >> word >> number;)
            if (word == what)
                numbers.push_back(number);
        return numbers;
    }

private:
    int Run(const std::string& name, const std::string& uri,
            const std::function<void(SqlBackend&, Notes&)>& work) const {
        try {
            const auto access = boost::make_shared<RepositoryAccess>();
            EnglishMessages english;
            access->SetMsgProvider(&english);
            access->SetSettingsPath(Platform::AsFolder(
                Platform::PathFromNative((m_folder.Native() / (name + "-settings")).string())));
            access->Connect(Platform::FromUtf8(uri), false);
            SqlBackend backend(access);
            Notes notes(m_folder.Native(), name);
            work(backend, notes);
        } catch (const std::exception& error) {
            std::cout << name << ": " << error.what() << std::endl;
            return 1;
        }
        return testing::Test::HasFailure() ? 1 : 0;
    }

    TemporaryFolder m_folder;
    std::vector<std::pair<std::string, pid_t>> m_processes;
};

} // namespace Storage
