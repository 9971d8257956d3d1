// SPDX-License-Identifier: MIT
// From one workstation over a repository to another: what a new user does first.
#include "Content.h"
#include "support/PageSeals.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

using namespace AppTest;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

// The line of a result that begins with this word, its blanks taken together.
std::string LineOf(const std::string& text, const std::string& word) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string first;
        words >> first;
        if (first != word)
            continue;
        std::string joined = first;
        for (std::string next; words >> next;)
            joined += " " + next;
        return joined;
    }
    return {};
}

class RoundTrip : public testing::Test {
protected:
    RoundTrip() : m_url("sqlite:" + (ana.Folder() / "shared/network.db").string()) {
        fs::create_directory(ana.Folder() / "shared");
    }

    void Prepare() {
        for (const Station* station : {&ana, &ivan})
            ASSERT_EQ(station->Zebx({"init"}).status, 0);
        const Ended made = ana.Zebx({"connect", "--create", m_url});
        ASSERT_EQ(made.status, 0) << made;
        const Ended joined = ivan.Zebx({"connect", m_url});
        ASSERT_EQ(joined.status, 0) << joined;
    }

    void PushesAndPullsTheSameBytes(const Made& made) {
        const auto sent = Tree(ana.Support());
        ASSERT_EQ(sent.size(), std::size_t(made.drawings + made.configurations + 1));
        const Ended push = ana.Zebx({"push"});
        ASSERT_EQ(push.status, 0) << push;
        EXPECT_THAT(LineOf(push.out, "foc"),
                    MatchesRegex("foc " + std::to_string(made.configurations) + " " +
                                 std::to_string(made.configurations) + " [0-9]+ 0"));
        EXPECT_THAT(LineOf(push.out, "ncf"),
                    MatchesRegex("ncf " + std::to_string(made.drawings) + " " +
                                 std::to_string(made.drawings) + " [0-9]+ 0"));
        const Ended pull = ivan.Zebx({"pull"});
        ASSERT_EQ(pull.status, 0) << pull;
        EXPECT_EQ(LineOf(pull.out, "gs"), "gs 1 0 0");
        const auto fetched = Tree(ivan.Support());
        EXPECT_EQ(fetched.size(), sent.size());
        EXPECT_TRUE(fetched == sent) << "the two support folders differ";
    }

    Station ana;
    Station ivan;
    std::string m_url;
};

TEST_F(RoundTrip, GeneratedFilesComeOutByteForByte) {
    Prepare();
    PushesAndPullsTheSameBytes(GenerateContent(ana.Support()));
}

// Without the real files there is nothing here that the generated ones do not show.
TEST_F(RoundTrip, RealDrawingsAndConfigurationFilesComeOutByteForByte) {
    const fs::path data = ZEBX_SHARED_DATA;
    if (!fs::exists(data / "drawings"))
        GTEST_SKIP() << "no real files in " << data;
    Prepare();
    Write(ana.Support() / "GeneralSettings.xml", GeneralSettings());
    Made made;
    made.drawings = CopyRealDrawings(data, ana.Support());
    made.configurations = CopyRealConfigurations(data, 0, ana.Support());
    EXPECT_EQ(made.drawings, 63);
    EXPECT_EQ(made.configurations, 8);
    PushesAndPullsTheSameBytes(made);
    // The other half of the configuration files, under the same names.
    EXPECT_EQ(CopyRealConfigurations(data, 8, ana.Support()), 8);
    ASSERT_EQ(ana.Zebx({"push", "foc"}).status, 0);
    ASSERT_EQ(ivan.Zebx({"pull", "foc"}).status, 0);
    EXPECT_TRUE(Tree(ivan.Support()) == Tree(ana.Support()));
}

