// SPDX-License-Identifier: MIT
#include "app/Suggest.h"
#include "InProcess.h"

#include <gmock/gmock.h>

using namespace App;
using AppTest::Ended;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::vector<CString> kVerbs = {u"push", u"pull", u"status", u"config show"};

TEST(Nearest, IsTheWordWithOneSlip) {
    for (const CStringView slip : {u"psuh", u"pus", u"pusch", u"pish", u"PUSH"})
        EXPECT_THAT(Nearest(slip, kVerbs), ElementsAre(u"push"))
            << std::string(slip.begin(), slip.end());
}

TEST(Nearest, AreAtMostTwoThatAreEquallyNear) {
    EXPECT_THAT(Nearest(u"pu", kVerbs), ElementsAre(u"push", u"pull"));
    EXPECT_THAT(Nearest(u"a1", {u"a2", u"a3", u"a4"}), ElementsAre(u"a2", u"a3"));
}

TEST(Nearest, IsAlsoTheWordThatBeginsSo) {
    EXPECT_THAT(Nearest(u"stat", kVerbs), ElementsAre(u"status"));
    EXPECT_THAT(Nearest(u"config", kVerbs), ElementsAre(u"config show"));
}

TEST(Nearest, IsNothingForAnotherWord) {
    EXPECT_THAT(Nearest(u"frobnicate", kVerbs), IsEmpty());
    EXPECT_THAT(Nearest(u"", kVerbs), IsEmpty());
    EXPECT_THAT(Nearest(u"p", kVerbs), IsEmpty());
    EXPECT_THAT(Nearest(CString(100000, u'p'), kVerbs), IsEmpty());
}

class DidYouMeanTest : public AppTest::InProcess {
protected:
    static std::string Told(const std::vector<std::string>& arguments) {
        const Ended run = RunHere(arguments);
        EXPECT_EQ(run.status, 2) << run;
        return run.err;
    }
};

TEST_F(DidYouMeanTest, MistypedVerbsAreAnswered) {
    EXPECT_THAT(Told({"psuh"}), HasSubstr("\nDid you mean push?\n"));
    EXPECT_THAT(Told({"pu"}), HasSubstr("\nDid you mean push or pull?\n"));
    EXPECT_THAT(Told({"config", "shwo"}), HasSubstr("\nDid you mean config show?\n"));
    EXPECT_THAT(Told({"cnofig"}), HasSubstr("\nDid you mean config?\n"));
    EXPECT_THAT(Told({"frobnicate"}), Not(HasSubstr("Did you mean")));
}

TEST_F(DidYouMeanTest, MistypedOptionsAndValuesAreAnswered) {
    EXPECT_THAT(Told({"connect", "--craete"}), HasSubstr("\nDid you mean --create?\n"));
    EXPECT_THAT(Told({"push", "--suport=/x"}), HasSubstr("\nDid you mean --support?\n"));
    EXPECT_THAT(Told({"push", "--progress", "alwasy"}),
                HasSubstr("takes auto, always or never, not \"alwasy\".\nDid you mean always?\n"));
    EXPECT_THAT(Told({"status", "--language", "de"}), HasSubstr("takes en or hr, not \"de\"."));
}

TEST_F(DidYouMeanTest, MistypedSelectionsAreAnswered) {
    EXPECT_THAT(Told({"push", "nfc"}), HasSubstr("\nDid you mean ncf?"));
}

TEST(DidYouMeanStation, MistypedKindsAndCommandsAreAnsweredBehindWhatIsKnown) {
    const AppTest::Station station;
    EXPECT_THAT(station.Zebx({"push", "ncf:002_NOED"}).err,
                HasSubstr("  ncf:005_GPEBLOCKS\nDid you mean ncf:002_NODE?\n"));
    EXPECT_THAT(station.Zebx({"run", "tset"}).err, HasSubstr("\nDid you mean test?\n"));
}

} // namespace
