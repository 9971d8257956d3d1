// SPDX-License-Identifier: MIT
// The manual page and the completion as the build writes them.
#include "InProcess.h"
#include "app/Verbs.h"

#include <gmock/gmock.h>
#include <stdlib.h>

using namespace App;
using AppTest::Bytes;
using testing::HasSubstr;

namespace {

const std::string kManual = ZEBX_BUILD_DIR "/share/man/man1/zebx.1";
const std::string kCompletion = ZEBX_BUILD_DIR "/share/bash-completion/completions/zebx";

std::vector<Option> EveryOption() {
    std::vector<Option> options = CommonOptions();
    for (const Verb& verb : Verbs())
        options.insert(options.end(), verb.options.begin(), verb.options.end());
    return options;
}

std::string InManual(std::string text) {
    for (auto at = text.find('-'); at != text.npos; at = text.find('-', at + 2))
        text.insert(at, "\\");
    return text;
}

TEST(Manual, NamesEveryVerbAndOption) {
    const std::string page = Bytes(kManual);
    for (const Verb& verb : Verbs())
        EXPECT_THAT(page, HasSubstr(".SS \"zebx " + InManual(verb.name)));
    for (const Option& option : EveryOption())
        EXPECT_THAT(page, HasSubstr("\\fB" + InManual(option.name)));
    EXPECT_THAT(page, Not(HasSubstr("message 2")));
}

TEST(Manual, HasNothingThatItsCheckerWouldSay) {
    EXPECT_EQ(system(("mandoc -T lint -W style '" + kManual + "'").c_str()), 0);
}

TEST(Completion, NamesEveryVerbAndOption) {
    const std::string script = Bytes(kCompletion);
    for (const Verb& verb : Verbs())
        EXPECT_THAT(script, HasSubstr(LastWordOf(verb)));
    for (const Option& option : EveryOption())
        EXPECT_THAT(script, HasSubstr(option.name));
}

TEST(Completion, WorksInARealBash) {
    EXPECT_EQ(system(("bash '" ZEBX_SOURCE_DIR "/tests/app/completion-works' '" + kCompletion + "'")
                         .c_str()),
              0);
}

} // namespace
