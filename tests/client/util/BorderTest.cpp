// SPDX-License-Identifier: MIT
#include "client/util/Border.h"

#include <gtest/gtest.h>
#include <new>
#include <string>

using Repository::AtBorder;

TEST(Border, TheBodysResultIsHandedOut) {
    EXPECT_EQ(AtBorder(0, [] { return 7; }), 7);
}

TEST(Border, AnExceptionBecomesTheFailureResult) {
    EXPECT_EQ(AtBorder(std::string("failed"), []() -> std::string { throw std::bad_alloc(); }),
              "failed");
}

TEST(Border, WhatIsNoExceptionClassIsStoppedToo) {
    EXPECT_EQ(AtBorder(3, []() -> int { throw 9; }), 3);
}

TEST(Border, WithoutAResultTheBodyEndsWhereTheExceptionWas) {
    int steps = 0;
    AtBorder([&] {
        ++steps;
        if (steps == 1)
            throw std::bad_alloc();
        ++steps;
    });
    EXPECT_EQ(steps, 1);
}
