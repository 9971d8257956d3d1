// SPDX-License-Identifier: MIT
#include "app/Selection.h"
#include "InProcess.h"
#include "app/AppError.h"

#include <gmock/gmock.h>

using namespace App;
using testing::ElementsAre;

namespace {

class Selection : public AppTest::InProcess {};

ExitStatus StatusFor(const CString& word) {
    try {
        ParseSelection({word});
    } catch (const AppError& error) {
        return error.Status();
    }
    return ExitStatus::Done;
}

TEST_F(Selection, NoneMeansEverythingInTheOrderFocNcfGsCataloguesItems) {
    EXPECT_THAT(ParseSelection({}),
                ElementsAre(Selected{Group::FOC, {}}, Selected{Group::NCF, {}},
                            Selected{Group::GS, {}}, Selected{Group::Catalogues, {}},
                            Selected{Group::Items, {}}));
}

TEST_F(Selection, AGroupOrOneOfItIsSelectedByName) {
    EXPECT_THAT(ParseSelection({u"ncf:002_NODE", u"gs", u"foc:005_TOPOLOGY_CONFIG", u"gs:Općine"}),
                ElementsAre(Selected{Group::NCF, u"002_NODE"}, Selected{Group::GS, {}},
                            Selected{Group::FOC, u"005_TOPOLOGY_CONFIG"},
                            Selected{Group::GS, u"Općine"}));
}

TEST_F(Selection, TheSameSelectionTwiceCountsOnce) {
    EXPECT_THAT(ParseSelection({u"ncf", u"gs", u"ncf"}),
                ElementsAre(Selected{Group::NCF, {}}, Selected{Group::GS, {}}));
}

TEST_F(Selection, EverythingBehindTheFirstColonIsTheName) {
    EXPECT_EQ(ParseSelection({u"gs:a:b"}).front().name, u"a:b");
}

TEST_F(Selection, AWordThatSelectsNothingIsAUsageError) {
    for (const CString word : {u"", u"NCF", u"drawings", u"ncf:", u":", u"foc :x", u"002_NODE"})
        EXPECT_EQ(StatusFor(word), ExitStatus::Usage);
}

TEST_F(Selection, OneCatalogueIsNamedBySingularOrPlural) {
    const Selected pipes{Group::Catalogues, u"PIPES"};
    EXPECT_THAT(ParseSelection({u"catalogue:PIPES", u"catalogues:PIPES", u"catalogues"}),
                ElementsAre(pipes, Selected{Group::Catalogues, {}}));
    EXPECT_EQ(StatusFor(u"catalogue"), ExitStatus::Usage);
}

TEST_F(Selection, IsWrittenAsItIsTyped) {
    EXPECT_EQ(WordFor(Selected{Group::FOC, {}}), u"foc");
    EXPECT_EQ(WordFor(Selected{Group::NCF, u"002_NODE"}), u"ncf:002_NODE");
    EXPECT_EQ(WordFor(Group::GS, u""), u"gs");
    EXPECT_EQ(WordFor(Group::GS, u"A"), u"gs:A");
    EXPECT_EQ(WordFor(Selected{Group::Catalogues, {}}), u"catalogues");
    EXPECT_EQ(WordFor(Selected{Group::Catalogues, u"PIPES"}), u"catalogue:PIPES");
    EXPECT_EQ(WordFor(Selected{Group::Items, u"PIPES"}), u"items:PIPES");
}

} // namespace
