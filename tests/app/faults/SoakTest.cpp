// SPDX-License-Identifier: MIT
// Two workstations push and four pull at once, for some seconds, or for as many as
// ZEBX_SOAK_SECONDS says: nobody waits for ever, nobody sees half a push of a kind, and
// nothing acknowledged is missing in the end.
#include "app/Station.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace AppTest;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kFiles = 8;
constexpr int kPushers = 2;
constexpr int kPullers = 4;
// Ten seconds of waiting for other writers, and the work itself on a busy machine.
constexpr auto kLongest = std::chrono::seconds(60);

std::chrono::seconds Length() {
    const char* seconds = std::getenv("ZEBX_SOAK_SECONDS");
    return std::chrono::seconds(seconds ? std::atoi(seconds) : 5);
}

// All files of one push hold its mark.
std::string Marked(const std::string& mark, int file) {
    return mark + "\n" + std::string(std::size_t(20'000 + file), 'x');
}

fs::path FileOf(const Station& station, int file) {
    return station.Support() / "nodes" / ("n" + std::to_string(file) + ".dwg");
}

void WriteMarked(const Station& station, const std::string& mark) {
    for (int file = 0; file < kFiles; ++file)
        Write(FileOf(station, file), Marked(mark, file));
}

// The mark that all files hold whole; empty when they do not.
std::string MarkOf(const Station& station) {
    const std::string first = Bytes(FileOf(station, 0));
    const std::string mark = first.substr(0, first.find('\n'));
    for (int file = 0; file < kFiles; ++file)
        if (Bytes(FileOf(station, file)) != Marked(mark, file))
            return {};
    return mark;
}

struct Count {
    int done = 0;
    int busy = 0;
    double longest = 0; // seconds
};

// What a child counted, or nothing when something was wrong.
void Leave(const Station& station, const Count& count) {
    Write(station.Folder() / "count", std::to_string(count.done) + " " +
                                          std::to_string(count.busy) + " " +
                                          std::to_string(count.longest));
}

bool IsBusy(const Ended& run) {
    return run.status == 4 && run.err.find("Somebody else is writing") != std::string::npos;
}

class Soak : public testing::Test {
protected:
    Soak() {
        for (auto& station : stations) {
            EXPECT_EQ(station.Zebx({"init"}).status, 0);
            EXPECT_EQ(station.Zebx({"connect", "--create", Address()}).status, 0);
        }
        WriteMarked(stations[0], "0-0");
        EXPECT_EQ(stations[0].Zebx({"push", "ncf:002_NODE"}).status, 0);
    }

    std::string Address() const { return "sqlite:" + Database().string(); }
    fs::path Database() const { return common.Native() / "net.db"; }

    // Runs `verb` until the end; false when a run went wrong in any other way than Busy.
    template<typename Before, typename After>
    static bool Repeat(const Station& station, const char* verb, Before before, After after) {
        Count count;
        const auto end = Clock::now() + Length();
        for (int round = 1; Clock::now() < end; ++round) {
            before(round);
            const auto start = Clock::now();
            const Ended run = station.Zebx({verb, "ncf:002_NODE"});
            const auto took = Clock::now() - start;
            count.longest = std::max(count.longest, std::chrono::duration<double>(took).count());
            const bool busy = IsBusy(run);
            if ((run.status != 0 && !busy) || took > kLongest || !after(round, run.status == 0)) {
                std::cerr << verb << " round " << round << " took "
                          << std::chrono::duration<double>(took).count() << " s\n"
                          << run << "\n";
                return false;
            }
            ++(busy ? count.busy : count.done);
        }
        Leave(station, count);
        return true;
    }

    bool Push(int number) const {
        const Station& station = stations[std::size_t(number)];
        std::string acknowledged;
        const bool fine = Repeat(
            station, "push",
            [&](int round) {
                WriteMarked(station, std::to_string(number) + "-" + std::to_string(round));
            },
            [&](int round, bool done) {
                if (done)
                    acknowledged += std::to_string(number) + "-" + std::to_string(round) + "\n";
                return true;
            });
        Write(station.Folder() / "acknowledged", acknowledged);
        return fine;
    }

    bool Pull(int number) const {
        const Station& station = stations[std::size_t(number)];
        return Repeat(
            station, "pull", [](int) {},
            [&](int, bool done) { return !done || !MarkOf(station).empty(); });
    }

    // Every mark that the repository's history holds, and whether each is of a whole push.
    std::map<std::string, int> MarksInHistory() const {
        std::map<std::string, int> marks;
        sqlite3* database = nullptr;
        sqlite3_stmt* rows = nullptr;
        EXPECT_EQ(sqlite3_open_v2(Database().c_str(), &database, SQLITE_OPEN_READONLY, nullptr),
                  SQLITE_OK);
        EXPECT_EQ(
            sqlite3_prepare_v2(database,
                               "SELECT substr(CAST(c.bytes AS TEXT), 1, 20) FROM stored_file f "
                               "JOIN content c ON c.hash = f.hash",
                               -1, &rows, nullptr),
            SQLITE_OK);
        while (sqlite3_step(rows) == SQLITE_ROW) {
            const std::string text = reinterpret_cast<const char*>(sqlite3_column_text(rows, 0));
            ++marks[text.substr(0, text.find('\n'))];
        }
        sqlite3_finalize(rows);
        sqlite3_close(database);
        return marks;
    }

    TemporaryFolder common;
    Station stations[kPushers + kPullers];
};

} // namespace

TEST_F(Soak, NobodyWaitsForEverSeesHalfAPushOrLosesOne) {
    std::vector<pid_t> children;
    for (int number = 0; number < kPushers + kPullers; ++number) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            std::_Exit(number < kPushers ? !Push(number) : !Pull(number));
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    const auto marks = MarksInHistory();
    for (const auto& [mark, files] : marks)
        EXPECT_EQ(files, kFiles) << "half of the push " << mark;
    for (int number = 0; number < kPushers; ++number) {
        std::istringstream acknowledged(Bytes(stations[number].Folder() / "acknowledged"));
        for (std::string mark; std::getline(acknowledged, mark);)
            EXPECT_TRUE(marks.contains(mark)) << mark;
    }
    for (const Station& station : stations)
        if (fs::exists(station.Folder() / "count"))
            std::cout << (&station < stations + kPushers ? "push" : "pull")
                      << ": done, busy, longest (s): " << Bytes(station.Folder() / "count") << "\n";
    EXPECT_EQ(stations[0].Zebx({"repo", "check"}).status, 0);
}
