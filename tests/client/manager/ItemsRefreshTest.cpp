// SPDX-License-Identifier: MIT
// Definitions: the picture of the shared repository, read anew.
#include "client/manager/ItemsTest.h"

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::Return;

namespace {

class ItemsRefresh : public ItemsTest {
protected:
    void ExpectRead(const char16_t* tag, const std::vector<NetItem>& items, int answer = 1) {
        EXPECT_CALL(backend, GetRepositoryItems(TextIs(tag), IsEmpty()))
            .WillOnce([=](const char16_t*, std::vector<NetItem>& out) {
                out = items;
                return answer;
            });
    }
    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
    }
};

TEST_F(ItemsRefresh, OneTagIsReadAndTheOthersStay) {
    Draw(u"A", {Stored(u"old", u"")});
    Draw(u"B", {Stored(u"b", u"")});
    const InSequence order;
    ExpectRead(u"A", {Stored(u"2", u"two"), Stored(u"1", u"one"), Stored(u"2", u"dropped")});
    ExpectAccessible(1);
    EXPECT_EQ(manager.RefreshNetRepository(u"A"), 1);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one", u"2=two"));
    EXPECT_THAT(Drawn(u"B"), ElementsAre(u"b="));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(ItemsRefresh, TheTagIsErasedBeforeItIsRead) {
    Draw(u"A", {Stored(u"old", u"")});
    EXPECT_CALL(backend, GetRepositoryItems(_, _)).WillOnce([&](auto&&...) {
        EXPECT_THAT(Drawn(u"A"), ElementsAre(u"(none)"));
        return 1;
    });
    ExpectAccessible(1);
    EXPECT_EQ(manager.RefreshNetRepository(u"A"), 1);
}

TEST_F(ItemsRefresh, ATagWithoutItemsIsReadAllTheSame) {
    ExpectRead(u"A", {});
    ExpectAccessible(1);
    EXPECT_EQ(manager.RefreshNetRepository(u"A"), 1);
    EXPECT_THAT(Drawn(u"A"), IsEmpty());
}

TEST_F(ItemsRefresh, ATagThatCannotBeReadBecomesEmpty) {
    Draw(u"A", {Stored(u"old", u"")});
    ExpectRead(u"A", {Stored(u"half", u"")}, 0);
    ExpectAccessible(1);
    EXPECT_EQ(manager.RefreshNetRepository(u"A"), 0);
    EXPECT_THAT(Drawn(u"A"), IsEmpty());
}

TEST_F(ItemsRefresh, ATagThatIsNotDeclaredCanBeRead) {
    ExpectRead(u"elsewhere", {Stored(u"1", u"one")});
    ExpectAccessible(1);
    EXPECT_EQ(manager.RefreshNetRepository(u"elsewhere"), 1);
    EXPECT_THAT(Drawn(u"elsewhere"), ElementsAre(u"1=one"));
}

TEST_F(ItemsRefresh, WithoutATagEveryDeclaredOneIsReadInOrderAndOthersStay) {
    Draw(u"elsewhere", {Stored(u"x", u"")});
    const InSequence order;
    for (const char16_t* tag : {u"A", u"B", u"C"}) {
        ExpectRead(tag, {Stored(tag, u"")});
        ExpectAccessible(1);
    }
    EXPECT_EQ(manager.RefreshNetRepository(nullptr), 1);
    for (const CString tag : {u"A", u"B", u"C"})
        EXPECT_THAT(Drawn(tag), ElementsAre(tag + u"="));
    EXPECT_THAT(Drawn(u"elsewhere"), ElementsAre(u"x="));
}

TEST_F(ItemsRefresh, OneTagThatWasReadIsASuccess) {
    const InSequence order;
    for (const auto& [tag, answer] : {std::pair(u"A", 0), {u"B", 1}, {u"C", 0}}) {
        ExpectRead(tag, {}, answer);
        ExpectAccessible(1);
    }
    EXPECT_EQ(manager.RefreshNetRepository(nullptr), 1);
}

TEST_F(ItemsRefresh, WithoutAnyTagNothingIsReadAndThePictureStays) {
    std::filesystem::remove(workstation.Native() / "Definitions.xml");
    Draw(u"elsewhere", {Stored(u"x", u"")});
    EXPECT_EQ(manager.RefreshNetRepository(nullptr), 0);
    EXPECT_THAT(Drawn(u"elsewhere"), ElementsAre(u"x="));
    Picture().reset();
    EXPECT_EQ(manager.RefreshNetRepository(nullptr), 0);
    EXPECT_TRUE(Picture());
}

TEST_F(ItemsRefresh, ARepositoryThatGoesAwayEndsItAndDropsWhatWasEarned) {
    for (const CString tag : {u"A", u"B", u"C"})
        Draw(tag, {Stored(u"old", u"")});
    const InSequence order;
    ExpectRead(u"A", {Stored(u"new", u"")});
    ExpectAccessible(1);
    ExpectRead(u"B", {Stored(u"new", u"")});
    ExpectAccessible(0);
    EXPECT_EQ(manager.RefreshNetRepository(nullptr), 0);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"new="));
    EXPECT_THAT(Drawn(u"B"), ElementsAre(u"(none)"));
    EXPECT_THAT(Drawn(u"C"), ElementsAre(u"old="));
}

} // namespace