TEST_F(RoundTrip, ASecondPushOfTheSameAddsNeitherContentNorARevision) {
    Prepare();
    GenerateContent(ana.Support());
    ASSERT_EQ(ana.Zebx({"push"}).status, 0);
    const std::string before = ana.Zebx({"status"}).out;
    const Ended push = ana.Zebx({"push"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.out, HasSubstr("Nothing changed"));
    EXPECT_THAT(LineOf(push.out, "ncf"), MatchesRegex("ncf 42 0 [0-9]+ 0"));
    EXPECT_EQ(ana.Zebx({"status"}).out, before);
}

TEST_F(RoundTrip, OneChangedFileIsOneChange) {
    Prepare();
    GenerateContent(ana.Support());
    ASSERT_EQ(ana.Zebx({"push"}).status, 0);
    Write(ana.Support() / "nodes/plain.dwg", "new");
    const Ended push = ana.Zebx({"push", "ncf"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(LineOf(push.out, "ncf"), MatchesRegex("ncf 42 1 [0-9]+ 0"));
    ASSERT_EQ(ivan.Zebx({"pull"}).status, 0);
    EXPECT_EQ(Bytes(ivan.Support() / "nodes/plain.dwg"), "new");
}

TEST_F(RoundTrip, OneKindCanBeSentAndFetchedAlone) {
    Prepare();
    GenerateContent(ana.Support());
    const Ended push = ana.Zebx({"push", "ncf:002_NODE"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.err, HasSubstr("Sent to the repository."));
    EXPECT_THAT(LineOf(push.out, "ncf:002_NODE"), MatchesRegex("ncf:002_NODE 9 9 [0-9]+ 0"));
    const Ended pull = ivan.Zebx({"pull", "ncf:002_NODE"});
    EXPECT_EQ(pull.status, 0) << pull;
    EXPECT_EQ(LineOf(pull.out, "ncf:002_NODE"), "ncf:002_NODE 9 0 0");
    EXPECT_EQ(Tree(ivan.Support()).size(), 9u);
}

TEST_F(RoundTrip, DrawingsThatAConfigurationNeedsTravelWithItAndAreTold) {
    Prepare();
    GenerateContent(ana.Support());
    const Ended push = ana.Zebx({"push", "foc:005_TOPOLOGY_CONFIG"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(LineOf(push.out, "foc:005_TOPOLOGY_CONFIG"),
                MatchesRegex("foc:005_TOPOLOGY_CONFIG 1 1 [0-9]+ 0"));
    EXPECT_THAT(LineOf(push.out, "ncf:002_NODE"), MatchesRegex("ncf:002_NODE 9 9 [0-9]+ 0"));
    ASSERT_EQ(ivan.Zebx({"pull", "foc:005_TOPOLOGY_CONFIG"}).status, 0);
    EXPECT_EQ(Tree(ivan.Support()).size(), 10u);
}

TEST_F(RoundTrip, PullKeepsFilesThatTheRepositoryDoesNotHave) {
    Prepare();
    GenerateContent(ana.Support());
    ASSERT_EQ(ana.Zebx({"push"}).status, 0);
    Write(ivan.Support() / "nodes/mine.dwg", "mine");
    Write(ivan.Support() / "nodes/plain.dwg", "old and much, much longer than the new one");
    ASSERT_EQ(ivan.Zebx({"pull"}).status, 0);
    EXPECT_EQ(Bytes(ivan.Support() / "nodes/mine.dwg"), "mine");
    EXPECT_EQ(Bytes(ivan.Support() / "nodes/plain.dwg"), Bytes(ana.Support() / "nodes/plain.dwg"));
}

TEST_F(RoundTrip, PullKeepsThePreviousGeneralSettingsBesideTheNewOnes) {
    Prepare();
    Write(ana.Support() / "GeneralSettings.xml", GeneralSettings());
    const Ended push = ana.Zebx({"push", "gs"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.err, HasSubstr("The general settings were sent"));
    Write(ivan.Support() / "GeneralSettings.xml", "<mine/>");
    const Ended pull = ivan.Zebx({"pull", "gs"});
    EXPECT_EQ(pull.status, 0) << pull;
    EXPECT_THAT(pull.err, HasSubstr("The general settings were loaded"));
    EXPECT_EQ(Bytes(ivan.Support() / "GeneralSettings.xml"), GeneralSettings());
    EXPECT_EQ(Bytes(ivan.Support() / "GeneralSettings.previous.xml"), "<mine/>");
}

TEST_F(RoundTrip, AnEmptyKindIsAFailureOfPushAndTheRestIsSent) {
    Prepare();
    GenerateContent(ana.Support());
    fs::remove_all(ana.Support() / "label");
    const Ended push = ana.Zebx({"push"});
    EXPECT_EQ(push.status, 8) << push;
    EXPECT_THAT(push.err, HasSubstr("Warning: No file matches the pattern"));
    EXPECT_THAT(push.err, HasSubstr("Failure: Could not be sent to the repository - Labels"));
    EXPECT_THAT(LineOf(push.out, "ncf"), MatchesRegex("ncf 34 34 [0-9]+ 1"));
    EXPECT_THAT(LineOf(push.out, "gs"), MatchesRegex("gs 1 1 [0-9]+ 0"));
}

TEST_F(RoundTrip, WithoutGeneralSettingsPushOfEverythingWarnsAndPushGsFails) {
    Prepare();
    GenerateContent(ana.Support());
    fs::remove(ana.Support() / "GeneralSettings.xml");
    const Ended everything = ana.Zebx({"push"});
    EXPECT_EQ(everything.status, 0) << everything;
    EXPECT_THAT(everything.err, HasSubstr("Warning: This workstation has no general settings"));
    const Ended alone = ana.Zebx({"push", "gs"});
    EXPECT_EQ(alone.status, 8) << alone;
    EXPECT_THAT(alone.err, HasSubstr("Failure: This workstation has no general settings"));
}

TEST_F(RoundTrip, WithoutGeneralSettingsInTheRepositoryPullWarnsAndPullGsFails) {
    Prepare();
    Write(ivan.Support() / "GeneralSettings.xml", "<mine/>");
    const Ended everything = ivan.Zebx({"pull"});
    EXPECT_EQ(everything.status, 0) << everything;
    EXPECT_THAT(everything.err, HasSubstr("Warning: The repository holds no general settings"));
    const Ended alone = ivan.Zebx({"pull", "gs"});
    EXPECT_EQ(alone.status, 8) << alone;
    EXPECT_THAT(alone.err, HasSubstr("Failure: The repository holds no general settings"));
    EXPECT_EQ(Bytes(ivan.Support() / "GeneralSettings.xml"), "<mine/>");
}

TEST_F(RoundTrip, ResultsGoToTheOutputAndMessagesToTheErrors) {
    Prepare();
    GenerateContent(ana.Support());
    ASSERT_EQ(ana.Zebx({"push"}).status, 0);
    const Ended pull = ivan.Zebx({"pull"});
    EXPECT_THAT(pull.err, HasSubstr("Šaht čvor žđ.dwg\n"));
    EXPECT_THAT(pull.out, Not(HasSubstr(".dwg")));
    EXPECT_THAT(pull.err + pull.out, Not(HasSubstr("\x1b")));
}

TEST_F(RoundTrip, TheMessagesAreKeptInTheWorkspaceLog) {
    Prepare();
    GenerateContent(ana.Support());
    ASSERT_EQ(ana.Zebx({"push"}).status, 0);
    const std::string log = Bytes(ana.Folder() / "state/StudioZEB/workspace.log");
    EXPECT_THAT(log, HasSubstr("\tsuccess\tThe general settings were sent to the repository.\n"));
}

TEST_F(RoundTrip, AKindThatIsSwitchedOffTakesNoPart) {
    Prepare();
    GenerateContent(ana.Support());
    Write(ana.Ini(), "[kinds]\nenabled = 001_PUMPCURVE\n");
    const Ended push = ana.Zebx({"push"});
    EXPECT_EQ(push.status, 0) << push;
    // 001_PUMPCURVE and the topology configuration, which is not optional.
    EXPECT_THAT(LineOf(push.out, "foc"), MatchesRegex("foc 2 2 [0-9]+ 0"));
    const Ended alone = ana.Zebx({"push", "foc:008_GPE"});
    EXPECT_EQ(alone.status, 3) << alone;
    EXPECT_THAT(alone.err, HasSubstr("foc:008_GPE is switched off"));
    EXPECT_THAT(alone.err, HasSubstr(ana.Ini().string()));
}

TEST_F(RoundTrip, ANameThatOthersCouldNotHoldIsRefusedByNameAndNothingIsSent) {
    Prepare();
    GenerateContent(ana.Support());
    Write(ana.Support() / "nodes/half past 10:30.dwg", "late");
    const Ended push = ana.Zebx({"push"});
    EXPECT_EQ(push.status, 8) << push;
    EXPECT_THAT(push.err, HasSubstr("half past 10:30.dwg"));
    EXPECT_THAT(push.err, HasSubstr("Nothing was sent."));
    EXPECT_THAT(ana.Zebx({"ls"}).out, HasSubstr("In all: 0 stored, 0 bytes."));
}

TEST_F(RoundTrip, DamagedContentIsToldAndNeverServed) {
    Prepare();
    GenerateContent(ana.Support());
    ASSERT_EQ(ana.Zebx({"push"}).status, 0);
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open((ana.Folder() / "shared/network.db").c_str(), &database), SQLITE_OK);
    // The five million bytes of one drawing.
    EXPECT_EQ(sqlite3_exec(database,
                           "UPDATE content SET bytes = zeroblob(size_bytes) "
                           "WHERE size_bytes = 5000000",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    EXPECT_EQ(sqlite3_changes(database), 1);
    sqlite3_close(database);
    SealPages(ana.Folder() / "shared/network.db");
    const Ended pull = ivan.Zebx({"pull"});
    EXPECT_EQ(pull.status, 7) << pull;
    EXPECT_THAT(pull.err, HasSubstr("large.dwg"));
    auto sent = Tree(ana.Support());
    sent.erase("nodes/large.dwg");
    EXPECT_TRUE(Tree(ivan.Support()) == sent);
}

TEST_F(RoundTrip, CroatianUsersReadCroatian) {
    Prepare();
    ana.Set("ZEBX_LANGUAGE", "hr");
    const Ended push = ana.Zebx({"push", "gs"});
    EXPECT_THAT(push.err, HasSubstr("Greška: Ova radna stanica nema općih postavki"));
}

} // namespace
