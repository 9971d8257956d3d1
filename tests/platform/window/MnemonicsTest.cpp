// SPDX-License-Identifier: MIT
#include "platform/window/Mnemonics.h"

#include <gmock/gmock.h>

using namespace Platform;

namespace {

CString Keys(const std::vector<CString>& texts, std::set<char16_t> taken = {}) {
    CString keys;
    for (const Mnemonic& mnemonic : AssignMnemonics(texts, taken))
        keys += mnemonic.key ? mnemonic.key : u'-';
    return keys;
}

TEST(Mnemonics, AreFirstLettersOfWordsThenOtherLettersThenDigits) {
    EXPECT_EQ(Keys({u"Load all", u"Load selected", u"Lasso", u"Los 7", u"7 Los"}), u"lsao7");
}

TEST(Mnemonics, AreAllDifferentAndNoneOfThoseTaken) {
    EXPECT_EQ(Keys({u"ab", u"ab", u"ab"}, {u'a'}), u"bcd");
}

TEST(Mnemonics, MoveOverWhenAnotherTextHasNoOtherLetter) {
    EXPECT_EQ(Keys({u"ab", u"bc", u"a", u"b"}), u"bcad");
}

TEST(Mnemonics, StayTheSameForTheSameTexts) {
    const std::vector<CString> texts = {u"Učitaj sve", u"Učitaj odabrano", u"Zatvori", u""};
    EXPECT_EQ(Keys(texts), Keys(texts));
}

TEST(Mnemonics, AreNoLettersThatMostKeyboardsLack) {
    std::set<char16_t> taken;
    const std::vector<Mnemonic> given = AssignMnemonics({u"ŠČŽ š"}, taken);
    EXPECT_EQ(given[0].key, u'a');
    EXPECT_FALSE(given[0].IsInText());
}

TEST(Mnemonics, OfNothingButStrangeTextAreAnyThatIsLeft) {
    EXPECT_EQ(Keys({u"", CString(3, u'\0'), CString(1, char16_t(0xD800)), u"&"}), u"abcd");
}

TEST(Mnemonics, RunOutAfterAllLettersAndDigits) {
    const CString keys = Keys(std::vector<CString>(40, u"x"));
    EXPECT_EQ(std::set<char16_t>(keys.begin(), keys.end()).size(), 37U);
    EXPECT_EQ(keys.substr(36), u"----");
}

TEST(Mnemonics, AreMarkedInTheTextWhoseOwnAmpersandsStay) {
    EXPECT_EQ(WithMnemonic(u"R&D", {u'd', 2}), u"R&&&D");
    EXPECT_EQ(WithMnemonic(u"&", {}), u"&&");
    EXPECT_EQ(WithMnemonic(u"", {u'a', CString::npos}), u"");
}

} // namespace
