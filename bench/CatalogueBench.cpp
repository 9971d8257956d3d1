// SPDX-License-Identifier: MIT
// A whole catalogue of six levels through the manager and the storage plug-in, beside plain
// inserts of the same rows into SQLite.
//
// usage: zebx_bench_catalogues COUNT [PEER]
//
// COUNT items; PEER is the file for the plain inserts.  Without it the items are sent, and that is
// all.  The environment names an installation and user folders of their own, in which a new
// repository is connected.  Prints the seconds of each step as JSON; ends with status 1 when a
// result is not what it should be.
#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXNetworkCore/CatalogManager.h"
#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "platform/host/FileSteps.h"
#include "platform/os/File.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <array>
#include <boost/make_shared.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sqlite3.h>
#include <stdexcept>

using namespace Repository;
using namespace ZEBGis::Data;

namespace {

constexpr const char16_t* kReference = u"BENCH";
constexpr int kLevels = 6;

void Require(bool isSo, const char* what) {
    if (!isSo)
        throw std::runtime_error(what);
}

template<class Work>
double SecondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// How many items each group holds, so that `count` items fill the levels.
int MembersFor(int count) {
    for (int members = 1;; ++members) {
        int room = 0;
        for (int level = 0, width = 1; level < kLevels; ++level)
            room += width *= members;
        if (room >= count)
            return members;
    }
}

CString IdOf(int number) {
    return u"{0f8fad5b-d9cb-469f-a165-" + Platform::ToText(100'000'000'000 + number) + u"}";
}

CatalogItemPtr MakeItem(int number, bool isGroup) {
    const CString name = u"Cijev č" + Platform::ToText(number);
    const auto item = boost::make_shared<CCatalogItem>(IdOf(number).c_str(), name.c_str(), isGroup);
    item->SetProperty(u"DN", CDataBox::OfInteger(number % 1000));
    item->SetProperty(u"LENGTH", CDataBox::OfReal(number / 8.0));
    item->SetProperty(u"MATERIAL", CDataBox::OfText(u"PE100 <SDR 11>"));
    item->SetProperty(u"STANDARD", CDataBox::OfText(u"HRN EN 12201"));
    item->SetProperty(u"APPROVED", CDataBox::OfDate(u"2026-11-21"));
    item->SetProperty(u"IN_USE", CDataBox::OfBoolean(number % 2));
    return item;
}

// Level by level, so that every parent is there.
void Fill(CCatalog& catalogue, int count) {
    const int members = MembersFor(count);
    for (int number = 0; number < count; ++number) {
        const auto item = MakeItem(number, (number + 1) * members < count);
        const int parent = number / members - 1;
        Require(parent < 0 ? catalogue.AddItem(item)
                           : catalogue.GetItembyGuid(IdOf(parent).c_str())->AddSubItem(item),
                "an item found no place");
    }
}

class PlainInserts {
public:
    // Set as the storage plug-in sets its own.
    explicit PlainInserts(const char* file) {
        Check(sqlite3_open(file, &m_database));
        Run("PRAGMA page_size = 16384; PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
            "PRAGMA foreign_keys = ON; PRAGMA cell_size_check = ON;"
            "PRAGMA journal_size_limit = 16777216; PRAGMA cache_size = -16000;"
            "CREATE TABLE item (id INTEGER PRIMARY KEY, tag TEXT NOT NULL, item_id TEXT NOT NULL,"
            "parent_id TEXT NOT NULL, position INTEGER NOT NULL, is_group INTEGER NOT NULL,"
            "name TEXT NOT NULL, catalogue_name TEXT NOT NULL, content TEXT NOT NULL,"
            "since INTEGER NOT NULL, until INTEGER) STRICT;"
            "CREATE UNIQUE INDEX item_current ON item (tag, item_id) WHERE until IS NULL;"
            "CREATE INDEX item_children ON item (tag, parent_id, position) WHERE until IS NULL;");
        Check(sqlite3_prepare_v2(m_database,
                                 "INSERT INTO item VALUES (?1,?2,?3,?4,?1,?5,?6,?7,?8,?1,NULL)", -1,
                                 &m_insert, nullptr));
    }
    ~PlainInserts() {
        sqlite3_finalize(m_insert);
        sqlite3_close(m_database);
    }
    PlainInserts(const PlainInserts&) = delete;
    PlainInserts& operator=(const PlainInserts&) = delete;

    // A transaction of its own.
    void Insert(const CNetCatalogueItem& item) {
        const std::string texts[] = {
            Platform::ToUtf8(item.GetCatalogueTag()),  Platform::ToUtf8(item.GetCatalogueId()),
            Platform::ToUtf8(item.GetParentId()),      Platform::ToUtf8(item.GetName()),
            Platform::ToUtf8(item.GetCatalogueName()), Platform::ToUtf8(item.GetItemContent())};
        const int columns[] = {2, 3, 4, 6, 7, 8};
        sqlite3_bind_int64(m_insert, 1, ++m_id);
        sqlite3_bind_int(m_insert, 5, item.GetIsGroup());
        for (std::size_t i = 0; i < std::size(columns); ++i)
            sqlite3_bind_text(m_insert, columns[i], texts[i].data(),
                              static_cast<int>(texts[i].size()), SQLITE_STATIC);
        Require(sqlite3_step(m_insert) == SQLITE_DONE, sqlite3_errmsg(m_database));
        sqlite3_reset(m_insert);
    }

private:
    void Check(int code) { Require(code == SQLITE_OK, sqlite3_errmsg(m_database)); }
    void Run(const char* statements) {
        Check(sqlite3_exec(m_database, statements, nullptr, nullptr, nullptr));
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_insert = nullptr;
    sqlite3_int64 m_id = 0;
};

// The records of the items below, parents first.
void CollectRecords(const std::vector<CatalogItemPtr>& items,
                    std::vector<boost::shared_ptr<CNetCatalogueItem>>& records) {
    for (const CatalogItemPtr& item : items) {
        records.push_back(CRepositoryStorageManager::Instance()->Transform2NetCatalogItem(
            kReference, kReference, item, 1));
        CollectRecords(item->GetSortedSubItems(), records);
    }
}

// Counts what a transfer moved, as a program that shows progress does.
class Counts {
public:
    Counts() {
        Platform::SetFileStepListener(
            [this](Platform::FileStep step) { ++m_items[static_cast<std::size_t>(step)]; });
    }
    ~Counts() { Platform::SetFileStepListener({}); }
    Counts(const Counts&) = delete;
    Counts& operator=(const Counts&) = delete;

    std::size_t Of(Platform::FileStep step) const {
        return m_items[static_cast<std::size_t>(step)];
    }

private:
    std::array<std::size_t, Platform::kFileSteps> m_items{}; // by FileStep
};

class CatalogueBench {
public:
    explicit CatalogueBench(int count) : m_count(static_cast<std::size_t>(count)) {
        const CString support = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"support");
        Platform::CreateFolderChain(support);
        Require(!Platform::WriteFile(support + u"Catalogues.xml", kDeclaration),
                "no declaration of catalogues");
        Fill(*Catalogue(), count);
    }

    double Insert(const char* file) {
        std::vector<boost::shared_ptr<CNetCatalogueItem>> records;
        CollectRecords(Catalogue()->GetSortedRootElements(), records);
        Require(records.size() == m_count, "records are missing");
        PlainInserts peer(file);
        return SecondsOf([&] {
            for (const auto& record : records)
                peer.Insert(*record);
        });
    }

    double Push() {
        const Counts counts;
        const double seconds =
            SecondsOf([&] { Require(Transfer().SendCatalog(*Metadata()), "the push failed"); });
        Require(counts.Of(Platform::FileStep::ItemSent) == m_count, "not every item was sent");
        return seconds;
    }

    // Into an empty catalogue, and saved.
    double Pull() {
        m_catalogues.Forget(kReference);
        const Counts counts;
        const double seconds = SecondsOf([&] {
            Require(Transfer().LoadCatalogs({{Metadata(), 1}}, 1), "the pull failed");
        });
        Require(counts.Of(Platform::FileStep::ItemLoaded) == m_count, "not every item was loaded");
        return seconds;
    }

    // From its file.
    double Load() {
        m_catalogues.Forget(kReference);
        CatalogPtr catalogue;
        const double seconds = SecondsOf([&] { catalogue = Catalogue(); });
        Require(catalogue->GetItemCount() == m_count, "the file does not hold every item");
        return seconds;
    }

private:
    static constexpr std::string_view kDeclaration =
        "<catalogues><catalogue reference=\"BENCH\"/></catalogues>";

    CatalogPtr Catalogue() {
        const CatalogPtr catalogue = m_catalogues.GetCatalog(kReference, 1);
        Require(catalogue != nullptr, "no catalogue");
        return catalogue;
    }
    CatalogMetadataPtr Metadata() { return m_catalogues.GetCatalogMetadata(kReference); }
    CCatalogueTransfer Transfer() {
        return CCatalogueTransfer(*CRepositoryStorageManager::Instance());
    }

    CCatalogManager& m_catalogues = *CCatalogManager::Instance();
    std::size_t m_count;
};

} // namespace

int main(int argc, char** argv) try {
    Require(argc == 2 || argc == 3, "usage: zebx_bench_catalogues COUNT [PEER]");
    CatalogueBench bench(std::atoi(argv[1]));
    if (argc == 2) {
        std::printf("{\"push\": %f}\n", bench.Push());
        return 0;
    }
    const double insert = bench.Insert(argv[2]);
    const double push = bench.Push();
    const double pushAgain = bench.Push();
    const double pull = bench.Pull();
    const double load = bench.Load();
    std::printf("{\"insert\": %f, \"push\": %f, \"push again\": %f, \"pull\": %f, \"load\": %f}\n",
                insert, push, pushAgain, pull, load);
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
