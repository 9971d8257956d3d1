// SPDX-License-Identifier: MIT
// A click for every button of every page.
#include "client/dialog/windows/DialogUser.h"

#include <QApplication>
#include <gmock/gmock.h>

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::Return;

namespace {

constexpr int kCatalogueList = 112;
constexpr int kKindList = 113;
constexpr int kLoadSelected = 114;
constexpr int kLoadAll = 115;
constexpr int kSelectNone = 116;
constexpr int kSelectAll = 117;

// As Qt says it.
constexpr int kTicked = Qt::Checked;

class Pages : public DialogUser {
protected:
    // Whether the wait cursor is shown when a kind of that content is loaded.
    void ExpectLoadingNoting(int content, bool& isWaiting) {
        EXPECT_CALL(backend, GetRepositoryFileIds(content, _, _)).WillOnce([&isWaiting] {
            isWaiting = QApplication::overrideCursor() != nullptr;
            return 0;
        });
    }
    // Whether a line stands below the row.
    static bool HasGridLines(const QTreeView* list) {
        const QImage image = list->viewport()->grab().toImage();
        const QRect row = list->visualRect(list->model()->index(0, 0));
        const int x = row.right() - 20;
        for (int y = row.center().y(); y <= row.bottom(); ++y)
            if (image.pixel(x, y) != image.pixel(x, row.center().y()))
                return true;
        return false;
    }
};

} // namespace

TEST_F(Pages, OfKindsAndCataloguesListThemInTheirOrder) {
    RegisterNCF(u"2", 10314);
    RegisterNCF(u"1", 10316);
    RegisterNCF(u"OFF", 10313, kOptional);
    RegisterFOC(u"2", 10324);
    RegisterFOC(u"1", 10328);
    CatalogueDeclaration hidden = Declared(u"H");
    hidden.hidden = true;
    DeclareCatalogues(workstation, {Declared(u"Z"), hidden, Declared(u"A")});
    Open([this] {
        EXPECT_THAT(RowsOf(Control<QTreeView>(Page(NCF), kKindList)),
                    ElementsAre(Msg(10316), Msg(10314)));
        EXPECT_THAT(RowsOf(Control<QTreeView>(Page(FOC), kKindList)),
                    ElementsAre(Msg(10328), Msg(10324)));
        EXPECT_THAT(RowsOf(Control<QTreeView>(Page(Catalogues), kCatalogueList)),
                    ElementsAre(u"Name of Z", u"Name of A"));
    });
}

TEST_F(Pages, SelectAllTicksEveryRowAndSelectNoneClearsThem) {
    RegisterSomeOfEach();
    Open([this] {
        for (const auto& [tab, id] : {std::pair{NCF, kKindList}, std::pair{FOC, kKindList},
                                      std::pair{Catalogues, kCatalogueList}}) {
            QWidget* const page = Page(tab);
            const auto* const list = Control<QTreeView>(page, id);
            EXPECT_THAT(TicksOf(list), ElementsAre(0, 0, 0));
            Click(page, kSelectAll);
            EXPECT_THAT(TicksOf(list), ElementsAre(kTicked, kTicked, kTicked));
            Click(page, kSelectNone);
            EXPECT_THAT(TicksOf(list), ElementsAre(0, 0, 0));
        }
    });
}

TEST_F(Pages, OfCataloguesAloneHasGridLines) {
    RegisterSomeOfEach();
    Open([this] {
        EXPECT_TRUE(HasGridLines(Control<QTreeView>(Page(Catalogues), kCatalogueList)));
        EXPECT_FALSE(HasGridLines(Control<QTreeView>(Page(NCF), kKindList)));
        EXPECT_FALSE(HasGridLines(Control<QTreeView>(Page(FOC), kKindList)));
    });
}

