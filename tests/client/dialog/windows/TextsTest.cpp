// SPDX-License-Identifier: MIT
// What the windows say, in both languages, and that it fits where it stands.
#include "client/dialog/windows/DialogUser.h"

#include "platform/text/Numbers.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QPushButton>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <chrono>

using namespace Repository;

namespace {

class Texts : public DialogUser, public testing::WithParamInterface<const char*> {
protected:
    Texts() {
        workstation.Set("ZEBX_LANGUAGE", GetParam());
        isAdmin = 1;
        RegisterBuiltInKinds();
        DeclareCatalogues(workstation, {Declared(u"A")});
    }

    static CString HeaderOf(const QWidget* page, int id) {
        const auto* const model = Control<QTreeView>(page, id)->model();
        return FromQt(model->headerData(0, Qt::Horizontal).toString());
    }
    // The three pages with a list say the same of their buttons.
    void ExpectListPage(int tab, int list, int msgColumn, int msgGroup, int msgName) const {
        const QWidget* const page = Page(tab);
        EXPECT_EQ(TextOf(page, 110), Msg(msgGroup));
        EXPECT_EQ(TextOf(page, 114), Msg(4411));
        EXPECT_EQ(TextOf(page, 115), Msg(4004));
        EXPECT_NE(ToolTipOf(page, 116).find(Msg(7368)), CString::npos);
        EXPECT_NE(ToolTipOf(page, 117).find(Msg(7369)), CString::npos);
        EXPECT_EQ(NameOf(page, 116), Msg(7368));
        EXPECT_EQ(NameOf(page, 117), Msg(7369));
        EXPECT_FALSE(Control<QPushButton>(page, 116)->icon().isNull());
        EXPECT_FALSE(Control<QPushButton>(page, 117)->icon().isNull());
        EXPECT_EQ(Control<QPushButton>(page, 116)->iconSize(), QSize(16, 16));
        EXPECT_EQ(HeaderOf(page, list), Msg(msgColumn));
        EXPECT_EQ(NameOf(page, list), Msg(msgName));
    }

