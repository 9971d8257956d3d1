// SPDX-License-Identifier: MIT
// A password stands where its user wrote it and nowhere else.
#include "../Running.h"
#include "ServerStation.h"

#include <gmock/gmock.h>

#include <csignal>

using namespace AppTest;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// The files below `folder` that hold `text`.
std::vector<std::string> Holding(const fs::path& folder, const std::string& text) {
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && Bytes(entry.path()).find(text) != std::string::npos)
            found.push_back(entry.path().string());
    return found;
}

// What the command lines of all processes hold, and what other users may see of them.
std::vector<std::string> CommandLinesHolding(const std::string& text) {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "cmdline", std::ios::binary);
        const std::string words{std::istreambuf_iterator<char>(file), {}};
        if (words.find(text) != std::string::npos)
            found.push_back(entry.path().string() + ": " + words);
    }
    return found;
}

class Passwords : public testing::Test {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        at = std::make_unique<ServerStation>();
    }
    // Runs the program and looks at what it says.
    Ended Run(const std::vector<std::string>& arguments) const {
        const Ended run = at->station.Zebx(arguments);
        EXPECT_THAT(run.out, Not(HasSubstr(kPassword))) << arguments[0];
        EXPECT_THAT(run.err, Not(HasSubstr(kPassword))) << arguments[0];
        return run;
    }
    void ExpectNowhere(const std::string& password) const {
        auto files = Holding(at->station.Folder(), password);
        std::erase(files, at->PasswordFile().string());
        EXPECT_THAT(files, IsEmpty());
        EXPECT_THAT(at->server.Log(), Not(HasSubstr(password)));
    }

    std::unique_ptr<ServerStation> at;
};

TEST_F(Passwords, StandInNoOutputLogOrSettings) {
    at->Draw("first");
    EXPECT_EQ(Run({"connect", "--create", at->Uri()}).status, 0);
    for (const char* verb : {"push", "pull", "diff"})
        EXPECT_EQ(Run({verb, "ncf:001_LABEL", "ncf:002_NODE", "--verbose"}).status, 0) << verb;
    for (const char* verb : {"status", "ls", "doctor", "log"})
        EXPECT_EQ(Run({verb, "--verbose"}).status, 0) << verb;
    EXPECT_EQ(Run({"config", "show"}).status, 0);
    EXPECT_EQ(Run({"connect", at->Uri() + "&no_such_option=1"}).status, 3);
    EXPECT_EQ(Run({"connect", at->server.TcpUri("nobody")}).status, 5);
    at->server.Stop();
    EXPECT_EQ(Run({"push", "--verbose"}).status, 4);
    ExpectNowhere(kPassword);
}

TEST_F(Passwords, StandInNoOutputLogOrSettingsWhenTheyAreWrongOrInTheEnvironment) {
    at->Connect();
    const std::string wrong = "krivaZaporka0815";
    at->WritePassword(wrong);
    const Ended run = Run({"status", "--verbose"});
    EXPECT_EQ(run.status, 5) << run;
    EXPECT_THAT(run.err, Not(HasSubstr(wrong)));
    ExpectNowhere(wrong);
    at->station.Set("PGPASSWORD", kPassword);
    EXPECT_EQ(Run({"status", "--verbose"}).status, 0);
    ExpectNowhere(kPassword);
}

TEST_F(Passwords, StandInNoListOfProcesses) {
    at->Draw("first", 300);
    at->Connect();
    Running push(at->station, {"push", "ncf:002_NODE", "--progress", "always"});
    ASSERT_TRUE(push.WaitFor(" "));
    push.Signal(SIGSTOP);
    EXPECT_THAT(CommandLinesHolding(kPassword), IsEmpty());
    EXPECT_THAT(at->server.Run("SELECT string_agg(application_name || query, ' ') "
                               "FROM pg_stat_activity WHERE usename = 'keeper'"),
                Not(HasSubstr(kPassword)));
    push.Signal(SIGCONT);
    EXPECT_EQ(push.Finish().status, 0);
}

TEST_F(Passwords, AreRefusedInAnAddressAndNotRepeated) {
    // Another one: this test has it on command lines, where the one above looks meanwhile.
    const std::string typed = "otkucana-Zaporka-4712";
    const std::string place = "@127.0.0.1:" + std::to_string(at->server.Port()) + "/gis";
    // The address with P for the password and % for the place.
    const auto filled = [&](std::string pattern) {
        for (const auto& [gap, value] : {std::pair("P", typed), std::pair("%", place)}) {
            if (const auto found = pattern.find(gap); found != std::string::npos)
                pattern.replace(found, 1, value);
        }
        return pattern;
    };
    for (const std::string& address :
         {filled("postgresql://keeper:P%"), filled("postgresql://keeper%?password=P"),
          filled("postgresql://keeper%?sslpassword=P"), filled("postgresql://keeper:P@%")}) {
        const Ended run = Run({"connect", "--create", address, "--verbose"});
        EXPECT_EQ(run.status, 3) << address << '\n' << run;
        EXPECT_THAT(run.err, HasSubstr("pgpass")) << address;
        ExpectNowhere(typed);
    }
    // Addresses that nobody understands to their end.
    for (const std::string& address : {filled("postgresql://keeper%?passwor=x&password=P"),
                                       filled("postgresql://keeper:P@[::1/gis")}) {
        EXPECT_EQ(Run({"connect", "--create", address, "--verbose"}).status, 3) << address;
        ExpectNowhere(typed);
    }
}

} // namespace
