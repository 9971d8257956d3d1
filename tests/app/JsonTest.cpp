// SPDX-License-Identifier: MIT
// What --json gives: one document whatever happens, in the shape that docs/schemas/ holds.
#include "Content.h"
#include "Documents.h"
#include "InProcess.h"
#include "app/Report.h"

#include <gmock/gmock.h>

using namespace AppTest;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

json Message(const char* kind, const std::string& text) {
    return {{"kind", kind}, {"text", text}};
}

class Documents : public testing::Test {
protected:
    json Zebx(std::vector<std::string> arguments) const {
        arguments.push_back("--json");
        return DocumentOf(station.Zebx(arguments));
    }
    void SetUpRepository() const {
        Zebx({"init"});
        Zebx({"connect", "--create"});
    }

    Station station;
};

TEST_F(Documents, InitNamesWhatItMade) {
    const json document = Zebx({"init"});
    EXPECT_EQ(document["verb"], "init");
    EXPECT_EQ(document["result"]["settings"], station.Ini().string());
    const json& made = document["result"]["made"];
    EXPECT_EQ(made.front(), station.Support().string() + "/");
    EXPECT_EQ(made.back(), station.Ini().string());
    EXPECT_TRUE(document["error"].is_null());
    const json again = Zebx({"init"});
    EXPECT_EQ(again["status"], 6);
    EXPECT_EQ(again["error"]["status"], 6);
    EXPECT_TRUE(again["result"].is_null());
}

TEST_F(Documents, ConnectTellsWhatItFound) {
    const json document = Zebx({"connect", "--create"});
    EXPECT_EQ(document["result"], json({{"address", "sqlite:" + station.Repository().string()},
                                        {"revision", 0},
                                        {"files", 0},
                                        {"mayWrite", true}}));
    const json failed = Zebx({"connect", "http://elsewhere"});
    EXPECT_EQ(failed["status"], 3);
    EXPECT_TRUE(failed["result"].is_null());
}

TEST_F(Documents, StatusHasEveryFieldAlsoWhereNothingIsKnown) {
    const json fresh = Zebx({"status"});
    EXPECT_EQ(fresh["status"], 4);
    EXPECT_THAT(fresh["error"]["text"].get<std::string>(), HasSubstr("zebx connect --create"));
    EXPECT_EQ(fresh["result"]["settings"],
              json({{"path", station.Ini().string()}, {"exists", false}}));
    EXPECT_EQ(fresh["result"]["reachable"], false);
    EXPECT_TRUE(fresh["result"]["files"].is_null());

    SetUpRepository();
    Write(station.Support() / "nodes/a.dwg", "12345");
    Zebx({"push", "ncf:002_NODE"});
    const json result = Zebx({"status"})["result"];
    EXPECT_EQ(result["program"], ZEBX_VERSION);
    EXPECT_EQ(result["files"], 1);
    EXPECT_EQ(result["contentBytes"], 5);
    EXPECT_EQ(result["reachable"], true);
    EXPECT_EQ(result["mayWrite"], true);
    EXPECT_EQ(result["plugin"]["file"], "ZEBXRepositoryClientPlugin_Sql.arx");
    EXPECT_THAT(result["revisionTime"].get<std::string>(),
                testing::MatchesRegex("2[0-9-]+T[0-9:]+Z"));
}

TEST_F(Documents, PushCountsWhatIsStoredAndWhatChanged) {
    SetUpRepository();
    Write(station.Support() / "nodes/a.dwg", "12345");
    const json expected = {{"selection", "ncf:002_NODE"},
                           {"stored", 1},
                           {"changed", 1},
                           {"bytes", 5},
                           {"failures", 0}};
    const json document = Zebx({"push", "ncf:002_NODE"});
    EXPECT_EQ(document["result"]["selections"], json({expected}));
    EXPECT_EQ(document["messages"], json({Message("success", "Sent to the repository.")}))
        << document["messages"];
    const json again = Zebx({"push", "ncf:002_NODE"});
    EXPECT_EQ(again["result"]["selections"][0]["changed"], 0);
    EXPECT_EQ(again["result"]["revision"], document["result"]["revision"]);
}

TEST_F(Documents, PullCountsFilesAndKeepsEveryMessage) {
    SetUpRepository();
    GenerateContent(station.Support());
    Zebx({"push"});
    const json document = Zebx({"pull", "ncf:002_NODE", "gs"});
    EXPECT_EQ(document["status"], 0);
    const json& selections = document["result"]["selections"];
    EXPECT_EQ(selections[0]["selection"], "ncf:002_NODE");
    EXPECT_EQ(selections[1]["selection"], "gs");
    EXPECT_EQ(document["messages"].size(), selections[0]["files"].get<std::size_t>() +
                                               selections[1]["files"].get<std::size_t>());
    EXPECT_TRUE(document["error"].is_null());
}

