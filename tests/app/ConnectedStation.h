// SPDX-License-Identifier: MIT
// A workstation that is set up and has an empty repository of its own.
#pragma once

#include "Station.h"

#include <gtest/gtest.h>

namespace AppTest {

class ConnectedStation : public testing::Test {
protected:
    ConnectedStation() {
        EXPECT_EQ(station.Zebx({"init"}).status, 0);
        EXPECT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    }

    fs::path Node(const std::string& name) const { return station.Support() / "nodes" / name; }

    Station station;
};

} // namespace AppTest
