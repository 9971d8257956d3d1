// SPDX-License-Identifier: MIT
#include "client/util/Split.h"

#include <gmock/gmock.h>

using namespace Repository;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<CStringView> NonEmpty(CStringView text) {
    std::vector<CStringView> pieces = {u"left over"};
    SplitNonEmpty(text, u'@', pieces);
    return pieces;
}

} // namespace

TEST(SplitFields, EmptyPiecesAndTheOneBehindTheLastDelimiterAreKept) {
    EXPECT_THAT(SplitFields(CStringView(u"a##b#"), u'#'), ElementsAre(u"a", u"", u"b", u""));
    EXPECT_THAT(SplitFields(std::string_view("a##b#"), '#'), ElementsAre("a", "", "b", ""));
}

TEST(SplitFields, TheEmptyTextGivesOneEmptyPiece) {
    EXPECT_THAT(SplitFields(CStringView(), u'#'), ElementsAre(u""));
    EXPECT_THAT(SplitFields(std::string_view(), '#'), ElementsAre(""));
}

TEST(SplitFields, ATextWithoutTheDelimiterIsOnePiece) {
    EXPECT_THAT(SplitFields(CStringView(u"a$b|c"), u'#'), ElementsAre(u"a$b|c"));
}

TEST(SplitFields, ALoneDelimiterGivesTwoEmptyPieces) {
    EXPECT_THAT(SplitFields(CStringView(u"$"), u'$'), ElementsAre(u"", u""));
}

TEST(SplitFields, ADelimiterInFrontGivesAnEmptyFirstPiece) {
    EXPECT_THAT(SplitFields(CStringView(u"|a"), u'|'), ElementsAre(u"", u"a"));
}

TEST(SplitFields, OnlyTheWholeCodeUnitSeparates) {
    EXPECT_THAT(SplitFields(CStringView(u"a\u2323b"), u'#'), ElementsAre(u"a\u2323b"));
}

TEST(SplitFields, AZeroByteOfANarrowTextIsAByteLikeOthers) {
    EXPECT_THAT(SplitFields(std::string_view("a\0b#c", 5), '#'),
                ElementsAre(std::string_view("a\0b", 3), "c"));
}

TEST(SplitFields, ThePiecesAreViewsIntoTheText) {
    const CString text = u"ab#cd";
    const auto pieces = SplitFields(text, u'#');
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[1].data(), text.data() + 3);
}

TEST(SplitNonEmpty, EmptyPiecesAreDropped) {
    EXPECT_THAT(NonEmpty(u"@a@@b@"), ElementsAre(u"a", u"b"));
}

TEST(SplitNonEmpty, TheListIsEmptiedFirstAlsoForAnEmptyText) {
    EXPECT_THAT(NonEmpty(u""), IsEmpty());
}

TEST(SplitNonEmpty, SeparatorsAloneGiveNothing) {
    EXPECT_THAT(NonEmpty(u"@@@"), IsEmpty());
}

TEST(SplitNonEmpty, APieceWithoutASeparatorBehindItCounts) {
    EXPECT_THAT(NonEmpty(u"a@b"), ElementsAre(u"a", u"b"));
    EXPECT_THAT(NonEmpty(u"a"), ElementsAre(u"a"));
}