TEST_F(Documents, AFailureOfSomeIsAStatusAndAMessageAndStopsNothing) {
    SetUpRepository();
    const json document = Zebx({"push", "gs"});
    EXPECT_EQ(document["status"], 8);
    EXPECT_TRUE(document["error"].is_null());
    EXPECT_EQ(document["result"]["selections"][0]["failures"], 1);
    EXPECT_EQ(document["messages"][0]["kind"], "failure");
}

TEST_F(Documents, LsListsEveryEntryWithNumbersAndTheStoredTime) {
    SetUpRepository();
    GenerateContent(station.Support());
    Zebx({"push"});
    const json result = Zebx({"ls"})["result"];
    EXPECT_GT(result["entries"].size(), 50U);
    std::int64_t bytes = 0;
    for (const json& entry : result["entries"])
        bytes += entry["bytes"].is_null() ? 0 : entry["bytes"].get<std::int64_t>();
    EXPECT_EQ(result["bytes"], bytes);
    const json& gs = result["entries"].back();
    EXPECT_EQ(gs["group"], "gs");
    EXPECT_TRUE(gs["name"].is_null());
    EXPECT_TRUE(gs["file"].is_null());
    EXPECT_EQ(gs["time"].get<std::string>().size(), 20U);
}

TEST_F(Documents, DiffCountsEachStateAndNamesWhatIsNotTheSame) {
    SetUpRepository();
    Write(station.Support() / "nodes/a.dwg", "12345");
    Zebx({"push", "ncf:002_NODE"});
    Write(station.Support() / "nodes/b.dwg", "123");
    Write(station.Support() / "nodes/a.dwg", "1234");
    const json document = Zebx({"diff", "ncf:002_NODE"});
    EXPECT_EQ(document["status"], 1);
    const json& kind = document["result"]["kinds"][0];
    EXPECT_EQ(kind["selection"], "ncf:002_NODE");
    EXPECT_EQ(kind["onlyHere"], json({{"files", 1}, {"bytes", 3}}));
    EXPECT_EQ(kind["different"], json({{"files", 1}, {"bytes", 4}}));
    const json& files = document["result"]["files"];
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0]["file"], "a.dwg");
    EXPECT_EQ(files[0]["bytesHere"], 4);
    EXPECT_EQ(files[0]["bytesThere"], 5);
    EXPECT_EQ(files[1]["state"], "onlyHere");
    EXPECT_TRUE(files[1]["bytesThere"].is_null());
    EXPECT_EQ(Zebx({"pull", "--dry-run", "ncf:002_NODE"})["result"]["kinds"][0]["different"],
              json({{"files", 1}, {"bytes", 5}}));
    EXPECT_EQ(Zebx({"push", "--dry-run", "ncf:002_NODE"})["result"]["files"], files);
}

TEST_F(Documents, LogGivesTheRevisionsAsTheyAreStored) {
    SetUpRepository();
    Write(station.Support() / "nodes/a.dwg", "12345");
    Zebx({"push", "ncf:002_NODE"});
    const json result = Zebx({"log", "--limit", "1"})["result"];
    ASSERT_EQ(result["revisions"].size(), 1U);
    EXPECT_EQ(result["hasMore"], true);
    const json& revision = result["revisions"][0];
    EXPECT_EQ(revision["number"], 2);
    EXPECT_EQ(revision["operation"], "AddRepositoryFiles");
    EXPECT_EQ(revision["subject"], "002_NODE");
    EXPECT_EQ(revision["files"], 1);
    EXPECT_EQ(revision["bytes"], 5);
    EXPECT_EQ(revision["time"].get<std::string>().size(), 20U);
}

TEST_F(Documents, RunKeepsWhatTheCommandPrinted) {
    const json document = Zebx({"run", "test"});
    EXPECT_EQ(document["result"]["command"], "test");
    EXPECT_THAT(document["result"]["output"].get<std::string>(), Not(IsEmpty()));
}

TEST_F(Documents, VersionNamesTheProgramFirst) {
    const json result = Zebx({"version"})["result"];
    EXPECT_EQ(result["parts"][0], json({{"name", "zebx"}, {"version", ZEBX_VERSION}}));
    EXPECT_GE(result["parts"].size(), 5U);
}

