// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"
#include "InProcess.h"

#include <gmock/gmock.h>

using namespace App;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class CommandLine : public AppTest::InProcess {};

TEST_F(CommandLine, TheVerbAndItsWordsAreFound) {
    const Invocation invocation = ParseCommandLine({"push", "ncf:002_NODE", "gs"});
    EXPECT_STREQ(invocation.verb->name, "push");
    EXPECT_THAT(invocation.words, ElementsAre(u"ncf:002_NODE", u"gs"));
    EXPECT_FALSE(invocation.help);
}

TEST_F(CommandLine, OptionsMayStandBeforeAndBehindTheVerb) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--support", "/a b", "push", "gs"},
          std::vector<std::string>{"push", "gs", "--support", "/a b"},
          std::vector<std::string>{"push", "--support=/a b", "gs"}}) {
        const Invocation invocation = ParseCommandLine(arguments);
        EXPECT_STREQ(invocation.verb->name, "push");
        EXPECT_THAT(invocation.words, ElementsAre(u"gs"));
        EXPECT_EQ(invocation.options.at("--support"), u"/a b");
    }
}

TEST_F(CommandLine, AnOptionThatWasNotGivenIsNotThere) {
    const Invocation invocation = ParseCommandLine({"connect"});
    EXPECT_FALSE(invocation.Has("--create"));
    EXPECT_FALSE(invocation.Has("--support"));
    EXPECT_THAT(invocation.words, IsEmpty());
    EXPECT_TRUE(ParseCommandLine({"connect", "--create"}).Has("--create"));
}

TEST_F(CommandLine, AWordMayBeTheNameOfAVerb) {
    const Invocation invocation = ParseCommandLine({"run", "status"});
    EXPECT_STREQ(invocation.verb->name, "run");
    EXPECT_THAT(invocation.words, ElementsAre(u"status"));
}

TEST_F(CommandLine, BehindTwoDashesEverythingIsAWord) {
    EXPECT_THAT(ParseCommandLine({"run", "--", "--help"}).words, ElementsAre(u"--help"));
    EXPECT_THAT(ParseCommandLine({"push", "gs", "--", "ncf", "--"}).words,
                ElementsAre(u"gs", u"ncf", u"--"));
}

TEST_F(CommandLine, OfAnOptionThatIsGivenTwiceTheLastCounts) {
    const Invocation invocation = ParseCommandLine({"--support", "a", "push", "--support", "b"});
    EXPECT_EQ(invocation.options.at("--support"), u"b");
}

TEST_F(CommandLine, WordsKeepTheirLetters) {
    EXPECT_THAT(ParseCommandLine({"run", "čšž"}).words, ElementsAre(u"čšž"));
}

struct Refused {
    std::string name; // of the test
    std::vector<std::string> arguments;
    std::string text;
};

void PrintTo(const Refused& refused, std::ostream* stream) {
    *stream << refused.name;
}

class RefusedCommandLine : public CommandLine, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedCommandLine, EndsWithStatusTwoAndSaysWhatAndWhereToLook) {
    const AppTest::Ended run = RunHere(GetParam().arguments);
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, StartsWith("zebx: " + GetParam().text));
    EXPECT_THAT(run.err, HasSubstr("--help"));
    EXPECT_THAT(run.out, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedCommandLine,
    testing::Values(
        Refused{"Nothing", {}, "No verb was given."},
        Refused{"UnknownVerb", {"frobnicate"}, "There is no verb \"frobnicate\"."},
        Refused{"VerbInCapitals", {"Push"}, "There is no verb \"Push\"."},
        Refused{"UnknownOption", {"push", "--frob"}, "There is no option \"--frob\" here."},
        Refused{"UnknownOptionAlone", {"--frob"}, "There is no option \"--frob\" here."},
        Refused{"ShortOption", {"push", "-x"}, "There is no option \"-x\" here."},
        Refused{
            "OptionOfAnotherVerb", {"push", "--create"}, "There is no option \"--create\" here."},
        Refused{"WordForStatus", {"status", "now"}, "\"now\" is one word too many."},
        Refused{"TwoUrls", {"connect", "a", "b"}, "\"b\" is one word too many."},
        Refused{"TwoCommands", {"run", "test", "this"}, "\"this\" is one word too many."},
        Refused{"NoCommand", {"run"}, "The verb run needs a word: COMMAND."},
        Refused{"EmptyValue", {"status", "--config="}, "The option --config needs a value."},
        Refused{"NoValue", {"status", "--config"}, "The option --config needs a value."},
        Refused{"FlagWithAValue",
                {"connect", "--create=false"},
                "The command line was not understood: "}),
    [](const auto& test) { return test.param.name; });

} // namespace
