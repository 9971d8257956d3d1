// SPDX-License-Identifier: MIT
#include "ConnectedStation.h"
#include "Content.h"
#include "Lines.h"
#include "Plant.h"
#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

namespace {

class Diff : public ConnectedStation {
protected:
    void PushNodes() const { ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0); }
};

TEST_F(Diff, OfTheSameEndsWithZeroAndSaysSo) {
    GenerateContent(station.Support());
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    const Ended run = station.Zebx({"diff"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(Words(run.out),
                IsSupersetOf<std::string>(
                    {"gs same 1 " + std::to_string(GeneralSettings().size()),
                     "in all same 51 " + std::to_string(BytesOf(Tree(station.Support()))),
                     "Nothing differs: this workstation and the repository hold the same."}))
        << run;
    EXPECT_EQ(run.err, "");
}

TEST_F(Diff, CountsFilesAndBytesByKindAndState) {
    Write(Node("same.dwg"), "12345");
    Write(Node("changed.dwg"), "123");
    Write(Node("there1.dwg"), "1");
    Write(Node("there2.dwg"), "12");
    PushNodes();
    Write(Node("changed.dwg"), "1234567");
    fs::remove(Node("there1.dwg"));
    fs::remove(Node("there2.dwg"));
    Write(Node("here.dwg"), "1234");
    const Ended run = station.Zebx({"diff", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_THAT(Words(run.out),
                ElementsAre("Kind State Files Bytes", "ncf:002_NODE only here 1 4",
                            "ncf:002_NODE only there 2 3", "ncf:002_NODE different 1 7",
                            "ncf:002_NODE same 1 5", "Files that differ: 4 of 5.",
                            "To see their names: zebx diff --files"));
}

TEST_F(Diff, ContentOfTheSameSizeIsComparedByItsHash) {
    Write(Node("a.dwg"), "12345");
    PushNodes();
    Write(Node("a.dwg"), "12346");
    EXPECT_EQ(station.Zebx({"diff", "ncf:002_NODE"}).status, 1);
}

TEST_F(Diff, NamesEachFileThatIsNotTheSame) {
    Write(Node("same.dwg"), "12345");
    Write(Node("Šaht, 2.dwg"), "123");
    PushNodes();
    Write(Node("Šaht, 2.dwg"), "1234");
    Write(Node("new\x1b.dwg"), "1");
    const Ended run = station.Zebx({"diff", "--files", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_THAT(Words(run.out), IsSupersetOf({"ncf:002_NODE different 4 Šaht, 2.dwg",
                                              "ncf:002_NODE only here 1 new?.dwg"}))
        << run;
    EXPECT_THAT(run.out, Not(HasSubstr("same.dwg")));
}

TEST_F(Diff, NamesThatDifferByCaseAloneAreOneFile) {
    Write(Node("Valve.dwg"), "12345");
    PushNodes();
    fs::rename(Node("Valve.dwg"), Node("VALVE.DWG"));
    const Ended run = station.Zebx({"diff", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 0) << run;
}

TEST_F(Diff, FoldersAndFilesOfOtherNamesAreNoneOfTheKinds) {
    Write(Node("a.dwg"), "12345");
    PushNodes();
    fs::create_directory(Node("folder.dwg"));
    Write(Node("readme.txt"), "nothing of the kind");
    const Ended run = station.Zebx({"diff", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 0) << run;
}

TEST_F(Diff, OfConfigurationFilesTakesInTheDrawingsThatTravelAlong) {
    Write(station.Support() / "topologyConfiguration.xml", "<t/>");
    Write(Node("a.dwg"), "12345");
    const Ended run = station.Zebx({"diff", "foc:005_TOPOLOGY_CONFIG"});
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_THAT(Words(run.out), IsSupersetOf({"foc:005_TOPOLOGY_CONFIG only here 1 4",
                                              "ncf:002_NODE only here 1 5"}));
}

TEST_F(Diff, ComparesGeneralSettingsByTheirText) {
    const fs::path settings = station.Support() / "GeneralSettings.xml";
    EXPECT_EQ(station.Zebx({"diff", "gs"}).status, 0);
    Write(settings, "<gs a=\"č\"/>");
    EXPECT_THAT(Words(station.Zebx({"diff", "gs"}).out), Contains("gs only here 1 12"));
    ASSERT_EQ(station.Zebx({"push", "gs"}).status, 0);
    EXPECT_EQ(station.Zebx({"diff", "gs"}).status, 0);
    Write(settings, "<gs a=\"ć\"/>");
    EXPECT_THAT(Words(station.Zebx({"diff", "gs"}).out), Contains("gs different 1 12"));
    fs::remove(settings);
    EXPECT_THAT(Words(station.Zebx({"diff", "gs"}).out), Contains("gs only there 1 12"));
}

TEST_F(Diff, AKindThatIsSwitchedOffIsRefusedAsInATransfer) {
    fs::remove(station.Ini());
    const Ended run = station.Zebx({"diff", "foc:008_GPE"});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, HasSubstr("008_GPE"));
}

TEST_F(Diff, AStoredNameThatLeadsOutOfTheFolderIsUnusableAndNotLookedUp) {
    Write(Node("a.dwg"), "12345");
    PushNodes();
    // Its content stands where the name would lead: whoever looks there finds the same.
    Write(station.Support() / "outside.dwg", "12345");
    Plant(station,
          "UPDATE stored_file SET name = '../outside.dwg', name_folded = '../outside.dwg'");
    const Ended run = station.Zebx({"diff", "--files", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_THAT(Words(run.out),
                IsSupersetOf({"ncf:002_NODE unusable 1 5", "ncf:002_NODE unusable 5 ../outside.dwg",
                              "ncf:002_NODE only here 5 a.dwg"}))
        << run;
}

TEST_F(Diff, FitsEightyColumnsInBothLanguages) {
    GenerateContent(station.Support());
    ASSERT_EQ(station.Zebx({"push"}).status, 0);
    fs::remove(Node("large.dwg"));
    Write(Node("plain.dwg"), "different");
    Write(Node("only here.dwg"), "here");
    for (const char* language : {"en", "hr"}) {
        station.Set("ZEBX_LANGUAGE", language);
        const Ended run = station.Zebx({"diff", "--files"});
        EXPECT_EQ(run.status, 1) << run;
        for (const std::string& line : Lines(run.out))
            EXPECT_LE(App::WidthOf(Platform::FromUtf8(line)), App::kLineWidth) << line;
    }
}

// Larger than what a record can hold, and so not read by any transfer.
TEST_F(Diff, AFileThatIsThereAndCannotBeReadIsToldAndGivesTheStatus) {
    Write(Node("a.dwg"), "12345");
    PushNodes();
    Write(Node("huge.dwg"), "");
    fs::resize_file(Node("huge.dwg"), 5'000'000'000);
    const Ended run = station.Zebx({"diff", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, HasSubstr("nodes/huge.dwg"));
    EXPECT_THAT(run.out, Not(HasSubstr("Nothing differs")));
    EXPECT_EQ(station.Zebx({"pull", "--dry-run", "ncf:002_NODE"}).status, 9);
}

TEST_F(Diff, WithoutARepositoryEndsAsEveryVerbDoes) {
    fs::remove(station.Repository());
    const Ended run = station.Zebx({"diff"});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_EQ(run.out, "");
}

} // namespace
