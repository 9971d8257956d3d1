// SPDX-License-Identifier: MIT
// Ctrl-C and its kin during a transfer, sent to the real program.
#include "Content.h"
#include "Documents.h"
#include "Running.h"

#include <gmock/gmock.h>
#include <signal.h>

using namespace AppTest;
using testing::HasSubstr;

namespace {

// So many that reading and storing them take longer than a signal's way; their names alone
// fill the pipe through which a pull tells them several times.
constexpr int kDrawings = 1000;

class Interruption : public testing::Test {
protected:
    Interruption() {
        EXPECT_EQ(station.Zebx({"init"}).status, 0);
        EXPECT_EQ(station.Zebx({"connect", "--create"}).status, 0);
        WriteDrawings("first");
    }

    void WriteDrawings(const std::string& what) const {
        const std::string bytes = what + std::string(30'000, 'x');
        for (int i = 0; i < kDrawings; ++i)
            Write(Drawings() / ("block" + std::to_string(i) + ".dwg"), bytes + std::to_string(i));
    }
    void Send() const { EXPECT_EQ(station.Zebx({"push", "ncf:002_NODE", "--quiet"}).status, 0); }
    // Not removed: some file systems take long to make files where many were removed.
    void SetDrawingsAside() const { fs::rename(Drawings(), station.Folder() / "aside"); }
    fs::path Drawings() const { return station.Support() / "nodes"; }

    std::size_t StoredFiles() const {
        const auto document = DocumentOf(station.Zebx({"ls", "--json"}));
        return document["result"]["files"].get<std::size_t>();
    }

    Station station;
};

TEST_F(Interruption, WhileFilesAreReadSendsNothing) {
    Running push(station, {"push", "ncf:002_NODE", "--progress", "always"});
    ASSERT_TRUE(push.WaitFor(" read"));
    push.Signal(SIGINT);
    const Ended run = push.Finish();
    EXPECT_EQ(run.status, 130) << run;
    EXPECT_THAT(run.err, HasSubstr("Interrupted in ncf:002_NODE."));
    EXPECT_EQ(StoredFiles(), 0U);
    Send();
    EXPECT_EQ(StoredFiles(), std::size_t(kDrawings));
}

TEST_F(Interruption, WhileFilesAreStoredUndoesTheCallWhole) {
    Send();
    WriteDrawings("second");
    const std::string before = DocumentOf(station.Zebx({"status", "--json"}))["result"].dump();
    Running push(station, {"push", "ncf:002_NODE", "--progress", "always", "--verbose"});
    ASSERT_TRUE(push.WaitFor(" stored"));
    push.Signal(SIGTERM);
    const Ended run = push.Finish();
    EXPECT_EQ(run.status, 130) << run.err;
    EXPECT_THAT(run.err, HasSubstr("nothing of this call was kept"));
    EXPECT_EQ(DocumentOf(station.Zebx({"status", "--json"}))["result"].dump(), before);
    Send();
    const auto again = DocumentOf(station.Zebx({"push", "ncf:002_NODE", "--json"}));
    EXPECT_EQ(again["result"]["selections"][0]["changed"], 0);
}

TEST_F(Interruption, OfAPullLeavesWholeFilesAndTellsHowManyThereAre) {
    Send();
    const auto sent = Tree(Drawings());
    SetDrawingsAside();
    Running pull(station, {"pull", "ncf:002_NODE", "--json"});
    ASSERT_TRUE(pull.WaitUntilItStandsStill());
    pull.Signal(SIGHUP);
    const Ended run = pull.Finish();
    EXPECT_EQ(run.status, 130) << run.err;
    const auto document = DocumentOf(run);
    const auto fetched = Tree(Drawings());
    EXPECT_EQ(document["result"]["selections"][0]["files"], fetched.size());
    EXPECT_LT(fetched.size(), sent.size());
    for (const auto& [name, bytes] : fetched)
        EXPECT_EQ(bytes, sent.at(name)) << name;
    EXPECT_EQ(station.Zebx({"pull", "ncf:002_NODE", "--quiet"}).status, 0);
    EXPECT_EQ(Tree(Drawings()), sent);
}

TEST_F(Interruption, ASecondSignalEndsTheProgramAtOnce) {
    Send();
    Running pull(station, {"pull", "ncf:002_NODE"});
    ASSERT_TRUE(pull.WaitUntilItStandsStill());
    pull.Signal(SIGINT);
    pull.WaitUntilNotCaught(SIGINT);
    pull.Signal(SIGINT);
    EXPECT_EQ(pull.Finish().status, -SIGINT);
    EXPECT_EQ(StoredFiles(), std::size_t(kDrawings));
    EXPECT_EQ(station.Zebx({"pull", "ncf:002_NODE", "--quiet"}).status, 0);
    EXPECT_EQ(Tree(Drawings()).size(), std::size_t(kDrawings));
}

TEST_F(Interruption, StopsTheSelectionsThatFollow) {
    Send();
    Running pull(station, {"pull", "ncf:002_NODE", "gs", "foc", "--json"});
    ASSERT_TRUE(pull.WaitUntilItStandsStill());
    pull.Signal(SIGINT);
    const auto document = DocumentOf(pull.Finish());
    EXPECT_EQ(document["status"], 130);
    EXPECT_EQ(document["result"]["selections"].size(), 1U);
}

} // namespace
