// SPDX-License-Identifier: MIT
// Through pgbouncer, which lends sessions (session mode) or lends one for each transaction.
#include "support/Pooler.h"
#include "ServerFailure.h"

#include <thread>

namespace Storage {
namespace {

class ThroughAPooler : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ZEBX_NEEDS_SERVER();
        if (const std::string why = Pooler::WhyNot(); !why.empty())
            GTEST_SKIP() << why;
        server = std::make_unique<PrivateServer>();
        // Few sessions, so that clients share them.
        pooler = std::make_unique<Pooler>(*server, GetParam(), Words{"default_pool_size = 5"});
        CreateRepository(AddressOf(pooler->Uri()));
    }
    std::unique_ptr<Store> Open() { return StoreAt(pooler->Uri()); }

    std::unique_ptr<PrivateServer> server;
    std::unique_ptr<Pooler> pooler;
};
INSTANTIATE_TEST_SUITE_P(Mode, ThroughAPooler, testing::Values("session", "transaction"),
                         [](const auto& mode) { return std::string(mode.param); });

TEST_P(ThroughAPooler, FilesGoInAndComeOut) {
    const auto store = Open();
    store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "2")});
    const auto ids = store->FileIds(4, u"001_LABEL");
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(BytesOf(store->File(ids[0])), "1");
    EXPECT_EQ(BytesOf(store->File(ids[1])), "2");
    EXPECT_TRUE(store->Connection().DescribeServer().isPooled || GetParam()[0] == 's');
}

TEST_P(ThroughAPooler, WhatOneCommitsTheOtherSeesAtItsNextCall) {
    const auto one = Open(), other = Open();
    for (const char* bytes : {"1", "2", "3"}) {
        one->AddFiles({MakeFile(u"a.dwg", bytes)});
        const auto ids = other->FileIds(4, u"001_LABEL");
        ASSERT_EQ(ids.size(), 1u);
        EXPECT_EQ(BytesOf(other->File(ids[0])), bytes);
    }
}

TEST_P(ThroughAPooler, ManyClientsShareFewSessions) {
    // In session mode a client keeps its session, and there are five.
    const int clients = GetParam()[0] == 's' ? 4 : 20;
    std::vector<std::thread> threads;
    for (int i = 0; i < clients; ++i)
        threads.emplace_back([this, i] {
            const CString kind = u"K" + Platform::FromUtf8(std::to_string(i));
            const auto error = ErrorOf([&] {
                const auto store = Open();
                for (const char* bytes : {"1", "2", "3"}) {
                    store->AddFiles({MakeFile(u"a.dwg", bytes, kind)});
                    const auto ids = store->FileIds(4, kind);
                    EXPECT_EQ(BytesOf(store->File(ids.at(0))), bytes);
                }
            });
            EXPECT_FALSE(error) << ToldBy(*error);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(RevisionOf(*Open()), 3 * clients);
}

TEST_P(ThroughAPooler, ASchemaInTheAddressIsRefusedWithWhatToDoInstead) {
    const std::string uri = pooler->Uri("keeper", "&options=-czebx.schema%3Dwater");
    ExpectTold([&] { OpenRepository(AddressOf(uri)); }, Problem::Configuration,
               MessageNumber::PoolerRefuses, uri, "ZEBX_SCHEMA");
}

TEST_P(ThroughAPooler, ASchemaInTheAddressThatIsSilentlyLeftAwayIsRefusedToo) {
    const Pooler ignoring(*server, GetParam(), {"ignore_startup_parameters = options"});
    const std::string uri = ignoring.Uri("keeper", "&options=-czebx.schema%3Dwater");
    ExpectTold([&] { OpenRepository(AddressOf(uri)); }, Problem::Configuration,
               MessageNumber::PoolerRefuses, uri, "ZEBX_SCHEMA");
    EXPECT_EQ(RevisionOf(*StoreAt(ignoring.Uri())), 0);
}

TEST_P(ThroughAPooler, ASchemaNamedOnTheWorkstationIsUsed) {
    Address address = AddressOf(pooler->Uri());
    address.schema = u"water";
    CreateRepository(address);
    const auto water = StoreOf(OpenRepository(address));
    water->AddFiles({MakeFile(u"a.dwg", "1")});
    EXPECT_EQ(RevisionOf(*water), 1);
    EXPECT_EQ(RevisionOf(*Open()), 0);
}

} // namespace
} // namespace Storage
