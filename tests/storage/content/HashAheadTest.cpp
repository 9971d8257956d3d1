// SPDX-License-Identifier: MIT
#include "storage/content/HashAhead.h"

#include "storage/content/ContentHash.h"

#include <gtest/gtest.h>
#include <vector>

using namespace Storage;

namespace {

// Small ones are hashed by the caller, large ones by the thread.
const std::vector<std::size_t> kSizes = {0, 1, 32 * 1024 - 1, 32 * 1024, 1'000'000, 5, 400'000};

std::string Content(std::size_t size) {
    std::string bytes(size, 'x');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 131 + size);
    return bytes;
}

} // namespace

TEST(HashAhead, TheHashesComeInTheContentsOrder) {
    HashAhead ahead;
    for (int round = 0; round < 20; ++round) {
        std::vector<std::string> contents;
        for (const std::size_t size : kSizes)
            contents.push_back(Content(size + static_cast<std::size_t>(round)));
        for (const std::string& content : contents)
            ahead.Add(content);
        for (const std::string& content : contents)
            ASSERT_EQ(ahead.Take(), ContentHash(content)) << content.size();
    }
}

TEST(HashAhead, WhatIsForgottenIsNotGivenLater) {
    const std::string first = Content(2'000'000);
    const std::string second = Content(3'000'000);
    const std::string third = Content(40'000);
    HashAhead ahead;
    ahead.Add(first);
    ahead.Add(second);
    ahead.Forget();
    ahead.Add(third);
    EXPECT_EQ(ahead.Take(), ContentHash(third));
}

TEST(HashAhead, EndsWhateverItIsDoing) {
    const std::string small = Content(10);
    const std::string large = Content(500'000);
    for (int round = 0; round < 200; ++round) {
        HashAhead ahead;
        for (int i = 0; i < round % 5; ++i)
            ahead.Add(i % 2 == 0 ? large : small);
        if (round % 5 > 1)
            ahead.Take();
    }
}
