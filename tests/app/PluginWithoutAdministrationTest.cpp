// SPDX-License-Identifier: MIT
// The program over a storage plug-in that offers the backend's operations alone: the sample
// plug-in, which keeps everything in memory and so needs all verbs in one process.
#include "Content.h"
#include "InProcess.h"
#include "ZEBXNetworkCore/CatalogManager.h"
#include "support/InAChildProcess.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

class PluginWithoutAdministration : public InProcess {
protected:
    PluginWithoutAdministration() {
        const fs::path folder = workstation.Folder().Native() / "installation";
        fs::create_directories(folder);
        fs::create_symlink(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/messages", folder / "messages");
        fs::create_symlink(ZEBX_MEMORY_PLUGIN, folder / "ZEBXRepositoryClientPlugin_Memory.arx");
        workstation.Set("ZEBX_INSTALL", folder.string());
    }

    fs::path Support() const { return workstation.Folder().Native() / "data/StudioZEB/support"; }
};

TEST_F(PluginWithoutAdministration, HasNothingToConnect) {
    EXPECT_TRUE(PassesInAChildProcess([] {
        const Ended run = RunHere({"connect", "--create"});
        EXPECT_EQ(run.status, 3) << run;
        EXPECT_THAT(run.err, HasSubstr("ZEBXRepositoryClientPlugin_Memory.arx"));
    }));
}

TEST_F(PluginWithoutAdministration, StatusShowsWhatTheManagerKnows) {
    EXPECT_TRUE(PassesInAChildProcess([] {
        const Ended run = RunHere({"status"});
        EXPECT_EQ(run.status, 0) << run;
        EXPECT_THAT(run.out,
                    AllOf(HasSubstr("(ZEBXRepositoryClientPlugin_Memory.arx)"), HasSubstr("yes"),
                          HasSubstr("you may read and write"), Not(HasSubstr("Engine"))));
    }));
}

TEST_F(PluginWithoutAdministration, PushListAndPullWork) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        ASSERT_EQ(RunHere({"init"}).status, 0);
        GenerateContent(Support());
        const auto sent = Tree(Support());
        const Ended push = RunHere({"push"});
        ASSERT_EQ(push.status, 0) << push;
        const Ended list = RunHere({"ls"});
        EXPECT_EQ(list.status, 0) << list;
        EXPECT_THAT(list.out,
                    AllOf(HasSubstr("Šaht čvor žđ.dwg"), HasSubstr("foc:005_TOPOLOGY_CONFIG"),
                          HasSubstr("  5000000 "), HasSubstr("In all: 51 stored")));
        fs::remove_all(Support());
        const Ended pull = RunHere({"pull"});
        EXPECT_EQ(pull.status, 0) << pull;
        EXPECT_TRUE(Tree(Support()) == sent);
    }));
}

TEST_F(PluginWithoutAdministration, WhatWouldMoveIsFoundByFetching) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        ASSERT_EQ(RunHere({"init"}).status, 0);
        GenerateContent(Support());
        EXPECT_THAT(RunHere({"push", "--dry-run"}).out, HasSubstr("would store: 51 "));
        ASSERT_EQ(RunHere({"push"}).status, 0);
        EXPECT_EQ(RunHere({"diff"}).status, 0);
        Write(Support() / "nodes/plain.dwg", "different");
        fs::remove(Support() / "nodes/large.dwg");
        fs::remove(Support() / "GeneralSettings.xml");
        const Ended diff = RunHere({"diff", "--files"});
        EXPECT_EQ(diff.status, 1) << diff;
        EXPECT_THAT(diff.out, AllOf(HasSubstr("Files that differ: 3 of 51."),
                                    HasSubstr("  plain.dwg\n"), HasSubstr("  large.dwg\n")));
        EXPECT_THAT(RunHere({"pull", "--dry-run"}).out, HasSubstr("would write: 3 "));
    }));
}

TEST_F(PluginWithoutAdministration, HistoryAndCheckAreNotPossibleAndTheUserIsTold) {
    EXPECT_TRUE(PassesInAChildProcess([] {
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{"log"}, {"repo", "check"}}) {
            const Ended run = RunHere(arguments);
            EXPECT_EQ(run.status, 3) << run;
            EXPECT_THAT(run.err, HasSubstr("ZEBXRepositoryClientPlugin_Memory.arx"));
        }
    }));
}

