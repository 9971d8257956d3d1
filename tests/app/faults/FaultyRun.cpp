// SPDX-License-Identifier: MIT
#include "FaultyRun.h"

#include "SqliteCalls.h"
#include "app/Program.h"

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace AppTest {
namespace {

void TakeEnvironment(const Station& station) {
    for (const char* variable : {"ZEBX_CONFIG", "ZEBX_SUPPORT", "ZEBX_TRACE"})
        unsetenv(variable);
    setenv("ZEBX_INSTALL", ZEBX_BUILD_DIR "/lib/zebx", 1);
    for (const auto& [variable, value] : station.Variables())
        setenv(variable.c_str(), value.c_str(), 1);
}

// Watches until the process has ended, and then leaves what it saw.
class Watch {
public:
    explicit Watch(fs::path report) : m_report(std::move(report)) { WatchSqlite(&m_calls); }
    ~Watch() {
        WatchSqlite(nullptr);
        const std::vector<FailingCalls::Call> seen = m_calls.Seen();
        std::ofstream report(m_report);
        for (const auto& call : seen)
            report << call.name << ' ' << call.path << '\n';
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    FailingCalls& Calls() { return m_calls; }

private:
    fs::path m_report;
    FailingCalls m_calls;
};

[[noreturn]] void Become(const Station& station, const std::vector<std::string>& arguments,
                         const std::function<void(FailingCalls&)>& prepare) {
    TakeEnvironment(station);
    // Made before the program's own statics, so that it sees how they end.
    static Watch watch(station.Folder() / "calls");
    if (prepare)
        prepare(watch.Calls());
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const int status = App::RunProgram(arguments, in, out, err);
    std::ofstream(station.Folder() / "out") << out.str();
    std::ofstream(station.Folder() / "err") << err.str();
    std::exit(status);
}

std::vector<std::string> Lines(const fs::path& path) {
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::string Given(const fs::path& path) {
    return fs::exists(path) ? Bytes(path) : std::string();
}

} // namespace

FaultyEnd RunFaulty(const Station& station, const std::vector<std::string>& arguments,
                    const std::function<void(FailingCalls&)>& prepare) {
    for (const char* name : {"out", "err", "calls"})
        fs::remove(station.Folder() / name);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no child process");
    if (child == 0)
        Become(station, arguments, prepare);
    int status = 0;
    waitpid(child, &status, 0);
    FaultyEnd end;
    end.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    end.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    end.out = Given(station.Folder() / "out");
    end.err = Given(station.Folder() / "err");
    end.calls = Lines(station.Folder() / "calls");
    return end;
}

} // namespace AppTest
