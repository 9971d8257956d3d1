// SPDX-License-Identifier: MIT
// The embedded repository as a file: how it is made, and what is said of files that are
// none.
#include "RawDatabase.h"
#include "TestFiles.h"
#include "platform/os/File.h"
#include "platform/text/Utf8.h"
#include "storage/Engine.h"
#include "storage/content/ContentHash.h"
#include "storage/sqlite/SqliteConnection.h"
#include "storage/store/Schema.h"
#include "storage/store/Store.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/PageSeals.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace Storage {
namespace {

class SqliteRepository : public testing::Test {
protected:
    void Create() { CreateRepository(address); }
    std::unique_ptr<SqlConnection> Open() { return OpenRepository(address); }
    std::unique_ptr<Store> OpenStore(std::unique_ptr<SqlConnection> connection) {
        StoreOptions options;
        options.stamp = [] { return Stamp{u"now", u"ana", u"here", u"test"}; };
        options.leftOut = [](const StorageError&) { ADD_FAILURE(); };
        return std::make_unique<Store>(std::move(connection), std::move(options));
    }
    std::unique_ptr<Store> OpenStore() { return OpenStore(Open()); }

    // Changes the file with other tools, so that it is still a good one to look at.
    void Plant(const std::string& sql) {
        RawDatabase(native).Run(sql);
        SealPages(native);
    }
    void Write(const std::string& bytes) { std::ofstream(native, std::ios::binary) << bytes; }
    // What opening the file complains of.
    std::pair<Problem, MessageNumber> Complaint() {
        const auto error = ErrorOf([&] { Open(); });
        return error ? std::make_pair(error->Kind(), error->Messages().at(0).number)
                     : std::make_pair(Problem::None, MessageNumber::DisplayName);
    }
    static std::pair<Problem, MessageNumber> Says(Problem problem, MessageNumber number) {
        return {problem, number};
    }
    static unsigned ModeOf(const fs::path& path) {
        struct stat status = {};
        EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
        return status.st_mode & 0777;
    }
    std::vector<std::string> Names(const fs::path& path) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(path))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder folder;
    fs::path native = folder.Native() / "repository.db";
    Address address{folder.Path() + u"repository.db"};
};

TEST_F(SqliteRepository, AMadeOneIsPrivateWithItsFoldersAndLeavesNothingElse) {
    address.path = folder.Path() + u"a\\b\\repository.db";
    Create();
    EXPECT_EQ(ModeOf(folder.Native() / "a"), 0700u);
    EXPECT_EQ(ModeOf(folder.Native() / "a/b"), 0700u);
    EXPECT_EQ(ModeOf(folder.Native() / "a/b/repository.db"), 0600u);
    EXPECT_THAT(Names(folder.Native() / "a/b"), testing::ElementsAre("repository.db"));
    OpenStore()->AddFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(ModeOf(folder.Native() / "a/b/repository.db-wal"), 0600u);
    EXPECT_EQ(ModeOf(folder.Native() / "a/b/repository.db-shm"), 0600u);
}

TEST_F(SqliteRepository, AMadeOneHasItsMarksAndPages) {
    Create();
    RawDatabase raw(native);
    EXPECT_EQ(raw.Ask("PRAGMA application_id"), std::to_string(0x5A454258));
    EXPECT_EQ(raw.Ask("PRAGMA page_size"), "16384");
    EXPECT_EQ(raw.Ask("PRAGMA journal_mode"), "wal");
    EXPECT_EQ(raw.Ask("SELECT schema_version FROM head"), std::to_string(kSchemaVersion));
    EXPECT_EQ(raw.Ask("PRAGMA integrity_check"), "ok");
}

TEST_F(SqliteRepository, MakingLeavesWhatIsThereAlone) {
    Create();
    OpenStore()->AddFiles({MakeFile(u"a.dwg", "1")});
    Create();
    EXPECT_EQ(OpenStore()->FileIds(4, u"001_LABEL").size(), 1u);
    Write("text");
    Create();
    EXPECT_EQ(fs::file_size(native), 4u);
}

TEST_F(SqliteRepository, MakingThatFailsLeavesNothing) {
    EXPECT_EQ(ProblemOf([&] {
                  CreateSqlite(address.path, [](SqlConnection&) {
                      throw StorageError(Problem::Full, MessageNumber::Full);
                  });
              }),
              Problem::Full);
    EXPECT_THAT(Names(folder.Native()), testing::IsEmpty());
}

