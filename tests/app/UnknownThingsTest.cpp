// SPDX-License-Identifier: MIT
#include "Station.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

class UnknownThings : public testing::TestWithParam<std::string> {};

TEST_P(UnknownThings, AnUnknownKindIsAUsageErrorThatNamesTheKnownOnes) {
    const Station station;
    const Ended drawings = station.Zebx({GetParam(), "ncf:099_NOTHING"});
    EXPECT_EQ(drawings.status, 2) << drawings;
    EXPECT_THAT(drawings.err,
                AllOf(HasSubstr("no kind ncf:099_NOTHING"), HasSubstr("\n  ncf:001_LABEL\n"),
                      HasSubstr("\n  ncf:005_GPEBLOCKS\n")));
    const Ended configuration = station.Zebx({GetParam(), "foc:002_node"});
    EXPECT_EQ(configuration.status, 2) << configuration;
    EXPECT_THAT(configuration.err,
                AllOf(HasSubstr("\n  foc:001_PUMPCURVE\n"), HasSubstr("\n  foc:008_GPE\n")));
}

TEST_P(UnknownThings, AKindsNameIsTakenLetterByLetter) {
    EXPECT_EQ(Station().Zebx({GetParam(), "ncf:002_node"}).status, 2);
}

TEST_P(UnknownThings, ACatalogueThatNobodyDeclaredNamesTheDeclaredOnes) {
    const Ended run = Station().Zebx({GetParam(), "catalogue:PIPE_CATALOG"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("\n  catalogue:ASSEMBLYSCHEMES_CATALOG\n"),
                               HasSubstr("Did you mean catalogue:PIPES_CATALOG?")));
}

TEST_P(UnknownThings, ATagThatNobodyDeclaredNamesTheDeclaredOnes) {
    const Ended run = Station().Zebx({GetParam(), "items:PIPES"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, HasSubstr("\n  items:PIPE_DEFINITIONS\n"));
}

INSTANTIATE_TEST_SUITE_P(EachVerb, UnknownThings, testing::Values("push", "pull", "ls"),
                         [](const auto& test) { return test.param; });

TEST(UnknownNames, GeneralSettingsThatTheRepositoryLacksAreAFailure) {
    const Station station;
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    const Ended run = station.Zebx({"pull", "gs:Nigdje"});
    EXPECT_NE(run.status, 0) << run;
}

TEST(UnknownNames, AnOptionOfAnotherVerbIsNotTaken) {
    const Ended run = Station().Zebx({"status", "--create"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, HasSubstr("zebx status --help"));
}

} // namespace
