// SPDX-License-Identifier: MIT
// A repository on a server of a test's own, and what the user is told when something breaks.
#pragma once

#include "EnglishMessages.h"
#include "TestFiles.h"
#include "storage/Engine.h"
#include "support/TestServer.h"

#include <gmock/gmock.h>

namespace Storage {

inline Address AddressOf(const std::string& uri) {
    Address address;
    address.server = Platform::FromUtf8(uri);
    return address;
}

inline std::unique_ptr<Store> StoreOf(std::unique_ptr<SqlConnection> connection) {
    StoreOptions options;
    options.stamp = [] {
        return Stamp{u"2026-11-22T08:05:19Z", u"ana", u"station-1", u"test 1.2.3.4"};
    };
    options.leftOut = [](const StorageError&) { ADD_FAILURE() << "a file was left out"; };
    return std::make_unique<Store>(std::move(connection), std::move(options));
}

inline std::unique_ptr<Store> StoreAt(const std::string& uri) {
    return StoreOf(OpenRepository(AddressOf(uri)));
}

inline std::int64_t RevisionOf(Store& store) {
    RepositoryState state;
    store.ReadState(state);
    return state.revision;
}

inline std::string ToldBy(const StorageError& error) {
    EnglishMessages english;
    return Platform::ToUtf8(TextOf(error.Messages(), &english));
}

// Expects that `work` throws this problem, told by this message alone, in which the place and,
// in the server's or libpq's words, the reason stand.
template<typename Work>
void ExpectTold(Work work, Problem problem, MessageNumber number, const std::string& where,
                const std::string& reason) {
    const auto error = ErrorOf(work);
    ASSERT_TRUE(error) << "nothing went wrong";
    const std::string text = ToldBy(*error);
    EXPECT_EQ(error->Kind(), problem) << text;
    EXPECT_THAT(NumbersOf(*error), testing::ElementsAre(number)) << text;
    EXPECT_THAT(text, testing::AllOf(testing::HasSubstr(where), testing::HasSubstr(reason)));
}

class ServerTest : public testing::Test {
protected:
    void SetUp() override { ZEBX_NEEDS_SERVER(); }
};

} // namespace Storage
