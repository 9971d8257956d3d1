// SPDX-License-Identifier: MIT
// A repository into which somebody wrote what this program would never send, and a folder
// into which somebody laid links: what a user who pulls gets, and that nothing else happens.
#include "Content.h"
#include "support/PageSeals.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

using namespace AppTest;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class HostileRepository : public testing::Test {
protected:
    HostileRepository() : m_file(ana.Folder() / "shared/network.db") {
        fs::create_directory(ana.Folder() / "shared");
    }
    void Push(const std::map<std::string, std::string>& drawings) {
        for (const Station* station : {&ana, &ivan})
            ASSERT_EQ(station->Zebx({"init"}).status, 0);
        for (const auto& [name, bytes] : drawings)
            Write(ana.Support() / "nodes" / name, bytes);
        ASSERT_EQ(ana.Zebx({"connect", "--create", "sqlite:" + m_file.string()}).status, 0);
        ASSERT_EQ(ivan.Zebx({"connect", "sqlite:" + m_file.string()}).status, 0);
        const Ended push = ana.Zebx({"push", "ncf:002_NODE"});
        ASSERT_EQ(push.status, 0) << push;
    }
    // Changes the repository with other tools; its pages are good ones afterwards.
    void Plant(const std::string& sql) {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(m_file.c_str(), &database), SQLITE_OK);
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
            << error << ": " << sql;
        sqlite3_close(database);
        SealPages(m_file);
    }
    // What pulling the nodes changes on the workstation, outside the program's own log.
    Ended Pull() {
        const auto before = Everything();
        const Ended pull = ivan.Zebx({"pull", "ncf:002_NODE"});
        m_changed.clear();
        for (const auto& [path, bytes] : Everything())
            if (const auto old = before.find(path); old == before.end() || old->second != bytes)
                m_changed.push_back(path);
        for (const auto& [path, bytes] : before)
            EXPECT_TRUE(fs::exists(fs::symlink_status(ivan.Folder() / path))) << path;
        return pull;
    }
    // Every file and link of both workstations' folders but the logs.
    std::map<std::string, std::string> Everything() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : fs::recursive_directory_iterator(ivan.Folder())) {
            const std::string path = entry.path().lexically_relative(ivan.Folder()).string();
            if (path.rfind("state", 0) == 0 || path == "out" || path == "err")
                continue;
            all[path] = entry.is_symlink()        ? "link to " + fs::read_symlink(entry).string()
                        : entry.is_regular_file() ? Bytes(entry.path())
                                                  : "folder";
        }
        return all;
    }

    Station ana;
    Station ivan;
    fs::path m_file;
    std::vector<std::string> m_changed;
};

const std::string kNodes = "data/StudioZEB/support/nodes/";

TEST_F(HostileRepository, NamesThatLeadElsewhereAreRefusedEachWithItsReasonAndTheRestComes) {
    struct Planted {
        std::string sql;  // the name, as SQL
        std::string told; // how the user is told of it
        std::string why;
    };
    const std::string kLong(300, 'a');
    const std::vector<Planted> planted = {
        {"'../x'", "\"../x\"", "holds a \"/\""},
        {"'a/b'", "\"a/b\"", "holds a \"/\""},
        {"'a\\b'", "\"a\\b\"", "holds a \"/\" or a \"\\\""},
        {"'/tmp/zebx-planted'", "\"/tmp/zebx-planted\"", "holds a \"/\""},
        {"'C:x'", "\"C:x\"", "holds a \":\""},
        {"''", "A file without a name", "refused"},
        {"'.'", "\".\"", "means a folder"},
        {"'..'", "\"..\"", "means a folder"},
        {"'a' || char(0) || 'b'", "\"a\u2400b\"", "control character"},
        {"'CON'", "\"CON\"", "as that of a device"},
        {"'" + kLong + "'", kLong, "longer than 255 bytes"},
    };
    std::map<std::string, std::string> drawings = {{"good.dwg", "good"}, {"last.dwg", "last"}};
    for (std::size_t i = 0; i < planted.size(); ++i)
        drawings["h" + std::to_string(i) + ".dwg"] = "planted " + std::to_string(i);
    Push(drawings);
    for (std::size_t i = 0; i < planted.size(); ++i)
        Plant("UPDATE stored_file SET name = " + planted[i].sql + ", name_folded = lower(" +
              planted[i].sql + ") WHERE name = 'h" + std::to_string(i) + ".dwg'");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 8) << pull;
    EXPECT_THAT(m_changed, ElementsAre(kNodes + "good.dwg", kNodes + "last.dwg"));
    for (const Planted& name : planted) {
        std::istringstream lines(pull.err);
        bool isTold = false;
        for (std::string line; std::getline(lines, line);)
            isTold = isTold || (line.find(name.told) != std::string::npos &&
                                line.find(name.why) != std::string::npos);
        EXPECT_TRUE(isTold) << name.told << "\n" << pull;
    }
    EXPECT_FALSE(fs::exists("/tmp/zebx-planted"));
}

