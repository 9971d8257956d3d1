// SPDX-License-Identifier: MIT
// repo copy, repo export and repo import as their users see them.
#include "app/ConnectedStation.h"
#include "app/Documents.h"
#include "app/Lines.h"
#include "app/Plant.h"
#include "app/Print.h"
#include "app/Running.h"

#include "platform/text/Utf8.h"

#include <csignal>
#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class RepoCopy : public ConnectedStation {
protected:
    RepoCopy() {
        Write(Node("a.dwg"), "12345");
        Write(Node("šaht.dwg"), "123");
        Push();
        Write(Node("a.dwg"), "4321");
        Push();
    }

    void Push() const { EXPECT_EQ(station.Zebx({"push", "ncf:002_NODE", "--quiet"}).status, 0); }
    static std::string Address(const fs::path& file) { return "sqlite:" + file.string(); }
    fs::path Disk(const std::string& name = "net.db") const {
        return station.Folder() / "disk" / name;
    }
    // The history, and that everything in it is whole.
    nlohmann::json Holds(const fs::path& repository) const {
        Station other;
        EXPECT_EQ(other.Zebx({"init"}).status, 0);
        EXPECT_EQ(other.Zebx({"connect", Address(repository)}).status, 0);
        EXPECT_EQ(other.Zebx({"repo", "check"}).status, 0);
        auto held = DocumentOf(other.Zebx({"log", "--limit", "1000", "--json"}))["result"];
        held["entries"] = DocumentOf(other.Zebx({"ls", "--json"}))["result"];
        return held;
    }
    void ExpectCopy(const fs::path& copy) const {
        EXPECT_EQ(Holds(copy), Holds(station.Repository()));
    }
    // So much that it is copied in several parts: 40 MB each.
    void PushLargeOnes(int count) const {
        for (int i = 0; i < count; ++i) {
            std::string bytes;
            bytes.resize(40'000'000, static_cast<char>('a' + i));
            Write(Node("large.dwg"), bytes);
            Push();
        }
    }
};

