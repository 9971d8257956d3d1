// SPDX-License-Identifier: MIT
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StoreSettings : public StoreTest {
protected:
    CString Text(const CString& name) {
        const auto settings = store->LoadGeneralSettings(name);
        return settings ? settings->xml : u"(none)";
    }
    std::vector<std::string> Files(const CString& name) {
        std::vector<std::string> contents;
        const auto settings = store->LoadGeneralSettings(name);
        for (const CString& id : settings.value().fileIds)
            contents.push_back(BytesOf(store->File(id)));
        return contents;
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreSettings);

TEST_P(StoreSettings, ANameThatNobodySavedHasNone) {
    EXPECT_FALSE(store->LoadGeneralSettings(u""));
    EXPECT_THAT(store->GeneralSettingsNames(), IsEmpty());
}

TEST_P(StoreSettings, TextsComeBackExactlyByName) {
    const CString text = u"<gs name=\"Šibenik\">\r\n\tčćžšđ \U0001F600 \"&<>' \x0001</gs>";
    store->SaveGeneralSettings(text, {}, u"");
    store->SaveGeneralSettings(u"<other/>", {}, u"Grad Zagreb");
    EXPECT_EQ(Text(u""), text);
    EXPECT_EQ(Text(u"Grad Zagreb"), u"<other/>");
    EXPECT_EQ(Text(u"grad zagreb"), u"(none)");
    EXPECT_THAT(store->GeneralSettingsNames(), ElementsAre(u"", u"Grad Zagreb"));
}

TEST_P(StoreSettings, AnEmptyTextIsAText) {
    store->SaveGeneralSettings(u"", {}, u"");
    ASSERT_TRUE(store->LoadGeneralSettings(u""));
    EXPECT_EQ(Text(u""), u"");
}

TEST_P(StoreSettings, SavingAgainReplacesTextAndFiles) {
    store->SaveGeneralSettings(u"<one/>", {MakeFile(u"a", "1"), MakeFile(u"b", "2")}, u"");
    EXPECT_THAT(Files(u""), ElementsAre("1", "2"));
    store->SaveGeneralSettings(u"<one/>", {MakeFile(u"b", "3")}, u"");
    EXPECT_EQ(Text(u""), u"<one/>");
    EXPECT_THAT(Files(u""), ElementsAre("3"));
    EXPECT_EQ(Revision(), 2);
}

TEST_P(StoreSettings, SavingTheSameAgainMakesNoRevision) {
    const Repository::RepositoryFiles files = {MakeFile(u"b", "1"), MakeFile(u"a", "2")};
    store->SaveGeneralSettings(u"<one/>", files, u"");
    store->SaveGeneralSettings(u"<one/>", files, u"");
    EXPECT_EQ(Revision(), 1);
    EXPECT_THAT(Files(u""), ElementsAre("1", "2"));
}

TEST_P(StoreSettings, TheFilesOfAListingStandWhenTheSettingsAreReplaced) {
    store->SaveGeneralSettings(u"<one/>", {MakeFile(u"a", "1")}, u"");
    const auto ids = store->LoadGeneralSettings(u"")->fileIds;
    store->SaveGeneralSettings(u"<two/>", {}, u"");
    EXPECT_EQ(BytesOf(store->File(ids.at(0))), "1");
    EXPECT_THAT(Files(u""), IsEmpty());
}

TEST_P(StoreSettings, TheirFilesAreNoKindsFiles) {
    store->SaveGeneralSettings(u"<one/>", {MakeFile(u"a.dwg", "1")}, u"");
    EXPECT_THAT(store->FileIds(4, u"001_LABEL"), IsEmpty());
    store->AddFiles({MakeFile(u"A.dwg", "2")});
    EXPECT_EQ(store->FileIds(4, u"001_LABEL").size(), 1u);
    RepositoryState state;
    store->ReadState(state);
    EXPECT_EQ(state.files, 1);
}

TEST_P(StoreSettings, ADamagedTextIsToldAndNotGivenOut) {
    store->SaveGeneralSettings(u"<one/>", {}, u"");
    store->Connection().Execute("UPDATE content SET bytes = $1", {SqlBytes("<two/>")});
    EXPECT_EQ(ProblemOf([&] { store->LoadGeneralSettings(u""); }), Problem::Integrity);
}

} // namespace
} // namespace Storage
