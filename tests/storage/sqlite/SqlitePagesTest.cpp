// SPDX-License-Identifier: MIT
// A repository file of which somebody or something changed bytes: what is wrong is told and
// never served, wherever it is.
#include "RawDatabase.h"
#include "TestFiles.h"
#include "platform/os/File.h"
#include "platform/text/Utf8.h"
#include "storage/Engine.h"
#include "storage/sqlite/PageChecksumVfs.h"
#include "storage/store/Store.h"
#include "support/PageSeals.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace Storage {
namespace {

class SqlitePages : public testing::Test {
protected:
    void SetUp() override {
        CreateRepository(address);
        const auto store = OpenStore();
        Repository::CNetRepositoryItem item;
        item.SetId(u"i");
        item.GetFiles()->push_back(MakeFile(u"held.dwg", "held"));
        store->RegisterContent(4, u"001_LABEL", 10313);
        store->AddFiles({MakeFile(u"a.dwg", std::string(40'000, 'x')), MakeFile(u"b.dwg", "22")});
        store->SaveGeneralSettings(u"<gs/>", {}, u"");
        store->AddRepositoryItem(u"TAG", item);
    }
    std::unique_ptr<Store> OpenStore() {
        StoreOptions options;
        options.stamp = [] { return Stamp{u"now", u"ana", u"here", u"test"}; };
        options.leftOut = [this](const StorageError& error) { m_told = error.Kind(); };
        return std::make_unique<Store>(OpenRepository(address), std::move(options));
    }
    std::string Bytes() const {
        std::string bytes;
        EXPECT_FALSE(Platform::ReadFile(address.path, bytes));
        return bytes;
    }
    void Write(const std::string& bytes) {
        ASSERT_FALSE(Platform::WriteFile(address.path, bytes));
        fs::remove(native.string() + "-wal");
        fs::remove(native.string() + "-shm");
    }

    // Everything that the repository gives out, as one text; or the problem that it tells.
    std::string Everything() {
        m_told = Problem::None;
        std::string all;
        try {
            const auto store = OpenStore();
            RepositoryState state;
            store->ReadState(state);
            all = std::to_string(state.revision) + "/" + std::to_string(state.files) + "/" +
                  std::to_string(state.contentBytes);
            std::vector<StoredFile> files;
            std::vector<StoredGS> settings;
            store->List(files, settings);
            for (const StoredFile& file : files)
                all += Platform::ToUtf8(file.name) + BytesOf(store->File(file.id));
            if (const auto text = store->LoadGeneralSettings(u""))
                all += Platform::ToUtf8(text->xml);
            for (const auto& item : store->RepositoryItems(u"TAG"))
                all += Platform::ToUtf8(item->GetId()) + BytesOf(item->GetFiles()->at(0));
            for (const RevisionEntry& entry : store->Revisions(0, 10))
                all += std::to_string(entry.number) + Platform::ToUtf8(entry.operation);
        } catch (const StorageError& error) {
            m_told = error.Kind();
        }
        return m_told == Problem::None ? all : "problem";
    }
    // Whether the check, or opening for it, tells something.
    bool CheckTells() {
        bool tells = false;
        try {
            CheckCounts counts;
            OpenStore()->Check([&](const Message&, const Message&) { tells = true; }, counts);
        } catch (const StorageError&) {
            tells = true;
        }
        return tells;
    }
    // As the file is now nothing wrong is given out, and the check tells.
    void ExpectNotServed(const std::string& what) {
        const std::string answer = Everything();
        EXPECT_TRUE(answer == m_right || answer == "problem") << what << ": " << answer;
        EXPECT_TRUE(CheckTells()) << what;
    }
    void ExpectNotServed(const std::string& bytes, const std::string& what) {
        Write(bytes);
        ExpectNotServed(what);
    }
    // In place, which is faster than writing the file anew.
    void Flip(std::size_t at, int bit) {
        std::fstream file(native, std::ios::in | std::ios::out | std::ios::binary);
        file.seekg(static_cast<std::streamoff>(at));
        const int byte = file.get();
        file.seekp(static_cast<std::streamoff>(at));
        file.put(static_cast<char>(byte ^ (1 << bit)));
        ASSERT_TRUE(file.flush());
    }
    void ExpectFlipNotServed(std::size_t at, int bit) {
        Flip(at, bit);
        ExpectNotServed("bit " + std::to_string(bit) + " of byte " + std::to_string(at));
        Flip(at, bit);
    }

    TemporaryFolder folder;
    fs::path native = folder.Native() / "repository.db";
    Address address{folder.Path() + u"repository.db"};
    std::string m_right;
    Problem m_told = Problem::None;
};

TEST_F(SqlitePages, EveryPageEndsWithTheHashOfItsOtherBytesAndItsNumber) {
    const std::string bytes = Bytes();
    ASSERT_GT(bytes.size(), 5 * kSealedPage);
    ASSERT_EQ(bytes.size() % kSealedPage, 0u);
    EXPECT_EQ(int(bytes[20]), kPageChecksumBytes);
    for (std::size_t page = 0; page < bytes.size() / kSealedPage; ++page) {
        const char* start = bytes.data() + page * kSealedPage;
        const auto seal = SealOf(start, page + 1);
        EXPECT_EQ(std::string(seal.data(), kSeal), std::string(start + kSealedPage - kSeal, kSeal))
            << page + 1;
    }
}

TEST_F(SqlitePages, AByteThatFlippedAnywhereIsToldAndNeverServed) {
    constexpr std::size_t kHeader = 16; // of what stands in the page
    constexpr std::size_t kTrailer = 16;
    constexpr std::size_t kStep = 1999;
    const std::string good = Bytes();
    m_right = Everything();
    ASSERT_NE(m_right, "problem");
    ASSERT_FALSE(CheckTells());
    for (std::size_t at = 0; at < good.size() && !HasFailure();) {
        ExpectFlipNotServed(at, static_cast<int>(at % 8));
        const std::size_t inPage = at % kSealedPage;
        const bool oneByOne =
            at < kSealedPage || inPage < kHeader || inPage >= kSealedPage - kTrailer;
        at += oneByOne ? 1 : std::min(kStep, kSealedPage - kTrailer - inPage);
    }
    EXPECT_EQ(Bytes(), good);
}

TEST_F(SqlitePages, EveryBitOfTheFilesHeaderIsToldAndNeverServed) {
    m_right = Everything();
    for (std::size_t bit = 0; bit < 100 * 8 && !HasFailure(); ++bit)
        ExpectFlipNotServed(bit / 8, static_cast<int>(bit % 8));
}

TEST_F(SqlitePages, AFileThatWasCutAnywhereIsToldAndNeverServed) {
    const std::string good = Bytes();
    m_right = Everything();
    for (std::size_t size = 0; size < good.size(); size += kSealedPage / 2)
        ExpectNotServed(good.substr(0, size), "cut at " + std::to_string(size));
    ExpectNotServed(good.substr(0, 60), "cut in the header");
    ExpectNotServed(good.substr(0, good.size() - 1), "cut by a byte");
}

TEST_F(SqlitePages, PagesThatChangedPlacesAreToldAndNeverServed) {
    const std::string good = Bytes();
    m_right = Everything();
    for (std::size_t page = 0; page + kSealedPage < good.size(); page += kSealedPage) {
        const std::size_t next = page + kSealedPage;
        const std::string swapped = good.substr(0, page) + good.substr(next, kSealedPage) +
                                    good.substr(page, kSealedPage) +
                                    good.substr(next + kSealedPage);
        ExpectNotServed(swapped, "pages from " + std::to_string(page));
    }
}

TEST_F(SqlitePages, ZerosInPlaceOfAPageAreToldAndNeverServed) {
    const std::string good = Bytes();
    m_right = Everything();
    for (std::size_t page = 0; page < good.size(); page += kSealedPage) {
        std::string bytes = good;
        bytes.replace(page, kSealedPage, kSealedPage, '\0');
        ExpectNotServed(bytes, "page at " + std::to_string(page));
    }
}

TEST_F(SqlitePages, TheProblemNamesTheFileAndThePage) {
    std::string bytes = Bytes();
    bytes[kSealedPage + 5000] ^= 1;
    Write(bytes);
    std::vector<std::pair<MessageNumber, std::vector<CString>>> told;
    CheckCounts counts;
    try {
        OpenStore()->Check(
            [&](const Message& where, const Message& what) {
                if (what.number == MessageNumber::PageDamaged)
                    told.emplace_back(where.number, where.values);
            },
            counts);
        EXPECT_THAT(told, testing::ElementsAre(
                              testing::Pair(MessageNumber::InPage, testing::ElementsAre(u"2"))));
    } catch (const StorageError& error) {
        EXPECT_EQ(error.Messages()[0].number, MessageNumber::DamagedPage);
        EXPECT_THAT(error.Messages()[0].values,
                    testing::ElementsAre(Platform::FromUtf8(native.string()), u"2"));
    }
}

TEST_F(SqlitePages, WhatAnotherProgramWroteIsToldAsDamage) {
    RawDatabase(native).Run("UPDATE head SET revision = 77");
    const auto error = ErrorOf([&] { OpenStore(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Integrity);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::DamagedPage);
}

TEST_F(SqlitePages, ARepositoryOfPagesWithoutChecksumsIsToldAsSuch) {
    fs::remove(native);
    RawDatabase(native).Run("PRAGMA page_size = 16384; PRAGMA application_id = 0x5A454258;"
                            "PRAGMA journal_mode = WAL; CREATE TABLE head (id)");
    const auto error = ErrorOf([&] { OpenStore(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Integrity);
    EXPECT_EQ(error->Messages()[0].number, MessageNumber::NoPageChecksums);
}

TEST_F(SqlitePages, ADamagedUnusedPageIsFoundByTheCheckToo) {
    {
        const auto store = OpenStore();
        store->Connection().RunScript("CREATE TABLE x (b BLOB) STRICT;"
                                      "INSERT INTO x VALUES (zeroblob(100000)); DROP TABLE x");
    }
    ASSERT_FALSE(CheckTells());
    std::string bytes = Bytes();
    bytes[bytes.size() - kSealedPage / 2] ^= 1;
    Write(bytes);
    m_right = Everything();
    EXPECT_NE(m_right, "problem");
    EXPECT_TRUE(CheckTells());
}

TEST_F(SqlitePages, APageThatIsTornWhileTheLogHoldsItWholeIsNoDamage) {
    // A process that is killed while it carries the log over leaves this.
    const auto connected = OpenStore();
    connected->AddFiles({MakeFile(u"c.dwg", std::string(100'000, '3'))});
    const std::string log = native.string() + "-wal";
    ASSERT_GT(fs::file_size(log), 0u);
    const fs::path copy = folder.Native() / "copy.db";
    fs::copy_file(native, copy);
    fs::copy_file(log, copy.string() + "-wal");
    std::string bytes;
    const CString copied = folder.Path() + u"copy.db";
    ASSERT_FALSE(Platform::ReadFile(copied, bytes));
    // The head's page is among those that the call has changed, and so is page 1, which tells
    // the file's size.
    RawDatabase raw(native);
    const auto head = std::stoul(raw.Ask("SELECT rootpage FROM sqlite_schema WHERE name = 'head'"));
    bytes.replace((head - 1) * kSealedPage + 4096, 4096, 4096, 'x');
    bytes.replace(4096, 4096, 4096, 'x');
    ASSERT_FALSE(Platform::WriteFile(copied, bytes));
    address.path = copied;
    EXPECT_FALSE(CheckTells());
    m_right = Everything();
    EXPECT_NE(m_right, "problem");
    EXPECT_NE(m_right.find("c.dwg333333"), std::string::npos);
}

// The log as a process that was killed after two calls leaves it, beside its repository.
class SqliteLogs : public SqlitePages {
protected:
    void SetUp() override {
        SqlitePages::SetUp();
        std::string file;
        {
            const auto store = OpenStore();
            store->AddFiles({MakeFile(u"c.dwg", "333")});
            store->AddFiles({MakeFile(u"d.dwg", "4444")});
            file = Bytes();
            ASSERT_FALSE(Platform::ReadFile(address.path + u"-wal", m_log));
            m_right = Everything();
        }
        ASSERT_GT(m_log.size(), 2 * kFrame);
        Write(file);
    }
    void WriteLog(const std::string& log) {
        ASSERT_FALSE(Platform::WriteFile(address.path + u"-wal", log));
    }
    std::vector<MessageNumber> Findings() {
        std::vector<MessageNumber> findings;
        CheckCounts counts;
        OpenStore()->Check(
            [&](const Message&, const Message& what) { findings.push_back(what.number); }, counts);
        return findings;
    }
    static constexpr std::size_t kFrame = 24 + kSealedPage;
    std::string m_log;
};

TEST_F(SqliteLogs, AWholeOneCounts) {
    WriteLog(m_log);
    EXPECT_THAT(Findings(), testing::IsEmpty());
    EXPECT_EQ(Everything(), m_right);
}

TEST_F(SqliteLogs, AByteThatFlippedBeforeTheLastCallIsToldByTheCheckAndNotServed) {
    m_log[32 + 24 + 5000] ^= 1;
    WriteLog(m_log);
    EXPECT_THAT(Findings(), testing::ElementsAre(MessageNumber::LogBroken));
    // What is left is the repository before the two calls.
    EXPECT_EQ(Everything().find("c.dwg"), std::string::npos);
    EXPECT_NE(Everything(), "problem");
}

TEST_F(SqliteLogs, OneThatEndsInTheMiddleOfACallIsAsAKilledProcessLeavesIt) {
    for (const std::size_t missing : {std::size_t(1), kSealedPage, kFrame + 1}) {
        WriteLog(m_log.substr(0, m_log.size() - missing));
        fs::remove(native.string() + "-shm");
        EXPECT_THAT(Findings(), testing::IsEmpty()) << missing;
        EXPECT_NE(Everything().find("c.dwg333"), std::string::npos);
        EXPECT_EQ(Everything().find("d.dwg"), std::string::npos);
        SetUp();
    }
}

} // namespace
} // namespace Storage
