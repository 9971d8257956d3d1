// SPDX-License-Identifier: MIT
#include "ConnectedStation.h"
#include "Lines.h"
#include "Plant.h"
#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

namespace {

class Log : public ConnectedStation {
protected:
    void PushNodes(const std::string& bytes) const {
        Write(station.Support() / "nodes/a.dwg", bytes);
        ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    }
    void PushSettings(const std::string& xml) const {
        Write(station.Support() / "GeneralSettings.xml", xml);
        ASSERT_EQ(station.Zebx({"push", "gs"}).status, 0);
    }
};

TEST_F(Log, OfANewRepositoryIsEmptyAndSaysSo) {
    const Ended run = station.Zebx({"log"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "There are no such revisions.\n");
}

TEST_F(Log, ShowsTheNewestFirstWithWhenWhoWhereAndWhat) {
    PushNodes("12345");
    PushSettings("<gs/>");
    const Ended run = station.Zebx({"log"});
    EXPECT_EQ(run.status, 0) << run;
    const std::string when = "20[0-9-]+ [0-9:]+ UTC, .+ on .+";
    EXPECT_THAT(
        Lines(run.out),
        ElementsAre(MatchesRegex("3  " + when), "   general settings sent (files: 0, bytes: 5)",
                    MatchesRegex("2  " + when), "   files sent: 002_NODE (files: 1, bytes: 5)",
                    MatchesRegex("1  " + when), "   kind announced: 002_NODE"));
}

TEST_F(Log, ASelectionTakesInTheRevisionsThatTouchIt) {
    PushNodes("12345");
    PushSettings("<gs/>");
    const auto numbers = [this](const std::vector<std::string>& selection) {
        std::vector<std::string> arguments = {"log"};
        arguments.insert(arguments.end(), selection.begin(), selection.end());
        std::vector<std::string> found;
        for (const std::string& line : Lines(station.Zebx(arguments).out)) {
            if (line.front() != ' ')
                found.push_back(line.substr(0, line.find(' ')));
        }
        return found;
    };
    EXPECT_THAT(numbers({"ncf"}), ElementsAre("2", "1"));
    EXPECT_THAT(numbers({"ncf:002_NODE"}), ElementsAre("2", "1"));
    EXPECT_THAT(numbers({"gs"}), ElementsAre("3"));
    EXPECT_THAT(numbers({"gs", "ncf"}), ElementsAre("3", "2", "1"));
    EXPECT_EQ(station.Zebx({"log", "foc"}).out, "There are no such revisions.\n");
    EXPECT_EQ(station.Zebx({"log", "ncf:001_LABEL"}).out, "There are no such revisions.\n");
    EXPECT_EQ(station.Zebx({"log", "ncf:NONE"}).status, 2);
}

TEST_F(Log, ShowsTwentyAndSaysHowToSeeMore) {
    PushNodes("1");
    for (int i = 3; i <= 21; ++i)
        Plant(station,
              "INSERT INTO revision SELECT " + std::to_string(i) +
                  ", made_at, user_name, workstation, program, operation, subject FROM revision "
                  "WHERE number = 2; UPDATE head SET revision = " +
                  std::to_string(i));
    const Ended run = station.Zebx({"log"});
    EXPECT_THAT(Lines(run.out), SizeIs(41)) << run;
    EXPECT_THAT(run.out, HasSubstr("To see more: zebx log --limit 40\n"));
    const Ended all = station.Zebx({"log", "--limit", "21"});
    EXPECT_THAT(Lines(all.out), SizeIs(42)) << all;
    EXPECT_THAT(all.out, Not(HasSubstr("--limit")));
}

TEST_F(Log, FindsWhatIsSelectedBehindThousandsOfOthers) {
    PushSettings("<gs/>");
    Plant(station,
          "INSERT INTO revision WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n "
          "WHERE i < 2500) SELECT i, made_at, user_name, workstation, program, "
          "'AddRepositoryFiles', '002_NODE' FROM n, revision WHERE number = 1; "
          "UPDATE head SET revision = 2500");
    const Ended run = station.Zebx({"log", "gs"});
    EXPECT_THAT(Lines(run.out), ElementsAre(MatchesRegex("1  .*"), HasSubstr("general settings")))
        << run;
}

TEST_F(Log, AnOperationOfANewerProgramIsShownAsItIsCalled) {
    PushNodes("1");
    Plant(station, "UPDATE revision SET operation = 'Restore' WHERE number = 2");
    EXPECT_THAT(station.Zebx({"log"}).out, HasSubstr("\n   Restore: 002_NODE"));
}

TEST_F(Log, FitsEightyColumnsInBothLanguagesAndHidesControlCharacters) {
    PushNodes("1");
    Plant(station,
          "UPDATE revision SET user_name = 'ana.anic-horvatincic@vodovod' || char(27), "
          "workstation = 'radna-stanica-za-vodovod-i-kanalizaciju-17', "
          "subject = '001_LABEL, 002_NODE, 003_PIPE, 004_SYMBOL, 005_GPEBLOCKS, 006_ALIGN'");
    for (const char* language : {"en", "hr"}) {
        station.Set("ZEBX_LANGUAGE", language);
        const Ended run = station.Zebx({"log"});
        EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
        for (const std::string& line : Lines(run.out))
            EXPECT_LE(App::WidthOf(Platform::FromUtf8(line)), App::kLineWidth) << line;
    }
}

TEST_F(Log, RefusesALimitThatIsNone) {
    for (const char* limit : {"0", "-1", "x", "3x", "99999999999x"}) {
        const Ended run = station.Zebx({"log", std::string("--limit=") + limit});
        EXPECT_EQ(run.status, 2) << run;
        EXPECT_THAT(run.err, HasSubstr(limit));
        EXPECT_THAT(run.out, IsEmpty());
    }
}

} // namespace