TEST_F(PluginWithoutAdministration, DoctorChecksWhatTheManagerKnows) {
    EXPECT_TRUE(PassesInAChildProcess([] {
        const Ended run = RunHere({"doctor"});
        EXPECT_THAT(run.out, AllOf(HasSubstr("Repository: reachable"), HasSubstr("Rights: you may"),
                                   Not(HasSubstr("Clock"))))
            << run;
    }));
}

TEST_F(PluginWithoutAdministration, AFailedPushIsToldAndCounted) {
    EXPECT_TRUE(PassesInAChildProcess([] {
        ASSERT_EQ(RunHere({"init"}).status, 0);
        const Ended push = RunHere({"push", "ncf:002_NODE"});
        EXPECT_EQ(push.status, 8) << push;
        EXPECT_THAT(push.err, HasSubstr("Failure: Could not be sent to the repository."));
        EXPECT_THAT(push.out, HasSubstr("ncf:002_NODE         1\n"));
    }));
}

TEST_F(PluginWithoutAdministration, CataloguesMoveAndWhatMayBeLostIsAWarning) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        const std::string declaration = "<catalogues><catalogue reference=\"T\"/></catalogues>";
        const std::string catalogue = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                      "<catalogue reference=\"T\">\n"
                                      "  <item guid=\"1\" name=\"2&quot; pipe\" group=\"no\"/>\n"
                                      "</catalogue>\n";
        Write(Support() / "Catalogues.xml", declaration);
        Write(Support() / "Catalogues/T.xml", catalogue);
        const Ended push = RunHere({"push", "catalogues"});
        EXPECT_EQ(push.status, 0) << push;
        EXPECT_THAT(push.err, HasSubstr("Warning: The item \"2\" pipe\""));
        EXPECT_THAT(RunHere({"ls"}).out, HasSubstr("catalogue:T"));
        EXPECT_EQ(RunHere({"diff", "catalogues"}).status, 0);
        EXPECT_THAT(RunHere({"catalogue", "T", "show", "--tree"}).out, HasSubstr("2\" pipe\n"));
        fs::remove(Support() / "Catalogues/T.xml");
        // What is in memory of it would be the same again.
        ZEBGis::Data::CCatalogManager::Instance()->Forget(u"T");
        EXPECT_EQ(RunHere({"pull", "catalogues"}).status, 0);
        EXPECT_EQ(Bytes(Support() / "Catalogues/T.xml"), catalogue);
    }));
}

TEST_F(PluginWithoutAdministration, ADefinitionsLettersThatMayBeLostAreAWarning) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        Write(Support() / "Definitions.xml", "<definitions><repository tag=\"T\"/></definitions>");
        Write(Support() / "Definitions/T.xml",
              "<definitions tag=\"T\"><definition id=\"1\" name=\"труба\"/></definitions>");
        const Ended push = RunHere({"push", "items"});
        EXPECT_EQ(push.status, 0) << push;
        EXPECT_THAT(push.err, HasSubstr("Warning: The item \"труба\""));
    }));
}

TEST_F(PluginWithoutAdministration, DefinitionsAreAddedShownAndRemovedWithoutARevision) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        fs::copy(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/Definitions.xml",
                 workstation.Folder().Native() / "installation");
        const fs::path file = workstation.Folder().Native() / "given.xml";
        Write(file, "<definition id='a' name='A'/>");
        const auto items = [](std::vector<std::string> words) {
            words.insert(words.begin(), {"items", "PIPE_DEFINITIONS"});
            return RunHere(words);
        };
        const Ended added = items({"add", file.string(), "--json"});
        EXPECT_EQ(added.status, 0) << added;
        EXPECT_THAT(added.out, HasSubstr("\"revision\": null"));
        EXPECT_THAT(items({"show", "a"}).out, HasSubstr("<definition id='a' name='A'/>"));
        EXPECT_EQ(items({"rename", "a", "B"}).status, 0);
        EXPECT_THAT(items({"list"}).out, HasSubstr("  B\n"));
        EXPECT_EQ(items({"delete", "a"}).status, 0);
        EXPECT_EQ(items({"delete", "a"}).status, 8);
    }));
}

} // namespace
