// SPDX-License-Identifier: MIT
#include "Content.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

class Ls : public testing::Test {
protected:
    Ls() {
        EXPECT_EQ(station.Zebx({"init"}).status, 0);
        EXPECT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    }
    Station station;
};

TEST_F(Ls, AnEmptyRepositoryIsATotalOfNothing) {
    const Ended run = station.Zebx({"ls"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "In all: 0 stored, 0 bytes.\n");
}

TEST_F(Ls, ShowsKindSizeRevisionTimeAndFile) {
    Write(station.Support() / "nodes/b.dwg", "12345");
    Write(station.Support() / "nodes/A b, č.DWG", "123");
    ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    Write(station.Support() / "GeneralSettings.xml", "<gs/>");
    ASSERT_EQ(station.Zebx({"push", "gs"}).status, 0);
    const Ended run = station.Zebx({"ls"});
    EXPECT_EQ(run.status, 0) << run;
    const std::string time = "[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+";
    EXPECT_THAT(Lines(run.out),
                ElementsAre(MatchesRegex("Kind +Bytes  Revision  Time \\(UTC\\) +File"),
                            MatchesRegex("ncf:002_NODE +3 +[0-9]+  " + time + "  A b, č\\.DWG"),
                            MatchesRegex("ncf:002_NODE +5 +[0-9]+  " + time + "  b\\.dwg"),
                            MatchesRegex("gs +5 +[0-9]+  " + time), "In all: 3 stored, 13 bytes."));
}

TEST_F(Ls, ASelectionLeavesTheRestOut) {
    GenerateContent(station.Support());
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    EXPECT_THAT(station.Zebx({"ls", "foc"}).out, Not(HasSubstr("ncf:")));
    const Ended one = station.Zebx({"ls", "ncf:002_NODE", "gs"});
    EXPECT_EQ(Lines(one.out).size(), 12u) << one; // title, 9 drawings, settings, total
    EXPECT_THAT(one.out, Not(HasSubstr("foc:")));
    EXPECT_THAT(one.out, Not(HasSubstr("001_LABEL")));
}

TEST_F(Ls, TheOrderIsFocNcfGsThenKindThenFile) {
    GenerateContent(station.Support());
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    std::vector<std::string> kinds;
    for (const std::string& line : Lines(station.Zebx({"ls"}).out)) {
        const std::string kind = line.substr(0, line.find(' '));
        if ((kind == "gs" || kind.find(':') == 3) && (kinds.empty() || kinds.back() != kind))
            kinds.push_back(kind);
    }
    EXPECT_THAT(kinds,
                ElementsAre("foc:001_PUMPCURVE", "foc:002_TERRAINTYPE", "foc:003_MANHOLE_RULES",
                            "foc:004_PIPE_RULES", "foc:005_TOPOLOGY_CONFIG", "foc:006_ALIGNPREVIEW",
                            "foc:007_ALIGNLABEL", "foc:008_GPE", "ncf:001_LABEL", "ncf:002_NODE",
                            "ncf:003_PIPE", "ncf:004_SYMBOL", "ncf:005_GPEBLOCKS", "gs"));
}

TEST_F(Ls, AKindThatIsSwitchedOffCanBeLookedAt) {
    GenerateContent(station.Support());
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    fs::remove(station.Ini());
    const Ended run = station.Zebx({"ls", "foc:008_GPE"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("GPEConfiguration.xml"));
}

} // namespace