TEST_F(Pages, DrawingsThatAreTickedAreLoaded) {
    RegisterSomeOfEach();
    {
        const InSequence order;
        ExpectLoading(4, u"A");
        ExpectLoading(4, u"C");
    }
    Open([this] {
        QWidget* const page = Page(NCF);
        Tick(Control<QTreeView>(page, kKindList), 0);
        Tick(Control<QTreeView>(page, kKindList), 2);
        Click(page, kLoadSelected);
    });
}

TEST_F(Pages, ConfigurationFilesThatAreTickedAreLoaded) {
    RegisterSomeOfEach();
    {
        const InSequence order;
        ExpectLoading(5, u"A");
        ExpectLoading(5, u"C");
    }
    Open([this] {
        QWidget* const page = Page(FOC);
        Tick(Control<QTreeView>(page, kKindList), 0);
        Tick(Control<QTreeView>(page, kKindList), 2);
        Click(page, kLoadSelected);
    });
}

TEST_F(Pages, LoadingSelectedConfigurationFilesShowsTheWaitCursorAndDrawingsDoNot) {
    RegisterNCF(u"N", 10313);
    RegisterFOC(u"F", 10321);
    bool isWaitingForDrawings = true;
    bool isWaitingForFiles = false;
    ExpectLoadingNoting(4, isWaitingForDrawings);
    ExpectLoadingNoting(5, isWaitingForFiles);
    Open([this] {
        for (const Tab tab : {NCF, FOC}) {
            QWidget* const page = Page(tab);
            Click(page, kSelectAll);
            Click(page, kLoadSelected);
        }
    });
    EXPECT_FALSE(isWaitingForDrawings);
    EXPECT_TRUE(isWaitingForFiles);
}

TEST_F(Pages, LoadAllLoadsEveryKind) {
    RegisterNCF(u"N", 10313);
    RegisterFOC(u"F", 10321);
    {
        const InSequence order;
        ExpectLoading(4, u"N");
        ExpectLoading(5, u"F");
    }
    Open([this] {
        Click(Page(NCF), kLoadAll);
        Click(Page(FOC), kLoadAll);
    });
}

TEST_F(Pages, CataloguesThatAreTickedAreLoaded) {
    RegisterSomeOfEach();
    bool isWaiting = false;
    EXPECT_CALL(backend, GetChildCatalogItems(TextIs(u"B"), _, _, _)).WillOnce([&] {
        isWaiting = QApplication::overrideCursor() != nullptr;
        return 1;
    });
    Open([this] {
        QWidget* const page = Page(Catalogues);
        Tick(Control<QTreeView>(page, kCatalogueList), 1);
        Click(page, kLoadSelected);
    });
    EXPECT_TRUE(isWaiting);
    EXPECT_EQ(log.Lines(), (Lines{{1, Msg(10372) + u": 'Name of B'"}}));
}

TEST_F(Pages, EveryCatalogueIsLoaded) {
    RegisterSomeOfEach();
    EXPECT_CALL(backend, GetChildCatalogItems(_, _, _, _)).Times(3).WillRepeatedly(Return(1));
    Open([this] { Click(Page(Catalogues), kLoadAll); });
    EXPECT_EQ(log.Lines().size(), 3U);
}

TEST_F(Pages, GeneralSettingsAreLoaded) {
    EXPECT_CALL(backend, LoadGS(_, _, _))
        .WillOnce(testing::DoAll(testing::SetArgReferee<0>(CString(u"<gs/>")), Return(1)));
    Open([this] { Click(Page(GS), kLoadAll); });
    EXPECT_EQ(log.Lines(), Lines{Done(10369)});
    EXPECT_EQ(Read(SupportFolder() / "GeneralSettings.xml"), "<gs/>");
}

namespace {

constexpr int kSendGS = 103;
constexpr int kSendCatalogues = 104;
constexpr int kSendNCF = 105;
constexpr int kCatalogues = 106;
constexpr int kSendFOC = 107;
constexpr int kNCFKinds = 108;
constexpr int kFOCKinds = 109;

class Administration : public Pages {
protected:
    Administration() { isAdmin = 1; }

