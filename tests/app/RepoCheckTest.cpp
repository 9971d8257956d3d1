// SPDX-License-Identifier: MIT
#include "ConnectedStation.h"
#include "Content.h"
#include "Documents.h"
#include "Lines.h"
#include "Plant.h"
#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::HasSubstr;

namespace {

class RepoCheck : public ConnectedStation {
protected:
    RepoCheck() {
        Write(station.Support() / "nodes/a.dwg", "12345");
        Write(station.Support() / "nodes/šaht.dwg", "123");
        EXPECT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    }

    void Damage(const std::string& sql) const { Plant(station, sql); }
};

TEST_F(RepoCheck, OfAWholeRepositoryCountsWhatItLookedAt) {
    const Ended run = station.Zebx({"repo", "check"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "Checked contents: 2 (bytes: 8), files: 2, revisions: 2.\n"
                       "The repository is whole.\n");
    EXPECT_EQ(run.err, "");
}

// SHA-256 of "12345".
const std::string kHash = "5994471abb01112afcc18159f6cc74b4f511b99806da59b3caf5a9c173cacfc5";

TEST_F(RepoCheck, TellsAContentThatDoesNotFitItsHash) {
    Damage("UPDATE content SET bytes = CAST('12346' AS BLOB) WHERE size_bytes = 5");
    const Ended run = station.Zebx({"repo", "check"});
    EXPECT_EQ(run.status, 7) << run;
    EXPECT_THAT(run.out, HasSubstr(kHash));
    EXPECT_THAT(run.out, HasSubstr("Things that are wrong: 1."));
}

TEST_F(RepoCheck, TellsAContentThatIsGone) {
    Damage("PRAGMA foreign_keys = OFF; DELETE FROM content WHERE size_bytes = 3");
    const Ended run = station.Zebx({"repo", "check"});
    EXPECT_EQ(run.status, 7) << run;
    EXPECT_THAT(run.out, HasSubstr("šaht.dwg"));
}

TEST_F(RepoCheck, TellsANameThatNoWorkstationMayBeGiven) {
    Damage("UPDATE stored_file SET name = '../a.dwg' WHERE name = 'a.dwg'");
    const Ended run = station.Zebx({"repo", "check"});
    EXPECT_EQ(run.status, 7) << run;
    EXPECT_THAT(run.out, HasSubstr("../a.dwg"));
}

TEST_F(RepoCheck, WritesNothing) {
    Damage("UPDATE content SET bytes = CAST('12346' AS BLOB) WHERE size_bytes = 5");
    const std::string before = Bytes(station.Repository());
    const auto support = Tree(station.Support());
    EXPECT_EQ(station.Zebx({"repo", "check"}).status, 7);
    EXPECT_TRUE(Bytes(station.Repository()) == before);
    EXPECT_TRUE(Tree(station.Support()) == support);
}

TEST_F(RepoCheck, OfAFileThatIsCutEndsWithTheSameStatus) {
    for (const char* file : {"repository.db-wal", "repository.db-shm"})
        fs::remove(station.Repository().parent_path() / file);
    fs::resize_file(station.Repository(), fs::file_size(station.Repository()) / 2);
    const Ended run = station.Zebx({"repo", "check"});
    EXPECT_EQ(run.status, 7) << run;
}

TEST_F(RepoCheck, WithoutARepositoryEndsAsEveryVerbDoes) {
    fs::remove(station.Repository());
    const Ended run = station.Zebx({"repo", "check"});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, HasSubstr("zebx connect"));
}

TEST_F(RepoCheck, FitsEightyColumnsInBothLanguages) {
    Damage("UPDATE content SET bytes = x'00'");
    for (const char* language : {"en", "hr"}) {
        station.Set("ZEBX_LANGUAGE", language);
        for (const std::string& line : Lines(station.Zebx({"repo", "check"}).out))
            EXPECT_LE(App::WidthOf(Platform::FromUtf8(line)), App::kLineWidth) << line;
    }
}

TEST_F(RepoCheck, AsADocumentNamesEachFinding) {
    nlohmann::json document = DocumentOf(station.Zebx({"repo", "check", "--json"}));
    EXPECT_EQ(document["verb"], "repo check");
    EXPECT_EQ(document["result"]["contents"], 2);
    EXPECT_TRUE(document["result"]["findings"].empty());
    Damage("UPDATE content SET bytes = CAST('12346' AS BLOB) WHERE size_bytes = 5");
    document = DocumentOf(station.Zebx({"repo", "check", "--json"}));
    EXPECT_EQ(document["status"], 7);
    ASSERT_EQ(document["result"]["findings"].size(), 1U);
    EXPECT_THAT(document["result"]["findings"][0]["where"].get<std::string>(), HasSubstr(kHash));
}

} // namespace
