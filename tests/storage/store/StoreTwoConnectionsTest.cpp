// SPDX-License-Identifier: MIT
// Two workstations at once.
#include "TestFiles.h"
#include "TestRepository.h"
#include "storage/content/ContentHash.h"

#include <gmock/gmock.h>

#include <thread>

namespace Storage {
namespace {

class StoreTwoConnections : public StoreTest {
protected:
    std::unique_ptr<Store> other = OpenStore();
};
ZEBX_FOR_EVERY_ENGINE(StoreTwoConnections);

TEST_P(StoreTwoConnections, WhatOneCommitsTheOtherSeesAtItsNextCall) {
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(other->FileIds(4, u"001_LABEL").size(), 1u);
    other->AddFiles({MakeFile(u"b.dwg", "2")});
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 2u);
}

TEST_P(StoreTwoConnections, AReaderSeesNothingOfACallThatIsNotFinishedAndDoesNotWait) {
    store->AddFiles({MakeFile(u"a.dwg", "old")});
    auto& writing = other->Connection();
    WriteCall call(writing, stamp, "half", u"a call");
    call.KeepContent("half", ContentHash("half"), false);
    EndFile(call, 1);
    EndFile(call, 2);
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 1u);
    EXPECT_EQ(Revision(), 1);
    call.Commit();
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 0u);
    EXPECT_EQ(Revision(), 2);
}

TEST_P(StoreTwoConnections, AReadTransactionStaysAtOneMoment) {
    store->AddFiles({MakeFile(u"a.dwg", "old")});
    {
        const ReadTransaction transaction(store->Connection());
        EXPECT_EQ(Number("SELECT revision FROM head"), 1);
        other->AddFiles({MakeFile(u"b.dwg", "new")});
        EXPECT_EQ(Number("SELECT revision FROM head"), 1);
        EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file"), 1);
    }
    EXPECT_EQ(Number("SELECT revision FROM head"), 2);
}

TEST_P(StoreTwoConnections, WritersQueueAndNoRevisionIsLostOrMixed) {
    constexpr int kCalls = 20;
    const auto write = [&](char16_t name) {
        const auto mine = OpenStore();
        for (int i = 0; i < kCalls; ++i)
            mine->AddFiles({MakeFile(CString(1, name), std::to_string(i)),
                            MakeFile(CString(2, name), std::to_string(i))});
    };
    std::thread first([&] { write(u'a'); });
    std::thread second([&] { write(u'b'); });
    bool halfSeen = false;
    for (int i = 0; i < 50; ++i) {
        std::vector<StoredFile> files;
        std::vector<StoredGS> settings;
        store->List(files, settings);
        halfSeen = halfSeen || files.size() % 2 != 0;
        for (std::size_t k = 0; k + 1 < files.size(); k += 2)
            halfSeen = halfSeen || files[k].revision != files[k + 1].revision;
    }
    first.join();
    second.join();
    EXPECT_FALSE(halfSeen);
    EXPECT_EQ(Revision(), 2 * kCalls);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM revision"), 2 * kCalls);
    EXPECT_EQ(Number("SELECT MAX(number) FROM revision"), 2 * kCalls);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file"), 4 * kCalls);
}

} // namespace
} // namespace Storage
