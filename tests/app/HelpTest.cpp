// SPDX-License-Identifier: MIT
#include "InProcess.h"
#include "app/CommandLine.h"
#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

using namespace App;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Help : public AppTest::InProcess, public testing::WithParamInterface<const char*> {
protected:
    Help() { workstation.Set("ZEBX_LANGUAGE", GetParam()); }

    static std::string HelpOf(const Verb& verb) {
        std::istringstream words(verb.name);
        std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        arguments.emplace_back("--help");
        return RunHere(arguments).out;
    }

    // Every help text that there is.
    std::vector<std::string> AllHelp() {
        std::vector<std::string> texts = {RunHere({"--help"}).out};
        for (const Verb& verb : Verbs())
            texts.push_back(HelpOf(verb));
        return texts;
    }
};

TEST_P(Help, FitsEightyColumns) {
    for (const std::string& text : AllHelp()) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(WidthOf(Platform::FromUtf8(line)), kLineWidth) << line;
    }
}

TEST_P(Help, HasATextForEverything) {
    for (const std::string& text : AllHelp()) {
        EXPECT_THAT(text, Not(HasSubstr("message 2")));
        EXPECT_THAT(text, Not(HasSubstr("poruka 2")));
        EXPECT_THAT(text, Not(HasSubstr("%s")));
    }
}

TEST_P(Help, NamesEveryVerbAndOption) {
    const std::string text = RunHere({"--help"}).out;
    for (const Verb& verb : Verbs())
        EXPECT_THAT(text, HasSubstr(std::string("\n  ") + verb.name));
    for (const Option& option : CommonOptions())
        EXPECT_THAT(text, HasSubstr(std::string("\n  ") + option.name));
}

TEST_P(Help, ShowsExamplesFirst) {
    for (const Verb& verb : Verbs()) {
        const std::string text = HelpOf(verb);
        const auto example = text.find(std::string("\n  zebx ") + verb.examples.front().line);
        const auto option = text.find("\n  --config");
        ASSERT_NE(example, std::string::npos) << text;
        ASSERT_NE(option, std::string::npos) << text;
        EXPECT_LT(example, option) << text;
    }
}

INSTANTIATE_TEST_SUITE_P(BothLanguages, Help, testing::Values("en", "hr"),
                         [](const auto& test) { return std::string(test.param); });

class HelpInEnglish : public AppTest::InProcess {};

TEST_F(HelpInEnglish, EveryExampleIsACommandLineOfItsVerb) {
    for (const Verb& verb : Verbs()) {
        for (const Example& example : verb.examples) {
            std::istringstream line(example.line);
            const std::vector<std::string> arguments{std::istream_iterator<std::string>(line), {}};
            EXPECT_EQ(ParseCommandLine(arguments).verb, &verb) << example.line;
        }
    }
}

TEST_F(HelpInEnglish, EndsWithStatusZeroAndSaysNothingElse) {
    const AppTest::Ended run = RunHere({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(HelpInEnglish, IsGivenAlsoWhenAWordIsMissing) {
    EXPECT_EQ(RunHere({"run", "--help"}).status, 0);
}

TEST_F(HelpInEnglish, WithoutAnInstallationSaysWhereItLooked) {
    workstation.Set("ZEBX_INSTALL", "/nowhere");
    const AppTest::Ended run = RunHere({"--help"});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.err, HasSubstr("/nowhere/messages/en is missing"));
    EXPECT_THAT(run.err, HasSubstr("zebx --install DIR"));
}

} // namespace
