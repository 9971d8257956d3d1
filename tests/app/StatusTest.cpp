// SPDX-License-Identifier: MIT
#include "Station.h"
#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

// The value behind a label.
std::string ValueOf(const std::string& text, const std::string& label) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(label + "  "))
            return line.substr(line.find_first_not_of(' ', label.size()));
    }
    return "no " + label;
}

TEST(Status, ShowsWhatIsSetUp) {
    const Station station;
    ASSERT_EQ(station.Zebx({"init"}).status, 0);
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    Write(station.Support() / "nodes/a.dwg", "12345");
    ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    const Ended run = station.Zebx({"status"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(ValueOf(run.out, "Installation"),
              fs::weakly_canonical(ZEBX_BUILD_DIR "/lib/zebx").string() + "/");
    EXPECT_EQ(ValueOf(run.out, "Support folder"), station.Support().string() + "/");
    EXPECT_EQ(ValueOf(run.out, "Settings"), station.Ini().string());
    EXPECT_EQ(ValueOf(run.out, "Language"), "en");
    EXPECT_THAT(ValueOf(run.out, "Storage plug-in"),
                HasSubstr("(ZEBXRepositoryClientPlugin_Sql.arx)"));
    EXPECT_EQ(ValueOf(run.out, "Repository"), "sqlite:" + station.Repository().string());
    EXPECT_THAT(ValueOf(run.out, "Engine"), HasSubstr("SQLite 3."));
    EXPECT_EQ(ValueOf(run.out, "Reachable"), "yes");
    EXPECT_EQ(ValueOf(run.out, "Rights"), "you may read and write");
    EXPECT_THAT(ValueOf(run.out, "Revision"), MatchesRegex("[1-9][0-9]*, 2.*Z, .+"));
    EXPECT_EQ(ValueOf(run.out, "Files"), "1");
    EXPECT_EQ(ValueOf(run.out, "Content"), "5 bytes, history included");
}

TEST(Status, OfANewWorkstationSaysWhatToType) {
    const Station station;
    const Ended run = station.Zebx({"status"});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_EQ(ValueOf(run.out, "Settings"), station.Ini().string() + " (not there yet)");
    EXPECT_EQ(ValueOf(run.out, "Reachable"), "no");
    EXPECT_THAT(run.out, HasSubstr("zebx init"));
    EXPECT_THAT(run.err, HasSubstr("zebx connect --create"));
}

TEST(Status, SpeaksCroatian) {
    Station station;
    station.Set("ZEBX_LANGUAGE", "hr");
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    const Ended run = station.Zebx({"status"});
    EXPECT_EQ(ValueOf(run.out, "Prava"), "smijete čitati i pisati");
    EXPECT_EQ(ValueOf(run.out, "Jezik"), "hr");
}

TEST(Status, AProblemOfTheSettingsIsToldOnceWithFileAndLine) {
    const Station station;
    Write(station.Ini(), "[general]\nlanguage = xx\n");
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    const Ended run = station.Zebx({"status"});
    EXPECT_EQ(run.status, 0) << run;
    const std::string place = "Warning: " + station.Ini().string() + ":2: ";
    const auto first = run.err.find(place);
    EXPECT_NE(first, std::string::npos) << run;
    EXPECT_EQ(run.err.find(place, first + 1), std::string::npos) << run;
}

TEST(Status, WithABrokenInstallationSaysWhereTheTextsShouldBe) {
    const Station station;
    const Ended run = station.Zebx({"status", "--install", "/nowhere"});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, HasSubstr("/nowhere/messages/en is missing"));
}

} // namespace
