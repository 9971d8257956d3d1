// SPDX-License-Identifier: MIT
#include "platform/os/FreeSpace.h"
#include "FolderTest.h"

#include <filesystem>

using namespace Platform;

namespace {

class FreeSpaceOf : public FolderTest {
protected:
    // Others write meanwhile: two answers about one disk are near each other, not equal.
    static void IsAbout(std::optional<std::uint64_t> bytes, std::uintmax_t expected) {
        ASSERT_TRUE(bytes.has_value());
        EXPECT_NEAR(double(*bytes), double(expected), double(expected) / 10 + 1e9);
    }
};

TEST_F(FreeSpaceOf, AFolderIsWhatTheSystemTells) {
    IsAbout(FreeSpace(Path(u"")), std::filesystem::space(Native("")).available);
}

TEST_F(FreeSpaceOf, WhatIsNotThereYetIsThatOfTheNearestFolder) {
    IsAbout(FreeSpace(Path(u"not\\there\\yet\\")), std::filesystem::space(Native("")).available);
    IsAbout(FreeSpace(u"/not-there-yet/at all"), std::filesystem::space("/").available);
}

} // namespace
