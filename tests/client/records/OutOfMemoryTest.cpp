// SPDX-License-Identifier: MIT
// Every exported operation of the records with each of its allocations failing in turn: none
// may throw, and what it gives is the whole result or the failure result.
#include "RepositoryFiles.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"
#include "ZEBXRepositoryClient/NetRepository.h"
#include "client/records/RepositoryFileWriter.h"
#include "support/Bytes.h"
#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <functional>
#include <new>

namespace {

long allocationsLeft = -1; // negative: no limit

void* Allocate(std::size_t size) {
    if (allocationsLeft == 0)
        throw std::bad_alloc();
    if (allocationsLeft > 0)
        --allocationsLeft;
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

using namespace Repository;

namespace {

// Runs `operation` with the first allocation failing, then the second, and so on, until it
// succeeds without any failing; `check` is told each time whether one failed.
void Sweep(const std::function<void()>& operation, const std::function<void(bool failed)>& check) {
    constexpr long kMost = 10'000;
    for (long limit = 0; limit < kMost; ++limit) {
        bool threw = false;
        allocationsLeft = limit;
        try {
            operation();
        } catch (...) {
            threw = true;
        }
        const bool failed = allocationsLeft == 0;
        allocationsLeft = -1;
        ASSERT_FALSE(threw) << "with " << limit << " allocations";
        check(failed);
        if (testing::Test::HasFatalFailure() || !failed)
            return;
    }
    FAIL() << "more than " << kMost << " allocations";
}

CNetRepositoryItem ItemWithFiles() {
    CNetRepositoryItem item;
    item.SetName(CString(100, u'ž').c_str());
    item.GetFiles()->push_back(SharedFileNamed(u"first of two files"));
    item.GetFiles()->push_back(SharedFileNamed(u"second of two files"));
    return item;
}

CNetCatalogueItem CatalogueItemWithFiles() {
    CNetCatalogueItem item;
    item.SetItemContent(CString(100, u'ž').c_str());
    item.GetFiles()->push_back(SharedFileNamed(u"first of two files"));
    item.GetFiles()->push_back(SharedFileNamed(u"second of two files"));
    return item;
}

} // namespace

TEST(OutOfMemory, TheSweepMakesAllocationsFail) {
    int failures = 0;
    Sweep(
        [] {
            try {
                delete new int;
                delete new int;
            } catch (const std::bad_alloc&) {
            }
        },
        [&](bool failed) { failures += failed; });
    EXPECT_EQ(failures, 3); // none, one and exactly two allowed
}

TEST(OutOfMemory, Base64GivesTheWholeTextOrNone) {
    const std::string bytes = SomeBytes(1000);
    const std::string text = Base64Encode(bytes.data(), 1000);
    std::string result;
    Sweep([&] { result = Base64Encode(bytes.data(), 1000); },
          [&](bool) { EXPECT_TRUE(result.empty() || result == text); });
    EXPECT_EQ(result, text);
    Sweep([&] { result = Base64Decode(text); },
          [&](bool) { EXPECT_TRUE(result.empty() || result == bytes); });
    EXPECT_EQ(result, bytes);
}

TEST(OutOfMemory, AFilesRecordIsWholeOrEmpty) {
    const CRepositoryFile file = FileNamed(u"a name of some length");
    const CString record = RecordOf(file);
    CString result;
    Sweep([&] { file.Serialize(result); },
          [&](bool) { EXPECT_TRUE(result.empty() || result == record); });
    EXPECT_EQ(result, record);
}

TEST(OutOfMemory, ReadingAFilesRecordReturnsOne) {
    const CString record = RecordOf(FileNamed(u"a name of some length"));
    int result = 0;
    Sweep(
        [&] {
            CRepositoryFile file;
            result = file.Deserialize(record.c_str());
        },
        [&](bool) { EXPECT_EQ(result, 1); });
}

TEST(OutOfMemory, AFileIsLoadedWholeOrNotAtAll) {
    const TemporaryFolder folder;
    MakeFile(folder.Native() / "a file of some length", SomeBytes(5000));
    const CString path = folder.Path() + u"a file of some length";
    CRepositoryFile file;
    int result = 0;
    Sweep([&] { result = file.LoadFile(path.c_str()); },
          [&](bool) {
              EXPECT_EQ(file.GetFileContent().size(), result ? 6668u : 0u);
              EXPECT_EQ(file.GetFileName().empty(), result == 0);
              file = CRepositoryFile();
          });
    EXPECT_EQ(result, 1);
}

TEST(OutOfMemory, AFileThatTheWriterCallsWrittenHoldsTheContent) {
    const TemporaryFolder folder;
    CRepositoryFile file;
    const std::string bytes = SomeBytes(5000);
    file.SetFileContent(Base64Encode(bytes.data(), 5000));
    const CString path = folder.Path();
    bool written = false;
    Sweep([&] { written = WriteRepositoryFile(file, path.c_str(), u"x.dwg"); },
          [&](bool) {
              if (written) {
                  EXPECT_EQ(BytesOfFile(folder.Native() / "x.dwg"), bytes);
              }
          });
    EXPECT_TRUE(written);
    int result = 0;
    Sweep([&] { result = file.SaveFile(path.c_str(), u"y.dwg"); },
          [&](bool) { EXPECT_EQ(result, 1); });
}

TEST(OutOfMemory, AnItemsRecordIsWholeOrEmptyAndReadOrRejected) {
    const CNetRepositoryItem item = ItemWithFiles();
    const CString record = item.Serialize();
    CString result;
    Sweep([&] { result = item.Serialize(); },
          [&](bool) { EXPECT_TRUE(result.empty() || result == record); });
    EXPECT_EQ(result, record);
    CNetRepositoryItem read;
    int isRead = 0;
    Sweep([&] { isRead = read.Deserialize(record.c_str()); },
          [&](bool) {
              if (isRead) {
                  EXPECT_EQ(read.GetFiles()->size(), 3u);
              }
          });
    EXPECT_EQ(isRead, 1);
}

TEST(OutOfMemory, ACatalogueItemsElementIsWholeOrEmptyAndReadOrRejected) {
    const CNetCatalogueItem item = CatalogueItemWithFiles();
    const CString text = item.Serialize();
    CString result;
    Sweep([&] { result = item.Serialize(); },
          [&](bool) { EXPECT_TRUE(result.empty() || result == text); });
    EXPECT_EQ(result, text);
    // A stream swallows the exceptions of its own buffer.
    WStringStream stream;
    Sweep([&] { item.Serialize(stream); }, [](bool) {});
    CNetCatalogueItem read;
    int isRead = 0;
    Sweep(
        [&] {
            read.GetFiles()->clear();
            isRead = read.Deserialize(text.c_str());
        },
        [&](bool) {
            if (isRead) {
                EXPECT_EQ(read.GetFiles()->size(), 2u);
            }
        });
    EXPECT_EQ(isRead, 1);
}

TEST(OutOfMemory, TheContainersStayUsable) {
    const auto item = boost::make_shared<CNetRepositoryItem>();
    item->SetId(u"an id that needs an allocation");
    CNetDefinitionRepository repository(u"T");
    Sweep([&] { repository.AddRepositoryItem(item); }, [](bool) {});
    const char16_t* id = u"an id that needs an allocation";
    boost::shared_ptr<CNetRepositoryItem> found;
    Sweep([&] { found = repository.GetNetRepositoryItemById(id); },
          [&](bool) { EXPECT_TRUE(!found || found == item); });
    EXPECT_EQ(found, item);
    Sweep([&] { repository.RenameRepositoryItem(id, u"a name that needs an allocation"); },
          [](bool) {});
    EXPECT_EQ(item->GetName(), u"a name that needs an allocation");
    std::vector<boost::shared_ptr<CNetRepositoryItem>> items;
    Sweep([&] { repository.GetRepositoryItems(items); }, [](bool) {});
    EXPECT_EQ(items.back(), item);
    Sweep([&] { repository.RemoveNetRepositoryItemById(id); }, [](bool) {});
    EXPECT_FALSE(repository.GetNetRepositoryItemById(id));
}