TEST_F(RepoCopy, ExportsTheRepositoryInUseWithItsHistory) {
    const Ended run = station.Zebx({"repo", "export", Disk().string()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(Lines(run.out), testing::Contains("Copied revisions: 3, contents: 3 (bytes: 12)."));
    EXPECT_THAT(run.out, HasSubstr("The copy is whole, up to revision 3. "
                                   "Checked contents: 3 (bytes: 12)."));
    EXPECT_THAT(run.err, IsEmpty());
    ExpectCopy(Disk());
    EXPECT_EQ(fs::status(Disk()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(RepoCopy, ExportsOnceMoreWhatCameSince) {
    ASSERT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    Write(Node("b.dwg"), "1");
    Push();
    const Ended run = station.Zebx({"repo", "export", Disk().string()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("Copied revisions: 1, contents: 1 (bytes: 1)."));
    ExpectCopy(Disk());
}

TEST_F(RepoCopy, AnExportsFileAloneIsTheCopy) {
    ASSERT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    const fs::path carried = station.Folder() / "carried.db";
    fs::copy_file(Disk(), carried);
    ExpectCopy(carried);
}

TEST_F(RepoCopy, ARelativeFileLiesWhereTheCommandIsTyped) {
    const fs::path here = fs::current_path();
    fs::current_path(station.Folder());
    const Ended run = station.Zebx({"repo", "export", "here.db"});
    fs::current_path(here);
    EXPECT_EQ(run.status, 0) << run;
    ExpectCopy(station.Folder() / "here.db");
}

TEST_F(RepoCopy, ImportsIntoAnEmptyRepository) {
    ASSERT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    Station other;
    ASSERT_EQ(other.Zebx({"init"}).status, 0);
    ASSERT_EQ(other.Zebx({"connect", "--create"}).status, 0);
    const Ended run = other.Zebx({"repo", "import", Disk().string()});
    EXPECT_EQ(run.status, 0) << run;
    ExpectCopy(other.Repository());
    EXPECT_EQ(other.Zebx({"pull", "ncf:002_NODE", "--quiet"}).status, 0);
    EXPECT_EQ(Bytes(other.Support() / "nodes/a.dwg"), "4321");
}

TEST_F(RepoCopy, ImportMakesNoRepository) {
    ASSERT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    Station other;
    const Ended run = other.Zebx({"repo", "import", Disk().string()});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, HasSubstr("zebx connect --create"));
}

TEST_F(RepoCopy, CopiesBetweenAddressesAndLeavesTheOneInUse) {
    const fs::path second = station.Folder() / "second.db";
    const Ended run =
        station.Zebx({"repo", "copy", Address(station.Repository()), Address(second)});
    EXPECT_EQ(run.status, 0) << run;
    ExpectCopy(second);
    EXPECT_THAT(station.Zebx({"status"}).out, HasSubstr(station.Repository().string()));
}

TEST_F(RepoCopy, OntoItselfIsRefused) {
    const std::string address = Address(station.Repository());
    const Ended run = station.Zebx({"repo", "copy", address, address});
    EXPECT_EQ(run.status, 6) << run;
    EXPECT_THAT(run.err, HasSubstr("onto itself"));
    EXPECT_EQ(station.Zebx({"repo", "export", station.Repository().string()}).status, 6);
}

TEST_F(RepoCopy, OntoItselfByAnotherNameChangesNothing) {
    fs::create_symlink(station.Repository(), station.Folder() / "link.db");
    const auto before = Holds(station.Repository());
    (void)station.Zebx({"repo", "export", (station.Folder() / "link.db").string()});
    EXPECT_EQ(Holds(station.Repository()), before);
}

TEST_F(RepoCopy, OfNothingMakesNothing) {
    const fs::path second = station.Folder() / "second.db";
    const Ended run =
        station.Zebx({"repo", "copy", Address(station.Folder() / "nowhere.db"), Address(second)});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, HasSubstr("nowhere.db"));
    EXPECT_FALSE(fs::exists(second));
}

TEST_F(RepoCopy, ExportsOverNoOtherFile) {
    Write(Disk("text"), "what somebody wrote");
    fs::create_directories(Disk("folder"));
    Write(Disk("empty"), "");
    for (const char* name : {"text", "folder", "empty"}) {
        const Ended run = station.Zebx({"repo", "export", Disk(name).string()});
        EXPECT_EQ(run.status, 4) << run;
        EXPECT_THAT(run.err, HasSubstr(Disk(name).string()));
    }
    EXPECT_EQ(Bytes(Disk("text")), "what somebody wrote");
    EXPECT_EQ(Bytes(Disk("empty")), "");
}

TEST_F(RepoCopy, ExportsIntoNoOtherRepository) {
    Station other;
    other.Set("LOGNAME", "somebody");
    ASSERT_EQ(other.Zebx({"init"}).status, 0);
    ASSERT_EQ(other.Zebx({"connect", "--create", Address(Disk())}).status, 0);
    Write(other.Support() / "nodes/other.dwg", "o");
    Write(other.Support() / "label/other.dwg", "o");
    ASSERT_EQ(other.Zebx({"push", "ncf:001_LABEL", "--quiet"}).status, 0);
    const auto before = Holds(Disk());
    const Ended run = station.Zebx({"repo", "export", Disk().string()});
    EXPECT_EQ(run.status, 6) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("does not hold an earlier state"),
                               HasSubstr(Disk().string()), HasSubstr("revision 1")));
    EXPECT_EQ(Holds(Disk()), before);
    EXPECT_EQ(station.Zebx({"repo", "import", Disk().string()}).status, 6);
}

TEST_F(RepoCopy, GoesNotBackFromAnOlderCopy) {
    ASSERT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    Write(Node("b.dwg"), "1");
    Push();
    const Ended run = station.Zebx({"repo", "import", Disk().string()});
    EXPECT_EQ(run.status, 6) << run;
    EXPECT_THAT(run.err, HasSubstr("ahead"));
}

TEST_F(RepoCopy, ImportsNoFileThatIsDamagedOrOfAnother) {
    const auto before = Holds(station.Repository());
    ASSERT_EQ(station.Zebx({"repo", "export", Disk("whole.db").string()}).status, 0);
    const std::string whole = Bytes(Disk("whole.db"));
    Write(Disk("cut.db"), whole.substr(0, whole.size() / 2));
    Write(Disk("changed.db"), whole.substr(0, 40'000) + "!" + whole.substr(40'001));
    Write(Disk("text.db"), "a text");
    Storage::RawDatabase(Disk("other.db").string()).Run("CREATE TABLE t (x)");
    fs::copy_file(Disk("whole.db"), Disk("newer.db"));
    Storage::RawDatabase(Disk("newer.db").string()).Run("UPDATE head SET schema_version = 99");
    SealPages(Disk("newer.db").string());
    const std::map<std::string, int> statuses = {{"cut.db", 7},   {"changed.db", 7},
                                                 {"text.db", 4},  {"other.db", 4},
                                                 {"newer.db", 4}, {"missing.db", 4}};
    for (const auto& [name, status] : statuses) {
        const Ended run = station.Zebx({"repo", "import", Disk(name).string()});
        EXPECT_EQ(run.status, status) << name << run;
        EXPECT_THAT(run.err, HasSubstr(Disk(name).string()));
        EXPECT_FALSE(name == "missing.db" && fs::exists(Disk(name)));
    }
    EXPECT_EQ(Holds(station.Repository()), before);
}

TEST_F(RepoCopy, NamesADamagedContentAndKeepsWhatCameBefore) {
    Plant(station, "UPDATE content SET bytes = CAST('4322' AS BLOB) WHERE size_bytes = 4");
    const Ended run = station.Zebx({"repo", "export", Disk().string()});
    EXPECT_EQ(run.status, 7) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("The content of \"a.dwg\" (002_NODE)"),
                               HasSubstr("has everything up to revision 0")));
    EXPECT_THAT(run.out, HasSubstr("up to 0 of 3"));
}