    static int WidthOf(const QWidget* widget, const CString& text) {
        return widget->fontMetrics().horizontalAdvance(
            QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
    }
    static void ExpectRoom(const QWidget* widget, const CString& text, int room) {
        EXPECT_LE(WidthOf(widget, text), room)
            << widget->objectName().toStdString() << ' ' << testing::PrintToString(text);
    }
    // Every text that has to fit a place of its own below this widget.
    static int ExpectTextsFit(const QWidget* parent) {
        int texts = 0;
        for (const auto* button : parent->findChildren<QPushButton*>()) {
            constexpr int kFrame = 4; // on each side
            ExpectRoom(button, TextOf(button->parentWidget(), button->objectName().toInt()),
                       button->width() - 2 * kFrame);
            ++texts;
        }
        for (const auto* group : parent->findChildren<QGroupBox*>()) {
            constexpr int kIndent = 10;
            ExpectRoom(group, FromQt(group->title().remove(QLatin1Char('&'))),
                       group->width() - 2 * kIndent);
            ++texts;
        }
        for (const auto* list : parent->findChildren<QComboBox*>()) {
            QStyleOptionComboBox option;
            option.initFrom(list);
            const QRect field = list->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                              QStyle::SC_ComboBoxEditField, list);
            for (int entry = 0; entry < list->count(); ++entry, ++texts)
                ExpectRoom(list, FromQt(list->itemText(entry)), field.width());
        }
        for (const auto* list : parent->findChildren<QTreeView*>()) {
            for (int row = 0; row < list->model()->rowCount(); ++row, ++texts)
                ExpectRoom(list, FromQt(list->model()->index(row, 0).data().toString()),
                           list->columnWidth(0) - 30);
            ExpectRoom(list->header(), HeaderOf(list->parentWidget(), list->objectName().toInt()),
                       list->columnWidth(0) - 8);
        }
        return texts;
    }
    void ExpectEverythingFits() const {
        int texts = 0;
        for (const Tab tab : {GS, Catalogues, FOC, NCF, Admin})
            texts += ExpectTextsFit(Page(tab));
        EXPECT_GE(texts, 37); // of the pages
        texts = ExpectTextsFit(Window());
        EXPECT_GE(texts, 40);
        const QTabBar* const bar = Tabs()->tabBar();
        EXPECT_LE(bar->sizeHint().width(), Tabs()->width());
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(InBothLanguages, Texts, testing::Values("en", "hr"),
                         [](const auto& language) { return std::string(language.param); });

TEST_P(Texts, OfTheMainDialogAreTheMessageTables) {
    Open([this] {
        EXPECT_EQ(FromQt(Window()->windowTitle()), Msg(10383));
        EXPECT_EQ(TextOf(Window(), 100), Msg(10381));
        EXPECT_EQ(TextOf(Window(), 1), Msg(235));
        EXPECT_EQ(TextOf(Window(), 111), Msg(10382));
        EXPECT_EQ(TabCaptions(),
                  (std::vector<CString>{Msg(381), Msg(350), Msg(249), Msg(10379), Msg(10380)}));
    });
}

TEST_P(Texts, OfThePagesAreTheMessageTables) {
    Open([this] {
        ExpectListPage(Catalogues, 112, 350, 2424, 350);
        ExpectListPage(NCF, 113, 10368, 10368, 10379);
        ExpectListPage(FOC, 113, 10368, 10368, 249);
        EXPECT_EQ(TextOf(Page(GS), 110), Msg(381));
        EXPECT_EQ(TextOf(Page(GS), 115), Msg(4004));
    });
}

TEST_P(Texts, OfTheAdministrationAreTheMessageTables) {
    Open([this] {
        const QWidget* const page = Page(Admin);
        EXPECT_EQ(TextOf(page, 110), Msg(10377));
        EXPECT_EQ(TextOf(page, 103), Msg(381));
        EXPECT_EQ(TextOf(page, 104), Msg(2424));
        EXPECT_EQ(TextOf(page, 105), Msg(10379));
        EXPECT_EQ(TextOf(page, 107), Msg(10378));
        EXPECT_EQ(NameOf(page, 106), Msg(2424));
        EXPECT_EQ(NameOf(page, 108), Msg(10379));
        EXPECT_EQ(NameOf(page, 109), Msg(10378));
    });
}

TEST_P(Texts, AllFitTheirControls) {
    Open([this] { ExpectEverythingFits(); });
}

TEST_P(Texts, AllFitTheirControlsInOtherFontsAndSizes) {
    const QFont before = QApplication::font();
    for (const char* family : {"DejaVu Sans", "Nimbus Sans", "Noto Sans"}) {
        for (const int size : {8, 11, 16}) {
            SCOPED_TRACE(std::string(family) + ' ' + std::to_string(size));
            QApplication::setFont(QFont(QString::fromLatin1(family), size));
            Open([this] { ExpectEverythingFits(); });
        }
    }
    QApplication::setFont(before);
}

TEST_P(Texts, OfEveryNumberAreThere) {
    for (const int number :
         {235,   249,   350,   381,   2424,  4004,  4411,  7368,  7369,  8530,  10029, 10368,
          10369, 10371, 10372, 10373, 10374, 10375, 10376, 10377, 10378, 10379, 10380, 10381,
          10382, 10383, 10712, 10713, 10714, 10715, 22005, 22006, 22007, 22008, 22009})
        EXPECT_EQ(Msg(number).find(Platform::ToText(number)), CString::npos) << number;
}

namespace {

class ManyRows : public DialogUser {};

} // namespace

TEST_F(ManyRows, OpenWithinHalfASecond) {
    for (int number = 0; number < 500; ++number) {
        const CString id = u"KIND-" + Platform::ToText(number);
        RegisterNCF(id.c_str(), 10313);
        RegisterFOC(id.c_str(), 10321);
    }
    std::vector<CatalogueDeclaration> catalogues;
    for (int number = 0; number < 500; ++number)
        catalogues.push_back(Declared(u"CATALOGUE-" + Platform::ToText(number)));
    DeclareCatalogues(workstation, catalogues);
    VisibleCatalogues(); // the registry is there before the dialog
    isAdmin = 1;
    Open([] {}); // the window system's own start
    const auto begin = std::chrono::steady_clock::now();
    std::chrono::duration<double> opening{};
    Open([&] {
        for (const Tab tab : {GS, Catalogues, FOC, NCF, Admin})
            Page(tab)->grab(); // painted
        opening = std::chrono::steady_clock::now() - begin;
    });
    RecordProperty("seconds", std::to_string(opening.count()));
    EXPECT_LT(opening.count(), 0.5);
}