TEST_F(Documents, HelpIsADocumentToo) {
    const json document = Zebx({"ls", "--help"});
    EXPECT_THAT(document["result"]["text"].get<std::string>(), StartsWith("zebx ls"));
}

TEST_F(Documents, WhatIsNotUnderstoodIsAnErrorOfNoVerb) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"frobnicate"},
                                                      {"ls", "--frob"},
                                                      {"status", "x"},
                                                      {"ls", "--json=x"}}) {
        const json document = Zebx(arguments);
        EXPECT_EQ(document["schema"], "zebx/error/1");
        EXPECT_EQ(document["status"], 2);
        EXPECT_THAT(document["error"]["text"].get<std::string>(), HasSubstr("--help"));
    }
}

TEST_F(Documents, AFailureOfAVerbNamesTheVerb) {
    EXPECT_EQ(Zebx({"ls", "ncf:999"})["schema"], "zebx/ls/1");
    const json missing = Zebx({"pull", "--install", "/nowhere"});
    EXPECT_EQ(missing["schema"], "zebx/pull/1");
    EXPECT_EQ(missing["status"], 3);
    EXPECT_THAT(missing["error"]["text"].get<std::string>(), HasSubstr("/nowhere"));
}

TEST_F(Documents, EachVerbFailsWithADocumentWithoutAPlugin) {
    const fs::path folder = InstallationWithoutPlugin(station);
    for (const char* verb : {"connect", "status", "push", "pull", "diff", "ls", "log"}) {
        const json document = Zebx({verb, "--install", folder.string()});
        EXPECT_EQ(document["status"], 3) << verb;
        EXPECT_EQ(document["error"]["status"], 3) << verb;
    }
}

TEST_F(Documents, WhatThePluginLoggedAlreadyIsStillTheError) {
    const fs::path settings = station.Ini().parent_path() / "RepositoryStorageSettings" /
                              "ZEBXRepositoryClientPlugin_Sql.ini";
    Write(settings, "what is this?\n");
    const json document = Zebx({"pull"});
    EXPECT_EQ(document["status"], 3);
    EXPECT_THAT(document["error"]["text"].get<std::string>(), HasSubstr("line 1"));
}

TEST_F(Documents, ProblemsOfTheSettingsAreWarnings) {
    Write(station.Ini(), "[general]\nlanguage = xx\n");
    const json document = Zebx({"version"});
    EXPECT_EQ(document["messages"][0]["kind"], "warning");
    EXPECT_THAT(document["messages"][0]["text"].get<std::string>(),
                StartsWith(station.Ini().string() + ":2: "));
}

TEST_F(Documents, MessagesStillGoToTheStandardError) {
    SetUpRepository();
    const Ended run = station.Zebx({"push", "gs", "--json"});
    EXPECT_THAT(run.err, StartsWith("Failure: "));
    EXPECT_THAT(station.Zebx({"frobnicate", "--json"}).err, StartsWith("zebx: "));
}

TEST_F(Documents, NamesThatAreNoUtf8StayReadable) {
    const json document = Zebx({"pull", "--install", "/no\xff\xfe\"where\n\x1b"});
    EXPECT_EQ(document["status"], 3);
    EXPECT_THAT(document["error"]["text"].get<std::string>(),
                HasSubstr("/no\xef\xbf\xbd\xef\xbf\xbd\"where\n\x1b"));
}

TEST_F(Documents, SpeakTheUsersLanguageInTextsAlone) {
    Station croatian;
    croatian.Set("ZEBX_LANGUAGE", "hr");
    const json document = DocumentOf(croatian.Zebx({"frobnicate", "--json"}));
    EXPECT_THAT(document["error"]["text"].get<std::string>(), StartsWith("Glagol"));
}

TEST_F(Documents, BehindTwoDashesJsonIsAWord) {
    const Ended run = station.Zebx({"run", "--", "--json"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(Documents, AnOutputThatTakesNoneIsALocalFailure) {
    EXPECT_EQ(station.ZebxWritingTo("/dev/full", {"version", "--json"}).status, 9);
}

TEST(Report, WithoutAnythingIsAWholeDocument) {
    std::ostringstream out;
    App::Report report;
    report.SetError(App::ExitStatus::Usage, u"x");
    WriteReport(out, report, App::ExitStatus::Usage);
    EXPECT_EQ(DocumentOf({2, out.str(), ""})["error"], json({{"status", 2}, {"text", "x"}}));
}

} // namespace
