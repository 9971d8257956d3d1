// SPDX-License-Identifier: MIT
// A repository into which somebody wrote with other tools: what may not be given out is
// told and the rest is served.
#include "TestFiles.h"
#include "TestRepository.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

class StoreHostile : public StoreTest {
protected:
    void Fill() override {
        store->AddFiles({MakeFile(u"a.dwg", "planted"), MakeFile(u"good.dwg", "good")});
    }
    void Plant(std::string_view name) {
        store->Connection().Execute(
            "UPDATE stored_file SET name = $1, name_folded = $2 WHERE name <> 'good.dwg'",
            {name, Platform::ToUtf8(Platform::FoldCase(Platform::FromUtf8(name)))});
    }
    // What each file of the listing gives: its content, or the number of its problem.
    std::vector<std::string> Served() {
        std::vector<std::string> served;
        for (const CString& id : store->FileIds(4, u"001_LABEL")) {
            const auto error = ErrorOf([&] { served.push_back(BytesOf(store->File(id))); });
            if (error)
                served.push_back(std::to_string(int(error->Messages()[0].number)));
        }
        std::sort(served.begin(), served.end());
        return served;
    }
    static std::string NumberText(MessageNumber number) { return std::to_string(int(number)); }
};
ZEBX_FOR_EVERY_ENGINE(StoreHostile);

TEST_P(StoreHostile, PlantedNamesAreRefusedEachAndTheRestComes) {
    const std::pair<std::string, MessageNumber> names[] = {
        {"", MessageNumber::NameEmpty},        {".", MessageNumber::NameIsFolder},
        {"..", MessageNumber::NameIsFolder},   {"../x", MessageNumber::NameSeparator},
        {"a/b", MessageNumber::NameSeparator}, {"a\\b", MessageNumber::NameSeparator},
        {"C:x", MessageNumber::NameColon},     {"a\tb", MessageNumber::NameControl},
        {"CON", MessageNumber::NameReserved},  {std::string(300, 'a'), MessageNumber::NameTooLong},
    };
    for (const auto& [name, number] : names) {
        Plant(name);
        EXPECT_THAT(Served(), testing::ElementsAre(NumberText(number), "good")) << name;
    }
}

TEST_P(StoreHostile, TheProblemSaysNameAndKind) {
    Plant("../x");
    const auto error = ErrorOf([&] { store->File(store->FileIds(4, u"001_LABEL").at(0)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Refused);
    EXPECT_THAT(error->Messages()[0].values, testing::ElementsAre(u"../x", u"001_LABEL"));
}

TEST_P(StoreHostile, OfTwoNamesThatDifferByCaseAloneTheFirstIsServed) {
    auto& sql = store->Connection();
    sql.RunScript("DROP INDEX stored_file_current");
    sql.Execute("UPDATE stored_file SET name = 'GOOD.dwg', name_folded = 'good.dwg' "
                "WHERE name = 'a.dwg'",
                {});
    EXPECT_THAT(Served(),
                testing::ElementsAre(NumberText(MessageNumber::NameDiffersByCase), "planted"));
}

TEST_P(StoreHostile, AFoldedNameThatDoesNotBelongToTheNameIsDamage) {
    store->Connection().Execute("UPDATE stored_file SET name = 'GOOD.dwg' WHERE name = 'a.dwg'",
                                {});
    EXPECT_THAT(Served(), testing::ElementsAre(NumberText(MessageNumber::RecordDamaged), "good"));
}

TEST_P(StoreHostile, AContentThatDoesNotFitItsHashIsNeverServed) {
    for (const std::string bytes : {"Planted", "plante", "plantedx", ""}) {
        store->Connection().Execute("UPDATE content SET bytes = $1 WHERE size_bytes = 7",
                                    {SqlBytes(bytes)});
        EXPECT_THAT(Served(),
                    testing::ElementsAre(NumberText(MessageNumber::ContentDamaged), "good"));
    }
}

TEST_P(StoreHostile, ASizeThatLiesIsDamage) {
    auto& sql = store->Connection();
    sql.Execute("UPDATE stored_file SET size_bytes = 8 WHERE name = 'a.dwg'", {});
    EXPECT_THAT(Served(), testing::ElementsAre(NumberText(MessageNumber::ContentDamaged), "good"));
    sql.Execute("UPDATE stored_file SET size_bytes = 7 WHERE name = 'a.dwg'", {});
    sql.Execute("UPDATE content SET size_bytes = 9 WHERE size_bytes = 7", {});
    EXPECT_THAT(Served(), testing::ElementsAre(NumberText(MessageNumber::ContentDamaged), "good"));
}

TEST_P(StoreHostile, AContentThatIsMissingIsToldAsMissing) {
    auto& sql = store->Connection();
    repository->LiftRules(sql);
    sql.Execute("DELETE FROM content WHERE size_bytes = 7", {});
    EXPECT_THAT(Served(), testing::ElementsAre(NumberText(MessageNumber::ContentMissing), "good"));
}

TEST_P(StoreHostile, AnotherContentUnderTheHashIsDamage) {
    store->Connection().Execute("UPDATE stored_file SET hash = (SELECT hash FROM stored_file "
                                "WHERE name = 'good.dwg') WHERE name = 'a.dwg'",
                                {});
    EXPECT_THAT(Served(), testing::ElementsAre(NumberText(MessageNumber::ContentDamaged), "good"));
}

TEST_P(StoreHostile, SendingTheFileAnewServesItAgain) {
    Plant("../x");
    store->AddFiles({MakeFile(u"a.dwg", "sent anew")});
    EXPECT_THAT(Served(), testing::ElementsAre(NumberText(MessageNumber::NameSeparator), "good",
                                               "sent anew"));
}

} // namespace
} // namespace Storage
