// SPDX-License-Identifier: MIT
#include "Station.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <iterator>
#include <ostream>
#include <stdlib.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace AppTest {
namespace {

constexpr unsigned kNobody = 65534;

const fs::path kProgram = fs::path(ZEBX_BUILD_DIR) / "bin/zebx";

bool Redirect(const fs::path& path, int descriptor) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    return file >= 0 && dup2(file, descriptor) >= 0;
}

bool ReadFrom(const fs::path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    return file >= 0 && dup2(file, 0) >= 0;
}

} // namespace

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

struct Station::Start {
    fs::path program;
    std::vector<std::string> arguments;
    std::vector<std::string> environment;
    fs::path in; // empty: that of the test
    fs::path out;
    fs::path err;
    bool asNobody = false;

    // Turns this process into the program.
    [[noreturn]] void Become() {
        arguments.insert(arguments.begin(), program.string());
        std::vector<char*> argumentPointers = Pointers(arguments);
        std::vector<char*> environmentPointers = Pointers(environment);
        const bool redirected =
            (in.empty() || ReadFrom(in)) && Redirect(out, 1) && Redirect(err, 2);
        const bool mayStart =
            redirected && (!asNobody || (setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 &&
                                         setuid(kNobody) == 0));
        if (mayStart)
            execve(program.c_str(), argumentPointers.data(), environmentPointers.data());
        _exit(126);
    }
};

std::ostream& operator<<(std::ostream& stream, const Ended& run) {
    return stream << "status " << run.status << "\n--- out\n"
                  << run.out << "--- err\n"
                  << run.err << "---";
}

std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

void Write(const fs::path& path, std::string_view bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

Station::Station() {
    Set("XDG_CONFIG_HOME", (Folder() / "config").string());
    Set("XDG_DATA_HOME", (Folder() / "data").string());
    Set("XDG_STATE_HOME", (Folder() / "state").string());
    Set("ZEBX_LANGUAGE", "en");
    // What a sanitized build needs to find its own way.
    for (const char* variable : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* value = getenv(variable))
            Set(variable, value);
    }
}

Station::Start Station::StartOf(const fs::path& program,
                                const std::vector<std::string>& arguments) const {
    return {program, arguments, Environment(), {}, Folder() / "out", Folder() / "err"};
}

std::vector<std::string> Station::Environment() const {
    std::vector<std::string> environment;
    for (const auto& [variable, value] : m_variables)
        environment.emplace_back(variable).append("=").append(value);
    return environment;
}

Ended Station::Finish(Start start) {
    const pid_t child = fork();
    if (child == 0)
        start.Become();
    int status = 0;
    waitpid(child, &status, 0);
    const auto given = [](const fs::path& path) {
        return fs::is_regular_file(path) ? Bytes(path) : std::string();
    };
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, given(start.out), given(start.err)};
}

Ended Station::Zebx(const std::vector<std::string>& arguments) const {
    return Finish(StartOf(kProgram, arguments));
}

Ended Station::ZebxKilledAfter(std::chrono::microseconds delay,
                               const std::vector<std::string>& arguments) const {
    Start start = StartOf(kProgram, arguments);
    const pid_t child = fork();
    if (child == 0)
        start.Become();
    // Where in its work the program is then is left to chance on purpose.
    std::this_thread::sleep_for(delay);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Bytes(start.out), Bytes(start.err)};
}

Ended Station::ZebxAsNobody(const std::vector<std::string>& arguments) const {
    const fs::path copy = Folder() / "program";
    if (!fs::exists(copy)) {
        fs::create_directories(copy / "lib");
        fs::copy(fs::path(ZEBX_BUILD_DIR) / "bin", copy / "bin");
        fs::copy(fs::path(ZEBX_BUILD_DIR) / "lib/zebx", copy / "lib/zebx",
                 fs::copy_options::recursive);
        fs::permissions(Folder(), fs::perms(0755));
    }
    Start start = StartOf(copy / "bin/zebx", arguments);
    start.asNobody = true;
    return Finish(std::move(start));
}

Ended Station::ZebxWritingTo(const fs::path& out, const std::vector<std::string>& arguments) const {
    Start start = StartOf(kProgram, arguments);
    start.out = out;
    return Finish(std::move(start));
}

Ended Station::ZebxReading(const std::string& input,
                           const std::vector<std::string>& arguments) const {
    Start start = StartOf(kProgram, arguments);
    start.in = Folder() / "in";
    Write(start.in, input);
    return Finish(std::move(start));
}

Ended Station::ZebxOnATerminal(const std::vector<std::string>& arguments) const {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0)
        throw std::runtime_error("no pseudo-terminal");
    Start start = StartOf(kProgram, arguments);
    start.err = ptsname(terminal);
    // Held open, so that the terminal is not hung up before it is read.
    const int other = open(start.err.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    Ended ended = Finish(std::move(start));
    close(other);
    char buffer[4096];
    for (ssize_t size = 0; (size = read(terminal, buffer, sizeof buffer)) > 0;)
        ended.err.append(buffer, std::size_t(size));
    close(terminal);
    return ended;
}

fs::path InstallationWithoutPlugin(const Station& station) {
    const fs::path folder = station.Folder() / "installation";
    fs::create_directories(folder);
    fs::copy(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/messages", folder / "messages",
             fs::copy_options::recursive);
    return folder;
}

} // namespace AppTest