TEST_F(RepoCopy, AnAddressIsNoFile) {
    for (const char* verb : {"export", "import"}) {
        const Ended run = station.Zebx({"repo", verb, Address(Disk())});
        EXPECT_EQ(run.status, 2) << run;
        EXPECT_THAT(run.err, HasSubstr("zebx repo copy URL1 URL2"));
    }
}

TEST_F(RepoCopy, NeedsBothAddresses) {
    EXPECT_EQ(station.Zebx({"repo", "copy", Address(Disk())}).status, 2);
    EXPECT_EQ(station.Zebx({"repo", "copy", "a", "b", "c"}).status, 2);
    EXPECT_EQ(station.Zebx({"repo", "export"}).status, 2);
    EXPECT_EQ(station.Zebx({"repo", "copy", "nonsense", Address(Disk())}).status, 3);
}

TEST_F(RepoCopy, AsADocumentTellsWhatWasMovedAndChecked) {
    auto document = DocumentOf(station.Zebx({"repo", "export", Disk().string(), "--json"}));
    EXPECT_EQ(document["status"], 0);
    const nlohmann::json expected = {{"from", Address(station.Repository())},
                                     {"to", Address(Disk())},
                                     {"made", true},
                                     {"revisions", 3},
                                     {"allRevisions", 3},
                                     {"copied", {{"revisions", 3}, {"contents", 3}, {"bytes", 12}}},
                                     {"checked", {{"contents", 3}, {"bytes", 12}}}};
    EXPECT_EQ(document["result"], expected);
    document = DocumentOf(station.Zebx({"repo", "import", Disk().string(), "--json"}));
    EXPECT_EQ(document["result"]["copied"]["revisions"], 0);
    document = DocumentOf(
        station.Zebx({"repo", "copy", Address(Disk()), Address(Disk("b.db")), "--json"}));
    EXPECT_EQ(document["result"]["made"], true);
    document = DocumentOf(station.Zebx({"repo", "import", "/nowhere.db", "--json"}));
    EXPECT_TRUE(document["result"].is_null());
    EXPECT_EQ(document["error"]["status"], 4);
}

TEST_F(RepoCopy, StoppedByCtrlCSaysWhereAndGoesOnThere) {
    PushLargeOnes(4);
    Running run(station, {"repo", "export", Disk().string(), "--progress", "always"});
    ASSERT_TRUE(run.WaitFor("revision 4 of 7"));
    run.Signal(SIGINT);
    const Ended stopped = run.Finish();
    EXPECT_EQ(stopped.status, 130) << stopped;
    EXPECT_THAT(stopped.err, HasSubstr("The same command goes on from there."));
    EXPECT_LT(Holds(Disk())["revisions"].size(), 7U);
    EXPECT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    ExpectCopy(Disk());
}

TEST_F(RepoCopy, KilledAtAnyMomentIsWholeAndGoesOn) {
    PushLargeOnes(3);
    const auto original = Holds(station.Repository());
    std::size_t reached = 0;
    for (int i = 1; i <= 12; ++i) {
        (void)station.ZebxKilledAfter(std::chrono::milliseconds(15 * i),
                                      {"repo", "export", Disk().string()});
        if (!fs::exists(Disk()))
            continue;
        const auto revisions = Holds(Disk())["revisions"];
        EXPECT_GE(revisions.size(), reached);
        reached = revisions.size();
    }
    EXPECT_EQ(station.Zebx({"repo", "export", Disk().string()}).status, 0);
    EXPECT_EQ(Holds(Disk()), original);
}

TEST_F(RepoCopy, FitsEightyColumnsInBothLanguages) {
    for (const char* language : {"en", "hr"}) {
        station.Set("ZEBX_LANGUAGE", language);
        const fs::path file = station.Folder() / language;
        for (const std::string& line : Lines(station.Zebx({"repo", "export", file}).out))
            EXPECT_TRUE(App::WidthOf(Platform::FromUtf8(line)) <= App::kLineWidth ||
                        line.find(file.string()) != std::string::npos)
                << line;
    }
}

} // namespace
