// SPDX-License-Identifier: MIT
// What "pull --dry-run" and "push --dry-run" say, that it comes true, and that they change
// nothing; and that a push looks at all names before it sends anything.
#include "ConnectedStation.h"
#include "Content.h"
#include "Lines.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

namespace {

class DryRun : public ConnectedStation {
protected:
    // Runs it and expects every file of the workstation and the repository as before.
    Ended RunsWithoutATrace(const std::vector<std::string>& arguments) const {
        const auto support = Tree(station.Support());
        const auto settings = Tree(station.Folder() / "config");
        const std::string repository = Bytes(station.Repository());
        const std::string status = station.Zebx({"status"}).out;
        const Ended run = station.Zebx(arguments);
        EXPECT_TRUE(Tree(station.Support()) == support);
        EXPECT_TRUE(Tree(station.Folder() / "config") == settings);
        EXPECT_TRUE(Bytes(station.Repository()) == repository);
        EXPECT_EQ(station.Zebx({"status"}).out, status);
        return run;
    }

    // Two drawings are stored; here one of them differs and a third is new.
    void StandApart() {
        Write(Node("changed.dwg"), "123");
        Write(Node("there.dwg"), "1");
        ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
        Write(Node("changed.dwg"), "1234567");
        fs::remove(Node("there.dwg"));
        Write(Node("here.dwg"), "1234");
    }
};

TEST_F(DryRun, OfPullSaysWhatWouldBeWrittenAndWritesNothing) {
    StandApart();
    const Ended run = RunsWithoutATrace({"pull", "--dry-run", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(Words(run.out),
                ElementsAre("Kind State Files Bytes", "ncf:002_NODE new 1 1",
                            "ncf:002_NODE changed 1 3", "ncf:002_NODE only here 1 4",
                            "Files that pull would write: 2 (bytes: 4). Nothing was written."));
}

TEST_F(DryRun, OfPushSaysWhatWouldBeStoredAndSendsNothing) {
    StandApart();
    const Ended run = RunsWithoutATrace({"push", "--dry-run", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(Words(run.out),
                ElementsAre("Kind State Files Bytes", "ncf:002_NODE new 1 4",
                            "ncf:002_NODE changed 1 7", "ncf:002_NODE only there 1 1",
                            "Files that push would store: 2 (bytes: 11). Nothing was sent."));
}

TEST_F(DryRun, OfEverythingLeavesNoTraceEither) {
    GenerateContent(station.Support());
    EXPECT_EQ(RunsWithoutATrace({"push", "--dry-run"}).status, 0);
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    const std::size_t bytes = BytesOf(Tree(station.Support()));
    fs::remove_all(station.Support());
    fs::create_directories(station.Support());
    const Ended run = RunsWithoutATrace({"pull", "--dry-run"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(Words(run.out), Contains("in all new 51 " + std::to_string(bytes))) << run;
}

TEST_F(DryRun, WhatItSaysOfPullComesTrue) {
    StandApart();
    ASSERT_EQ(station.Zebx({"pull", "ncf:002_NODE"}).status, 0);
    EXPECT_THAT(Words(station.Zebx({"pull", "--dry-run", "ncf:002_NODE"}).out),
                IsSupersetOf({"ncf:002_NODE same 2 4", "ncf:002_NODE only here 1 4"}));
}

TEST_F(DryRun, WhatItSaysOfPushComesTrue) {
    StandApart();
    const Ended push = station.Zebx({"push", "ncf:002_NODE"});
    EXPECT_THAT(Words(push.out), Contains("ncf:002_NODE 3 2 12 0")) << push;
    EXPECT_THAT(Words(station.Zebx({"push", "--dry-run", "ncf:002_NODE"}).out),
                IsSupersetOf({"ncf:002_NODE same 2 11", "ncf:002_NODE only there 1 1"}));
}

TEST_F(DryRun, TakesInTheDrawingsThatTravelWithConfigurationFiles) {
    Write(station.Support() / "topologyConfiguration.xml", "<t/>");
    Write(Node("a.dwg"), "12345");
    const Ended push = station.Zebx({"push", "--dry-run", "foc"});
    EXPECT_THAT(Words(push.out),
                IsSupersetOf({"foc:005_TOPOLOGY_CONFIG new 1 4", "ncf:002_NODE new 1 5"}))
        << push;
    ASSERT_EQ(station.Zebx({"push", "foc:005_TOPOLOGY_CONFIG"}).status, 0);
    fs::remove(Node("a.dwg"));
    const Ended pull = station.Zebx({"pull", "--dry-run", "foc:005_TOPOLOGY_CONFIG"});
    EXPECT_THAT(Words(pull.out), Contains("ncf:002_NODE new 1 5")) << pull;
}

// Sending a set without a file ends before its drawings: so does what is said of it.
TEST_F(DryRun, OfPushLeavesOutTheDrawingsOfConfigurationFilesThatAreNotThere) {
    Write(Node("a.dwg"), "12345");
    const Ended run = station.Zebx({"push", "--dry-run", "foc:005_TOPOLOGY_CONFIG"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "Files that push would store: 0 (bytes: 0). Nothing was sent.\n");
    ASSERT_EQ(station.Zebx({"push", "foc:005_TOPOLOGY_CONFIG"}).status, 0);
    EXPECT_THAT(station.Zebx({"ls", "ncf"}).out, Not(HasSubstr("a.dwg")));
}

TEST_F(DryRun, OfPullFindsAFileThatHasNoNameOfItsKind) {
    Write(Node("a.dwg"), "12345");
    ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    fs::rename(Node("a.dwg"), Node("A.DWG"));
    EXPECT_THAT(Words(station.Zebx({"pull", "--dry-run", "ncf:002_NODE"}).out),
                Contains("ncf:002_NODE same 1 5"));
}

class PushedNames : public DryRun {
protected:
    void IsRefused(const std::vector<std::string>& arguments,
                   const std::vector<std::string>& names) const {
        const Ended run = RunsWithoutATrace(arguments);
        EXPECT_EQ(run.status, 8) << run;
        EXPECT_EQ(run.out, "");
        for (const std::string& name : names)
            EXPECT_THAT(run.err, HasSubstr("\"" + name + "\" (002_NODE) was refused")) << run;
        EXPECT_THAT(run.err, HasSubstr("Nothing was sent."));
    }
};

TEST_F(PushedNames, AreAllRefusedBeforeAnythingIsSent) {
    Write(station.Support() / "label/good.dwg", "good");
    Write(Node("good.dwg"), "good");
    Write(Node("CON.dwg"), "device");
    Write(Node("a:b.dwg"), "colon");
    IsRefused({"push"}, {"CON.dwg", "a:b.dwg"});
    EXPECT_EQ(station.Zebx({"ls"}).out, "In all: 0 stored, 0 bytes.\n");
}

TEST_F(PushedNames, AreRefusedInADryRunToo) {
    Write(Node("CON.dwg"), "device");
    IsRefused({"push", "--dry-run", "ncf:002_NODE"}, {"CON.dwg"});
}

TEST_F(PushedNames, ThatDifferByCaseAloneAreRefused) {
    Write(Node("valve.dwg"), "1");
    Write(Node("VALVE.dwg"), "2");
    IsRefused({"push", "ncf:002_NODE"}, {"valve.dwg"});
    fs::remove(Node("VALVE.dwg"));
    ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    fs::rename(Node("valve.dwg"), Node("VALVE.dwg"));
    IsRefused({"push", "ncf:002_NODE"}, {"VALVE.dwg"});
}

TEST_F(PushedNames, OutsideTheSelectionDoNotMatter) {
    Write(Node("CON.dwg"), "device");
    Write(station.Support() / "label/good.dwg", "good");
    EXPECT_EQ(station.Zebx({"push", "ncf:001_LABEL"}).status, 0);
}

} // namespace
