// SPDX-License-Identifier: MIT
#include "Station.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

TEST(Connect, CreatesARepositoryAtTheDefaultPlaceAndSaysWhatIsNext) {
    const Station station;
    const Ended run = station.Zebx({"connect", "--create"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("sqlite:" + station.Repository().string()));
    EXPECT_THAT(run.out, HasSubstr("you may read and write"));
    EXPECT_THAT(run.out, HasSubstr("zebx push"));
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(fs::exists(station.Repository()));
}

TEST(Connect, WithoutCreateAMissingRepositoryIsNotMade) {
    const Station station;
    const std::string url = "sqlite:" + (station.Folder() / "network.db").string();
    const Ended run = station.Zebx({"connect", url});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr((station.Folder() / "network.db").string()),
                               HasSubstr("zebx connect --create")));
    EXPECT_FALSE(fs::exists(station.Folder() / "network.db"));
}

TEST(Connect, TheAddressIsKept) {
    const Station station;
    const std::string url = "sqlite:" + (station.Folder() / "network.db").string();
    ASSERT_EQ(station.Zebx({"connect", "--create", url}).status, 0);
    EXPECT_THAT(station.Zebx({"status"}).out, HasSubstr(url));
}

TEST(Connect, AFailedConnectLeavesTheAddressAsItWas) {
    const Station station;
    const std::string url = "sqlite:" + (station.Folder() / "network.db").string();
    ASSERT_EQ(station.Zebx({"connect", "--create", url}).status, 0);
    ASSERT_EQ(station.Zebx({"connect", "sqlite:/nowhere/at/all.db"}).status, 4);
    const Ended status = station.Zebx({"status"});
    EXPECT_EQ(status.status, 0) << status;
    EXPECT_THAT(status.out, HasSubstr(url));
}

TEST(Connect, WhatIsNoAddressIsAConfigurationProblem) {
    const Station station;
    const Ended run = station.Zebx({"connect", "over the rainbow"});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, HasSubstr("not the address of a repository"));
}

TEST(Connect, CreatingWhereARepositoryIsUsesIt) {
    const Station station;
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    Write(station.Support() / "nodes/a.dwg", "1");
    ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    const Ended run = station.Zebx({"connect", "--create"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("1 files"));
    EXPECT_THAT(run.out, HasSubstr("zebx pull"));
}

} // namespace
