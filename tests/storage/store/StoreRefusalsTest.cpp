// SPDX-License-Identifier: MIT
// What the store does not take in, and that nothing of such a call lands.
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StoreRefusals : public StoreTest {
protected:
    std::optional<StorageError> Add(const Repository::RepositoryFiles& files) {
        const auto error = ErrorOf([&] { store->AddFiles(files); });
        if (error) {
            EXPECT_EQ(error->Kind(), Problem::Refused);
        }
        return error;
    }
    std::vector<MessageNumber> Reasons(const Repository::RepositoryFiles& files) {
        const auto error = Add(files);
        return error ? NumbersOf(*error) : std::vector<MessageNumber>();
    }
    RepositoryFilePtr WithContent(const std::string& base64) {
        auto file = MakeFile(u"a.dwg", "");
        file->SetFileContent(base64);
        return file;
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreRefusals);

TEST_P(StoreRefusals, EachBadNameIsNamedWithItsKindAndReasonAndNothingIsStored) {
    const auto error =
        Add({MakeFile(u"good.dwg", "1"), MakeFile(u"..\\x.dwg", "2"), MakeFile(u"NUL.dwg", "3")});
    ASSERT_TRUE(error);
    EXPECT_THAT(NumbersOf(*error),
                ElementsAre(MessageNumber::NameSeparator, MessageNumber::NameReserved));
    EXPECT_THAT(error->Messages()[0].values, ElementsAre(u"..\\x.dwg", u"001_LABEL"));
    EXPECT_EQ(Revision(), 0);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 0);
}

TEST_P(StoreRefusals, TwoNamesOfOneCallThatDifferByCaseAloneAreRefused) {
    const auto error = Add({MakeFile(u"Čvor.dwg", "1"), MakeFile(u"čvor.DWG", "1")});
    ASSERT_TRUE(error);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::NameDiffersByCase));
    EXPECT_THAT(error->Messages()[0].values, ElementsAre(u"čvor.DWG", u"001_LABEL", u"Čvor.dwg"));
    // In different kinds they lie in different folders.
    EXPECT_THAT(Reasons({MakeFile(u"a.dwg", "1"), MakeFile(u"A.dwg", "1", u"002_NODE")}),
                IsEmpty());
}

TEST_P(StoreRefusals, AStoredNameInAnotherCaseIsRefusedNamingBoth) {
    store->AddFiles({MakeFile(u"Čvor.dwg", "1")});
    const auto error = Add({MakeFile(u"new.dwg", "2"), MakeFile(u"ČVOR.dwg", "1")});
    ASSERT_TRUE(error);
    EXPECT_THAT(error->Messages()[0].values, ElementsAre(u"ČVOR.dwg", u"001_LABEL", u"Čvor.dwg"));
    EXPECT_EQ(Revision(), 1);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 1);
}

TEST_P(StoreRefusals, TheSameFileTwiceInOneCallIsOneFileUnlessTheContentsDiffer) {
    EXPECT_THAT(Reasons({MakeFile(u"a.dwg", "1"), MakeFile(u"a.dwg", "1")}), IsEmpty());
    EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file"), 1);
    EXPECT_THAT(Reasons({MakeFile(u"b.dwg", "1"), MakeFile(u"b.dwg", "2")}),
                ElementsAre(MessageNumber::NameTwice));
}

TEST_P(StoreRefusals, AFileWithoutAKindIsRefused) {
    EXPECT_THAT(Reasons({MakeFile(u"a.dwg", "1", u"")}),
                ElementsAre(MessageNumber::FileWithoutKind));
    EXPECT_THAT(Reasons({MakeFile(u"a.dwg", "1", u"K", Repository::FileTypeNone)}),
                ElementsAre(MessageNumber::FileWithoutKind));
}