    static std::vector<CString> EntriesOf(const QWidget* page, int id) {
        const auto* const list = Control<QComboBox>(page, id);
        std::vector<CString> entries;
        for (int entry = 0; entry < list->count(); ++entry)
            entries.push_back(FromQt(list->itemText(entry)));
        return entries;
    }
};

} // namespace

TEST_F(Administration, ListsEverythingThatCanBeSentAndChoosesAll) {
    RegisterNCF(u"1", 10316);
    RegisterFOC(u"1", 10328);
    DeclareCatalogues(workstation, {Declared(u"Z"), Declared(u"A")});
    Open([this] {
        const QWidget* const page = Page(Admin);
        EXPECT_THAT(EntriesOf(page, kCatalogues),
                    ElementsAre(u"<" + Msg(10376) + u">", u"Name of Z", u"Name of A"));
        EXPECT_THAT(EntriesOf(page, kNCFKinds), ElementsAre(u"<" + Msg(10029) + u">", Msg(10316)));
        EXPECT_THAT(EntriesOf(page, kFOCKinds), ElementsAre(u"<" + Msg(10375) + u">", Msg(10328)));
        for (const int id : {kCatalogues, kNCFKinds, kFOCKinds})
            EXPECT_EQ(Control<QComboBox>(page, id)->currentIndex(), 0);
    });
}

TEST_F(Administration, SendsTheGeneralSettings) {
    Write(SupportFolder() / "GeneralSettings.xml", "<gs/>");
    bool isWaiting = false;
    EXPECT_CALL(backend, SaveGS(TextIs(u"<gs/>"), _, testing::IsNull())).WillOnce([&] {
        isWaiting = QApplication::overrideCursor() != nullptr;
        return 1;
    });
    Open([this] { Click(Page(Admin), kSendGS); });
    EXPECT_TRUE(isWaiting);
    EXPECT_EQ(log.Lines(), Lines{Done(10373)});
}

TEST_F(Administration, SendsTheChosenKindsOrAll) {
    RegisterSomeOfEach();
    {
        const InSequence order;
        ExpectSending(4, u"B", 0);
        for (const char16_t* id : {u"A", u"B", u"C"})
            ExpectSending(4, id, 0);
        ExpectSending(5, u"C", 0);
        for (const char16_t* id : {u"A", u"B", u"C"})
            ExpectSending(5, id, 0);
    }
    Open([this] {
        const QWidget* const page = Page(Admin);
        Choose(page, kNCFKinds, 2);
        Click(page, kSendNCF);
        Choose(page, kNCFKinds, 0);
        Click(page, kSendNCF);
        Choose(page, kFOCKinds, 3);
        Click(page, kSendFOC);
        Choose(page, kFOCKinds, 0);
        Click(page, kSendFOC);
    });
    EXPECT_EQ(std::ranges::count(log.Lines(), NotDone(10713)), 4);
}

TEST_F(Administration, SendsTheChosenCatalogueOrAll) {
    RegisterSomeOfEach(); // the catalogues are empty
    const auto sent = [](const char16_t* name) {
        return WorkspaceLines::Line{1, Msg(10714) + u" Name of " + name};
    };
    Open([this] {
        const QWidget* const page = Page(Admin);
        Choose(page, kCatalogues, 2);
        Click(page, kSendCatalogues);
        Choose(page, kCatalogues, 0);
        Click(page, kSendCatalogues);
    });
    EXPECT_EQ(log.Lines(), (Lines{sent(u"B"), sent(u"A"), sent(u"B"), sent(u"C")}));
}

TEST_F(Administration, WithoutAChoiceAButtonDoesNothing) {
    RegisterSomeOfEach();
    Open([this] {
        const QWidget* const page = Page(Admin);
        for (const int id : {kCatalogues, kNCFKinds, kFOCKinds})
            Choose(page, id, -1);
        for (const int id : {kSendCatalogues, kSendNCF, kSendFOC})
            Click(page, id);
    });
    EXPECT_EQ(log.Lines(), Lines{});
}
