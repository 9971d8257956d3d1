// SPDX-License-Identifier: MIT
#include "client/dialog/windows/DialogUser.h"

#include <QLabel>
#include <QProgressBar>
#include <gmock/gmock.h>

using namespace Repository;
using testing::_;

namespace {

class ProgressOfCatalogues : public DialogUser {
protected:
    ProgressOfCatalogues() {
        RegisterSomeOfEach();
        EXPECT_CALL(backend, GetChildCatalogItems(_, _, _, _)).WillRepeatedly([this] {
            ++row;
            onRow();
            return 1;
        });
    }
    static QWidget* Progress() { return WindowTitled(Msg(8530)); }
    static bool IsShown() { return Progress() && Progress()->isVisible(); }
    static CString Text() { return FromQt(Control<QLabel>(Progress(), 101)->text()); }
    static int Position() { return Control<QProgressBar>(Progress(), 102)->value(); }

    void LoadAll() const { Click(Page(Catalogues), 115); }

    int row = -1;                        // whose items are asked for
    std::function<void()> onRow = [] {}; // meanwhile
};

} // namespace

TEST_F(ProgressOfCatalogues, IsAWindowOfItsOwnWithTheCatalogueAndThePlaceInTheRows) {
    const CString names[] = {u"Name of A", u"Name of B", u"Name of C"};
    onRow = [&] {
        ASSERT_TRUE(IsShown());
        EXPECT_NE(Progress(), Window());
        EXPECT_EQ(Text(), Msg(350) + u": " + names[row]);
        EXPECT_EQ(Position(), row);
        EXPECT_EQ(Control<QProgressBar>(Progress(), 102)->minimum(), 0);
        EXPECT_EQ(Control<QProgressBar>(Progress(), 102)->maximum(), 3);
    };
    Open([this] {
        EXPECT_FALSE(IsShown());
        LoadAll();
        EXPECT_EQ(row, 2);
        EXPECT_FALSE(IsShown());
        QCoreApplication::processEvents(); // names follow a moment later
        EXPECT_EQ(NameOf(Progress(), 102), Msg(8530));
    });
}

TEST_F(ProgressOfCatalogues, StaysWhereTheLoadStoppedUntilTheUserClosesIt) {
    onRow = [this] { isAccessible = row < 1; };
    Open([this] {
        LoadAll();
        ASSERT_TRUE(IsShown());
        EXPECT_EQ(Text(), Msg(350) + u": Name of B");
        EXPECT_EQ(Position(), 2); // where the load noticed it
        QTest::keyClick(Progress(), Qt::Key_Escape);
        EXPECT_FALSE(IsShown());
        EXPECT_TRUE(Window()->isVisible());
    });
}

TEST_F(ProgressOfCatalogues, GoesWithTheDialog) {
    onRow = [this] { isAccessible = 0; };
    Open([this] {
        LoadAll();
        EXPECT_TRUE(IsShown());
    });
    EXPECT_FALSE(Progress());
}

TEST_F(ProgressOfCatalogues, ThatStayedIsTheNextLoadsAndGoesWithIt) {
    onRow = [this] { isAccessible = row != 0; };
    Open([this] {
        LoadAll();
        EXPECT_TRUE(IsShown());
        isAccessible = 1;
        LoadAll();
        EXPECT_EQ(row, 3);
        EXPECT_FALSE(IsShown());
    });
}

TEST_F(ProgressOfCatalogues, ClosedByTheUserMeanwhileDoesNotComeBackForThatLoad) {
    onRow = [this] {
        if (row % 3 == 0) {
            EXPECT_TRUE(IsShown());
            QTest::keyClick(Progress(), Qt::Key_Escape);
        }
        EXPECT_FALSE(IsShown());
    };
    Open([this] {
        LoadAll();
        LoadAll(); // shows it anew
        EXPECT_EQ(row, 5);
    });
}

TEST_F(ProgressOfCatalogues, HasRoomForTheLongestNameOfACatalogue) {
    const CString name = u"Katalog betonskih i poliesterskih cijevi za odvodnju oborinskih voda";
    CatalogueDeclaration declaration;
    declaration.reference = u"LONG";
    declaration.names = {{u"en", name}, {u"hr", name}};
    DeclareCatalogues(workstation, {declaration});
    for (const char* language : {"en", "hr"}) {
        workstation.Set("ZEBX_LANGUAGE", language);
        onRow = [] {
            const auto* const label = Control<QLabel>(Progress(), 101);
            EXPECT_LE(label->heightForWidth(label->width()), label->height());
        };
        Open([this] { LoadAll(); });
    }
    EXPECT_EQ(row, 1);
}