TEST_P(StoreRefusals, AnEmptyHandleIsRefused) {
    EXPECT_THAT(Reasons({MakeFile(u"a.dwg", "1"), nullptr}),
                ElementsAre(MessageNumber::NothingGiven));
    EXPECT_EQ(Revision(), 0);
}

TEST_P(StoreRefusals, ContentThatIsNotBase64ToItsEndIsRefused) {
    for (const std::string base64 : {"TWF", "TWFuT", "TW=u", "TWFu TWFu", "TW!u", "====", "T===",
                                     "TWFu\n", "TWFu=", "TR==", "TWG=", "=TWF", "TW==TWFu"}) {
        EXPECT_THAT(Reasons({WithContent(base64)}), ElementsAre(MessageNumber::FileNotBase64))
            << base64;
    }
    EXPECT_EQ(Revision(), 0);
    for (const std::string base64 : {"", "TWFu", "TWE=", "TQ==", "TWFuTQ=="})
        EXPECT_THAT(Reasons({WithContent(base64)}), IsEmpty()) << base64;
}

TEST_P(StoreRefusals, TheLimitOfAFileIs512MiB) {
    EXPECT_EQ(kMaxFileBytes, 536870912u);
}

TEST_P(StoreRefusals, AFileAboveTheLimitIsRefusedByName) {
    store = OpenStore(std::uint64_t(1) << 20);
    EXPECT_THAT(Reasons({MakeFile(u"fits.dwg", std::string(1 << 20, 'x'))}), IsEmpty());
    const auto error = Add({MakeFile(u"large.dwg", std::string((1 << 20) + 1, 'x'))});
    ASSERT_TRUE(error);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::FileTooLarge));
    EXPECT_THAT(error->Messages()[0].values, ElementsAre(u"large.dwg", u"001_LABEL", u"1"));
    EXPECT_EQ(Revision(), 1);
}

TEST_P(StoreRefusals, TextsThatCannotBeKeptExactlyAreRefused) {
    const CString bad(u"a\xD800z", 3);
    auto file = MakeFile(u"a.dwg", "1");
    file->SetCustomParameter(bad.c_str());
    EXPECT_THAT(Reasons({file}), ElementsAre(MessageNumber::TextNotKept));
    EXPECT_EQ(ProblemOf([&] { store->SaveGeneralSettings(bad, {}, u""); }), Problem::Refused);
    EXPECT_EQ(ProblemOf([&] { store->SaveGeneralSettings(u"<gs/>", {}, bad); }), Problem::Refused);
    EXPECT_EQ(ProblemOf([&] { store->SaveGeneralSettings(CString(u"a\0b", 3), {}, u""); }),
              Problem::Refused);
    EXPECT_EQ(ProblemOf([&] { store->RegisterContent(4, bad, 1); }), Problem::Refused);
    EXPECT_EQ(Revision(), 0);
}

TEST_P(StoreRefusals, FilesThatTravelWithSettingsAreCheckedLikeOthers) {
    const auto refuse = [&](const Repository::RepositoryFiles& files) {
        const auto error = ErrorOf([&] { store->SaveGeneralSettings(u"<gs/>", files, u"X"); });
        return error ? NumbersOf(*error) : std::vector<MessageNumber>();
    };
    EXPECT_THAT(refuse({MakeFile(u"a/b", "1")}), ElementsAre(MessageNumber::NameSeparator));
    EXPECT_THAT(refuse({MakeFile(u"a", "1"), MakeFile(u"A", "1")}),
                ElementsAre(MessageNumber::NameDiffersByCase));
    EXPECT_THAT(refuse({WithContent("T")}), ElementsAre(MessageNumber::FileNotBase64));
    EXPECT_THAT(refuse({nullptr}), ElementsAre(MessageNumber::NothingGiven));
    EXPECT_THAT(refuse({MakeFile(u"", "1")}), ElementsAre(MessageNumber::NameEmpty));
    EXPECT_EQ(Revision(), 0);
}

} // namespace
} // namespace Storage