TEST_F(HostileRepository, OfTwoNamesThatDifferByCaseAloneTheFirstComesAndTheOtherIsTold) {
    Push({{"two.dwg", "first"}, {"zwei.dwg", "second"}, {"good.dwg", "good"}});
    Plant("DROP INDEX stored_file_current; UPDATE stored_file SET name = 'TWO.dwg', "
          "name_folded = 'two.dwg' WHERE name = 'zwei.dwg'");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 8) << pull;
    EXPECT_THAT(m_changed, ElementsAre(kNodes + "good.dwg", kNodes + "two.dwg"));
    EXPECT_EQ(Bytes(ivan.Support() / "nodes/two.dwg"), "first");
    EXPECT_THAT(pull.err, HasSubstr("\"TWO.dwg\" (002_NODE) was refused: its name differs by case "
                                    "alone from \"two.dwg\""));
}

TEST_F(HostileRepository, ContentsThatAreNotWhatWasSentAreToldEachAndTheRestComes) {
    Push({{"hash.dwg", "1"},
          {"size.dwg", "22"},
          {"stored.dwg", "333"},
          {"missing.dwg", "4444"},
          {"good.dwg", "55555"}});
    Plant("UPDATE content SET bytes = x'00' WHERE size_bytes = 1;"
          "UPDATE stored_file SET size_bytes = 7 WHERE name = 'stored.dwg';"
          "UPDATE content SET size_bytes = 9 WHERE size_bytes = 2;"
          "DELETE FROM content WHERE size_bytes = 4");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 7) << pull;
    EXPECT_THAT(m_changed, ElementsAre(kNodes + "good.dwg"));
    for (const char* name : {"hash.dwg", "size.dwg", "stored.dwg"})
        EXPECT_THAT(pull.err, HasSubstr("The content of \"" + std::string(name) +
                                        "\" (002_NODE) is damaged"));
    EXPECT_THAT(pull.err, HasSubstr("The content of \"missing.dwg\" (002_NODE) is missing"));
}

TEST_F(HostileRepository, ADamagedPageOfTheFileIsToldWithTheFileThatNeedsItAndTheRestComes) {
    Push({{"large.dwg", std::string(100'000, 'y')}, {"good.dwg", "good"}});
    std::string bytes = Bytes(m_file);
    // The content's last page, which holds nothing else.
    const std::size_t at = bytes.rfind(std::string(1000, 'y'));
    ASSERT_NE(at, std::string::npos);
    bytes[at] ^= 1;
    Write(m_file, bytes);
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 7) << pull;
    EXPECT_THAT(m_changed, ElementsAre(kNodes + "good.dwg"));
    EXPECT_THAT(pull.err, testing::ContainsRegex("The content of \"large.dwg\" \\(002_NODE\\) is "
                                                 "damaged .*: page [0-9]+ of the repository's file "
                                                 "does not fit its checksum"));
}

TEST_F(HostileRepository, LinksInTheKindsFolderAreNotFollowed) {
    Push({{"file.dwg", "1"}, {"nothing.dwg", "2"}, {"folder.dwg", "3"}, {"good.dwg", "good"}});
    const fs::path outside = ivan.Folder() / "outside";
    Write(outside / "file", "not to be touched");
    fs::create_directory(outside / "folder");
    const fs::path nodes = ivan.Support() / "nodes";
    fs::create_directories(nodes);
    fs::create_symlink(outside / "file", nodes / "file.dwg");
    fs::create_symlink(outside / "nothing", nodes / "nothing.dwg");
    fs::create_directory_symlink(outside / "folder", nodes / "folder.dwg");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 9) << pull;
    EXPECT_THAT(m_changed, ElementsAre(kNodes + "good.dwg"));
    EXPECT_EQ(Bytes(outside / "file"), "not to be touched");
    EXPECT_FALSE(fs::exists(outside / "nothing"));
    EXPECT_TRUE(fs::is_empty(outside / "folder"));
    for (const char* name : {"file.dwg", "nothing.dwg", "folder.dwg"})
        EXPECT_THAT(pull.err, HasSubstr("that no link stands in its place - " + std::string(name)));
}

TEST_F(HostileRepository, LocalNamesThatOthersCouldNotHoldAreRefusedBeforeAnythingIsSent) {
    Push({{"good.dwg", "good"}});
    const std::vector<std::string> names = {"C:x.dwg", "a\\b.dwg", "CON.dwg", "a\nb.dwg",
                                            "GOOD.dwg"};
    for (const std::string& name : names)
        Write(ana.Support() / "nodes" / name, "refused");
    Write(ana.Support() / "nodes/new.dwg", "new");
    const std::string before = Bytes(m_file);
    const Ended push = ana.Zebx({"push", "ncf:002_NODE"});
    EXPECT_EQ(push.status, 8) << push;
    EXPECT_EQ(Bytes(m_file), before);
    for (const char* told : {"\"C:x.dwg\"", "\"CON.dwg\"", "\"GOOD.dwg\"", "\"a\u240ab.dwg\""})
        EXPECT_THAT(push.err, HasSubstr(told)) << push;
}

} // namespace
