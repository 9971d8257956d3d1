// SPDX-License-Identifier: MIT
// The rules for names and sizes, asked for before anything is sent.
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;

class StoreNames : public StoreTest {
protected:
    std::vector<MessageNumber> Refused(const std::vector<NamedFile>& files) {
        const auto error = ErrorOf([&] { store->CheckNames(files); });
        if (!error)
            return {};
        EXPECT_EQ(error->Kind(), Problem::Refused);
        return NumbersOf(*error);
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreNames);

TEST_P(StoreNames, GoodOnesPassAndNothingIsSent) {
    EXPECT_THAT(Refused({}), testing::IsEmpty());
    EXPECT_THAT(Refused({{u"001_LABEL", u"a.dwg", 1}, {u"001_LABEL", u"b.dwg", kMaxFileBytes}}),
                testing::IsEmpty());
    EXPECT_EQ(Revision(), 0);
}

TEST_P(StoreNames, EveryNameAndSizeThatSendingRefusesIsTold) {
    const auto error = ErrorOf([&] {
        store->CheckNames({{u"001_LABEL", u"", 1},
                           {u"001_LABEL", u"good.dwg", 1},
                           {u"001_LABEL", u"a\\b", 1},
                           {u"001_LABEL", u"con.dwg", 1},
                           {u"001_LABEL", CString(256, u'a'), 1},
                           {u"002_NODE", u"large.dwg", kMaxFileBytes + 1}});
    });
    ASSERT_TRUE(error);
    EXPECT_THAT(NumbersOf(*error),
                ElementsAre(MessageNumber::NameEmpty, MessageNumber::NameSeparator,
                            MessageNumber::NameReserved, MessageNumber::NameTooLong,
                            MessageNumber::FileTooLarge));
    EXPECT_THAT(error->Messages().back().values, ElementsAre(u"large.dwg", u"002_NODE", u"512"));
}

TEST_P(StoreNames, TwoOfAKindThatDifferByCaseAloneAreTold) {
    EXPECT_THAT(Refused({{u"001_LABEL", u"Č.dwg", 1}, {u"001_LABEL", u"č.dwg", 1}}),
                ElementsAre(MessageNumber::NameDiffersByCase));
    EXPECT_THAT(Refused({{u"001_LABEL", u"a.dwg", 1}, {u"002_NODE", u"A.dwg", 1}}),
                testing::IsEmpty());
}

TEST_P(StoreNames, OneThatDiffersByCaseAloneFromAStoredOneIsTold) {
    store->AddFiles({MakeFile(u"a.dwg", "1"),
                     MakeFile(u"p.xml", "2", u"001_PUMPCURVE", Repository::FileTypeFOC)});
    EXPECT_THAT(Refused({{u"001_LABEL", u"A.dwg", 1}, {u"001_PUMPCURVE", u"P.xml", 1}}),
                ElementsAre(MessageNumber::NameDiffersByCase, MessageNumber::NameDiffersByCase));
    EXPECT_THAT(Refused({{u"001_LABEL", u"a.dwg", 1}, {u"002_NODE", u"A.dwg", 1}}),
                testing::IsEmpty());
}

} // namespace
} // namespace Storage