TEST_F(SqliteRepository, OneThatSomebodyMakesMeanwhileIsKept) {
    CreateSqlite(address.path, [&](SqlConnection& sql) {
        CreateSchema(sql);
        Create();
        OpenStore()->AddFiles({MakeFile(u"a.dwg", "1")});
    });
    EXPECT_EQ(OpenStore()->FileIds(4, u"001_LABEL").size(), 1u);
}

TEST_F(SqliteRepository, ChangesOfAnEarlierOneAreNotPlayedIntoANewOne) {
    std::ofstream(native.string() + "-wal") << "changes";
    const auto error = ErrorOf([&] { Create(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::ChangesLeft);
    EXPECT_FALSE(fs::exists(native));
    EXPECT_TRUE(fs::exists(native.string() + "-wal"));
    // An empty one, which every repository leaves, is harmless.
    std::ofstream(native.string() + "-wal", std::ios::trunc).close();
    Create();
    EXPECT_EQ(Complaint().first, Problem::None);
}

TEST_F(SqliteRepository, AFolderThatCannotBeMadeIsTold) {
    std::ofstream(folder.Native() / "file") << "text";
    address.path = folder.Path() + u"file\\deeper\\repository.db";
    const auto error = ErrorOf([&] { Create(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::NotCreated);
}

TEST_F(SqliteRepository, OpeningNeverMakesOne) {
    EXPECT_EQ(Complaint(), Says(Problem::Missing, MessageNumber::Missing));
    EXPECT_THAT(Names(folder.Native()), testing::IsEmpty());
    address.path = folder.Path() + u"no\\such\\folder.db";
    EXPECT_EQ(Complaint(), Says(Problem::Missing, MessageNumber::Missing));
}

TEST_F(SqliteRepository, EachKindOfOtherFileIsToldApart) {
    fs::create_directory(native);
    EXPECT_EQ(Complaint(), Says(Problem::NotARepository, MessageNumber::IsFolder));
    fs::remove(native);
    ASSERT_EQ(mkfifo(native.c_str(), 0600), 0);
    EXPECT_EQ(Complaint(), Says(Problem::NotARepository, MessageNumber::OtherFile));
    fs::remove(native);
    Write("");
    EXPECT_EQ(Complaint(), Says(Problem::NotARepository, MessageNumber::EmptyFile));
    Write("short text");
    EXPECT_EQ(Complaint(), Says(Problem::NotARepository, MessageNumber::OtherFile));
    Write(std::string(100'000, 'x'));
    EXPECT_EQ(Complaint(), Says(Problem::NotARepository, MessageNumber::OtherFile));
    fs::remove(native);
    RawDatabase(native).Run(
        "CREATE TABLE head (id, schema_version); INSERT INTO head VALUES (1, 1)");
    EXPECT_EQ(Complaint(), Says(Problem::NotARepository, MessageNumber::OtherDatabase));
}

TEST_F(SqliteRepository, TheFilesThatAreNoRepositoryAreLeftAsTheyAre) {
    Write("short text");
    Complaint();
    std::string text;
    std::getline(std::ifstream(native), text);
    EXPECT_EQ(text, "short text");
    EXPECT_THAT(Names(folder.Native()), testing::ElementsAre("repository.db"));
}

TEST_F(SqliteRepository, ARepositoryThatWasCutIsDamaged) {
    Create();
    OpenStore()->AddFiles({MakeFile(u"a.dwg", std::string(200'000, 'x'))});
    for (const std::uintmax_t size : {300'000u, 100'000u, 16'384u, 5'000u, 200u}) {
        ASSERT_GT(fs::file_size(native), size);
        fs::resize_file(native, size);
        EXPECT_EQ(Complaint().first, Problem::Integrity) << size;
    }
}

TEST_F(SqliteRepository, OneWithoutAHeadIsDamaged) {
    Create();
    Plant("DELETE FROM head");
    EXPECT_EQ(Complaint(), Says(Problem::Integrity, MessageNumber::Damaged));
    Plant("DROP TABLE head");
    EXPECT_EQ(Complaint(), Says(Problem::Integrity, MessageNumber::Damaged));
    // A view is no table.
    Plant("CREATE VIEW head AS SELECT 1 AS id, 1 AS schema_version");
    EXPECT_EQ(Complaint(), Says(Problem::Integrity, MessageNumber::Damaged));
}

TEST_F(SqliteRepository, ANewerOneIsRefusedWithBothVersions) {
    Create();
    Plant("UPDATE head SET schema_version = 7");
    const auto error = ErrorOf([&] { Open(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::NewerVersion);
    EXPECT_THAT(error->Messages()[0].values,
                testing::ElementsAre(Platform::FromUtf8(native.string()), u"7", u"2"));
}

TEST_F(SqliteRepository, TriggersThatSomebodyPlantedDoNotRun) {
    Create();
    Plant("CREATE TRIGGER t AFTER INSERT ON stored_file BEGIN "
          "UPDATE stored_file SET name = '../x'; END");
    const auto store = OpenStore();
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(store->File(store->FileIds(4, u"001_LABEL").at(0))->GetFileName(), u"a.dwg");
}

TEST_F(SqliteRepository, AfterTheLastConnectionTheFileAloneIsWhole) {
    Create();
    OpenStore()->AddFiles({MakeFile(u"a.dwg", std::string(100'000, 'x'))});
    EXPECT_EQ(fs::file_size(native.string() + "-wal"), 0u);
    fs::remove(native.string() + "-wal");
    fs::remove(native.string() + "-shm");
    EXPECT_EQ(OpenStore()->FileIds(4, u"001_LABEL").size(), 1u);
}

TEST_F(SqliteRepository, TheCaseOfTheFilesNameDoesNotMatter) {
    Create();
    address.path = folder.Path() + u"REPOSITORY.DB";
    EXPECT_EQ(Complaint().first, Problem::None);
}

TEST_F(SqliteRepository, ItNoticesThatTheFileIsGoneOrAnotherOne) {
    Create();
    const auto connection = Open();
    EXPECT_TRUE(connection->IsAlive());
    fs::rename(native, native.string() + ".away");
    EXPECT_FALSE(connection->IsAlive());
    fs::copy_file(native.string() + ".away", native);
    EXPECT_FALSE(connection->IsAlive());
    fs::remove(native);
    fs::rename(native.string() + ".away", native);
    EXPECT_TRUE(connection->IsAlive());
}

TEST_F(SqliteRepository, AWriterThatWaitsTooLongIsToldThatSomebodyElseWrites) {
    Create();
    const auto first = Open();
    first->BeginWrite();
    const auto second = OpenStore(OpenSqlite(address.path, {.busyTimeoutMs = 1}));
    const auto error = ErrorOf([&] { second->AddFiles({MakeFile(u"a.dwg", "1")}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Busy);
    EXPECT_EQ(second->FileIds(4, u"001_LABEL").size(), 0u);
    first->Rollback();
    second->AddFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(second->FileIds(4, u"001_LABEL").size(), 1u);
}

TEST_F(SqliteRepository, AFullDiskStopsTheCallWholeAndTheNextOneLands) {
    Create();
    const auto store = OpenStore();
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    store->Connection().RunScript("PRAGMA max_page_count = 40");
    const auto error = ErrorOf([&] {
        store->AddFiles({MakeFile(u"a.dwg", "2"), MakeFile(u"b.dwg", std::string(1'000'000, 'x'))});
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Full);
    const auto ids = store->FileIds(4, u"001_LABEL");
    ASSERT_EQ(ids.size(), 1u);
    EXPECT_EQ(BytesOf(store->File(ids[0])), "1");
    store->AddFiles({MakeFile(u"a.dwg", "3")});
    EXPECT_EQ(RawDatabase(native).Ask("SELECT revision FROM head"), "2");
    EXPECT_EQ(RawDatabase(native).Ask("PRAGMA integrity_check"), "ok");
}

TEST_F(SqliteRepository, FlippedBytesOfAContentAreFoundInTheFile) {
    Create();
    const std::string content = "a content that is easily found " + std::string(50'000, 'y');
    OpenStore()->AddFiles({MakeFile(u"a.dwg", content), MakeFile(u"b.dwg", "good")});
    std::string bytes;
    ASSERT_FALSE(Platform::ReadFile(address.path, bytes));
    const std::size_t at = bytes.find("easily found");
    ASSERT_NE(at, std::string::npos);
    bytes[at] ^= 1;
    ASSERT_FALSE(Platform::WriteFile(address.path, bytes));
    SealPages(native);
    const auto store = OpenStore();
    const auto ids = store->FileIds(4, u"001_LABEL");
    EXPECT_EQ(ProblemOf([&] { store->File(ids.at(0)); }), Problem::Integrity);
    EXPECT_EQ(BytesOf(store->File(ids.at(1))), "good");
}

TEST_F(SqliteRepository, AResultThatIsStillOpenStopsTheSameStatement) {
    Create();
    const auto connection = Open();
    const auto rows = connection->Query("SELECT 1", {});
    EXPECT_EQ(ProblemOf([&] { connection->Query("SELECT 1", {}); }), Problem::Internal);
    EXPECT_TRUE(connection->Query("SELECT 2", {})->Next());
    EXPECT_TRUE(rows->Next());
}

TEST_F(SqliteRepository, AStatementWithTooFewValuesDoesNotRun) {
    Create();
    const auto connection = Open();
    EXPECT_EQ(ProblemOf([&] { connection->Execute("UPDATE head SET revision = $1", {}); }),
              Problem::Internal);
}

TEST_F(SqliteRepository, ValuesGoToTheirNumbersWhateverTheirOrderInTheText) {
    Create();
    const auto connection = Open();
    const auto rows = connection->Query("SELECT $2, $1, $2, $3, $4",
                                        {std::int64_t(1), "two", SqlBytes("\0x"), nullptr});
    ASSERT_TRUE(rows->Next());
    EXPECT_EQ(rows->Text(0), "two");
    EXPECT_EQ(rows->Integer(1), 1);
    EXPECT_EQ(rows->Text(2), "two");
    EXPECT_TRUE(rows->IsNull(4));
}

// Rights, as an ordinary user finds them.

class SqliteRights : public SqliteRepository {
protected:
    void SetUp() override {
        fs::permissions(folder.Native(), fs::perms(0755));
        Create();
        OpenStore()->AddFiles({MakeFile(u"a.dwg", "1")});
    }
    void SetModes(unsigned file, unsigned sideFiles, unsigned folderMode) {
        fs::permissions(native, fs::perms(file));
        fs::permissions(native.string() + "-wal", fs::perms(sideFiles));
        fs::permissions(native.string() + "-shm", fs::perms(sideFiles));
        fs::permissions(folder.Native(), fs::perms(folderMode));
    }
    void TearDown() override { fs::permissions(folder.Native(), fs::perms(0755)); }
    static void OrdinaryUserIsNotAllowedTo(const std::function<void()>& work) {
        EXPECT_TRUE(PassesInAChildProcess([&] {
            BecomeOrdinaryUser();
            EXPECT_EQ(ProblemOf(work), Problem::NotAllowed);
        }));
    }
};

TEST_F(SqliteRights, AUserWhoMayOnlyReadReadsAndMayNotWrite) {
    SetModes(0444, 0444, 0555);
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        const auto store = OpenStore();
        EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "1");
        EXPECT_FALSE(store->Connection().MayWrite());
    }));
    OrdinaryUserIsNotAllowedTo([&] { OpenStore()->AddFiles({MakeFile(u"b.dwg", "2")}); });
    OrdinaryUserIsNotAllowedTo([&] { OpenStore()->RegisterContent(4, u"K", 1); });
}

TEST_F(SqliteRights, AReaderSeesWhatAWriterWhoIsAtWorkHasCommitted) {
    // The writer is a process of its own: connections do not survive a fork.
    int ready[2];
    int finish[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(finish), 0);
    const pid_t writer = fork();
    if (writer == 0) {
        close(finish[1]);
        const auto store = OpenStore();
        store->AddFiles({MakeFile(u"b.dwg", "2")});
        char byte = 'x';
        const bool told = write(ready[1], &byte, 1) == 1;
        _exit(told && read(finish[0], &byte, 1) == 0 ? 0 : 1);
    }
    close(ready[1]);
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    SetModes(0444, 0444, 0555);
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(OpenStore()->FileIds(4, u"001_LABEL").size(), 2u);
    }));
    close(finish[1]);
    int status = 0;
    EXPECT_EQ(waitpid(writer, &status, 0), writer);
    EXPECT_EQ(status, 0);
    close(ready[0]);
    close(finish[0]);
}

TEST_F(SqliteRights, ARepositoryAloneInAFolderThatTakesNoFilesIsRead) {
    fs::remove(native.string() + "-wal");
    fs::remove(native.string() + "-shm");
    fs::permissions(native, fs::perms(0444));
    fs::permissions(folder.Native(), fs::perms(0555));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        const auto store = OpenStore();
        EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "1");
        EXPECT_FALSE(store->Connection().MayWrite());
        EXPECT_TRUE(store->Connection().IsAlive());
        EXPECT_EQ(ProblemOf([&] { store->RegisterContent(4, u"K", 1); }), Problem::NotAllowed);
        CheckCounts counts;
        store->Check([](const Message&, const Message&) { ADD_FAILURE(); }, counts);
        EXPECT_EQ(counts.files, 1);
    }));
    EXPECT_THAT(Names(folder.Native()), testing::ElementsAre("repository.db"));
}

TEST_F(SqliteRights, WhoReadsAFileAloneNoticesThatAWriterCame) {
    fs::remove(native.string() + "-wal");
    fs::remove(native.string() + "-shm");
    fs::permissions(native, fs::perms(0444));
    fs::permissions(folder.Native(), fs::perms(0555));
    int toReader[2];
    int fromReader[2];
    ASSERT_EQ(pipe(toReader), 0);
    ASSERT_EQ(pipe(fromReader), 0);
    const pid_t reader = fork();
    if (reader == 0) {
        close(toReader[1]);
        BecomeOrdinaryUser();
        auto connection = Open();
        char byte = connection->IsAlive() ? 'y' : 'n';
        const bool told = write(fromReader[1], &byte, 1) == 1;
        const bool heard = read(toReader[0], &byte, 1) == 1;
        const bool noticed = told && heard && !connection->IsAlive();
        connection = Open();
        _exit(noticed && connection->IsAlive() && OpenStore()->FileIds(4, u"001_LABEL").size() == 2
                  ? 0
                  : 1);
    }
    close(fromReader[1]);
    char byte = 0;
    EXPECT_EQ(read(fromReader[0], &byte, 1), 1);
    EXPECT_EQ(byte, 'y');
    fs::permissions(native, fs::perms(0644));
    fs::permissions(folder.Native(), fs::perms(0755));
    OpenStore()->AddFiles({MakeFile(u"b.dwg", "2")});
    EXPECT_EQ(write(toReader[1], &byte, 1), 1);
    int status = 0;
    EXPECT_EQ(waitpid(reader, &status, 0), reader);
    EXPECT_EQ(status, 0);
    close(toReader[0]);
    close(toReader[1]);
    close(fromReader[0]);
}

TEST_F(SqliteRights, WhoMayWriteToTheFolderAloneReads) {
    SetModes(0444, 0444, 0777);
    for (const bool withSideFiles : {true, false}) {
        if (!withSideFiles) {
            fs::remove(native.string() + "-wal");
            fs::remove(native.string() + "-shm");
        }
        EXPECT_TRUE(PassesInAChildProcess([&] {
            BecomeOrdinaryUser();
            const auto store = OpenStore();
            EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "1");
            EXPECT_FALSE(store->Connection().MayWrite());
        })) << withSideFiles;
    }
}

TEST_F(SqliteRights, ALogThatOnlyAWriterCanCarryOverIsToldSo) {
    std::string log;
    {
        const auto writer = OpenStore();
        writer->AddFiles({MakeFile(u"b.dwg", "2")});
        ASSERT_FALSE(Platform::ReadFile(address.path + u"-wal", log));
        ASSERT_FALSE(log.empty());
    }
    ASSERT_FALSE(Platform::WriteFile(address.path + u"-wal", log));
    fs::remove(native.string() + "-shm");
    fs::permissions(native, fs::perms(0444));
    fs::permissions(native.string() + "-wal", fs::perms(0444));
    fs::permissions(folder.Native(), fs::perms(0555));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(Complaint(), Says(Problem::NotAllowed, MessageNumber::NeedsWriter));
    }));
}

TEST_F(SqliteRights, WithoutTheRightToReadTheFileItSaysSo) {
    SetModes(0000, 0444, 0755);
    OrdinaryUserIsNotAllowedTo([&] { Open(); });
    SetModes(0444, 0000, 0555);
    OrdinaryUserIsNotAllowedTo([&] { Open(); });
}

TEST_F(SqliteRights, WithoutTheRightToEnterTheFolderItIsNotCalledMissing) {
    SetModes(0444, 0444, 0000);
    OrdinaryUserIsNotAllowedTo([&] { Open(); });
}

TEST_F(SqliteRights, AFolderWithoutRightsTakesNoNewRepository) {
    SetModes(0644, 0644, 0555);
    for (const CString path : {u"new.db", u"new\\folder\\new.db"})
        OrdinaryUserIsNotAllowedTo([&] { CreateRepository({folder.Path() + path}); });
}

} // namespace
} // namespace Storage
