// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QTabBar>
#include <gmock/gmock.h>
#include <map>

using namespace Platform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr ControlTemplate kControls[] = {
    {10, ControlClass::GroupBox, u"Group", 7, 7, 200, 60},
    {11, ControlClass::ListView, nullptr, 14, 20, 80, 40},
    {12, ControlClass::IconButton, u"ALL", 100, 20, 18, 16},
    {13, ControlClass::Label, u"Address:", 7, 70, 50, 8},
    {14, ControlClass::TextField, nullptr, 60, 70, 80, 12},
    {15, ControlClass::DropDownList, nullptr, 7, 85, 80, 60},
    {16, ControlClass::CheckBox, u"Make", 7, 100, 50, 10},
    {17, ControlClass::ReadOnlyText, u"read", 7, 115, 90, 30},
    {18, ControlClass::PushButton, u"Go", 100, 140, 50, 14},
    {kIdOk, ControlClass::DefaultPushButton, u"OK", 7, 150, 50, 14},
};
constexpr DialogTemplate kLook = {u"Keyboard", 210, 170, kControls};

constexpr ControlTemplate kMainControls[] = {
    {111, ControlClass::PushButton, u"Load all", 7, 7, 60, 14},
    {101, ControlClass::TabControl, nullptr, 7, 25, 200, 120},
    {100, ControlClass::PushButton, u"Connection", 7, 150, 60, 14},
    {kIdOk, ControlClass::DefaultPushButton, u"Close", 100, 150, 60, 14},
};
constexpr DialogTemplate kMainLook = {u"Main", 214, 170, kMainControls};
constexpr ControlTemplate kFirstControls[] = {
    {114, ControlClass::PushButton, u"Load selected", 7, 7, 60, 14},
    {115, ControlClass::PushButton, u"Load all", 70, 7, 60, 14},
};
constexpr DialogTemplate kFirstLook = {u"", 200, 100, kFirstControls};
constexpr ControlTemplate kSecondControls[] = {
    {214, ControlClass::PushButton, u"Load selected", 7, 7, 60, 14},
    {215, ControlClass::ListView, nullptr, 7, 25, 60, 40},
};
constexpr DialogTemplate kSecondLook = {u"", 200, 100, kSecondControls};

class Keyboard : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.onClicked = [](int) {};
        dialog.Show();
        window = WindowTitled("Keyboard");
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    std::vector<int> FocusedByTab(QWidget* in, int times) {
        std::vector<int> ids;
        for (int i = 0; i < times; ++i) {
            QTest::keyClick(in->windowHandle(), Qt::Key_Tab);
            ids.push_back(IdOf(QApplication::focusWidget()));
        }
        return ids;
    }
    static int IdOf(const QWidget* control) {
        while (control && control->objectName().toInt() == 0)
            control = control->parentWidget();
        return control ? control->objectName().toInt() : 0;
    }
    // The letter that its text underlines or its tool tip tells.
    static QChar KeyOf(QWidget* control) {
        QString text = control->property("text").toString();
        if (auto* const group = dynamic_cast<QGroupBox*>(control))
            text = group->title();
        const QString marked = QKeySequence::mnemonic(text).toString();
        const qsizetype told = control->toolTip().indexOf("(Alt+");
        if (told >= 0)
            return control->toolTip().at(told + 5);
        return marked.isEmpty() ? QChar() : marked.back();
    }
    SampleDialog dialog{kLook};
    QWidget* window = nullptr;
};

TEST_F(Keyboard, TheTabKeyGoesThroughAllControlsInTheTablesOrder) {
    EXPECT_EQ(IdOf(QApplication::focusWidget()), 11) << "the first one at the beginning";
    EXPECT_THAT(FocusedByTab(window, 8), ElementsAre(12, 14, 15, 16, 17, 18, kIdOk, 11));
}

TEST_F(Keyboard, TheTabKeyGoesThroughThePageWhereItsTabControlStands) {
    SampleTabDialog main(kMainLook, 101);
    SamplePage first(kFirstLook);
    SamplePage second(kSecondLook);
    main.Create();
    main.AddTab(0, second, u"Second");
    main.AddTab(0, first, u"First");
    main.SelectTab(0);
    main.Show();
    QWidget* const shown = WindowTitled("Main");
    ASSERT_TRUE(QTest::qWaitForWindowActive(shown));
    EXPECT_EQ(IdOf(QApplication::focusWidget()), 111);
    EXPECT_THAT(FocusedByTab(shown, 6), ElementsAre(101, 114, 115, 100, kIdOk, 111));
    EXPECT_EQ(IdOf(QApplication::focusWidget()), 111);
    main.SelectTab(1);
    EXPECT_THAT(FocusedByTab(shown, 6), ElementsAre(101, 214, 215, 100, kIdOk, 111));
}

TEST_F(Keyboard, EveryControlIsReachedByAKeyOfItsOwn) {
    std::map<QChar, int> owners;
    for (const int id : {10, 12, 13, 15, 16, 17, 18, kIdOk}) {
        const QChar key = KeyOf(ControlOf(window, id));
        EXPECT_FALSE(key.isNull()) << id;
        EXPECT_TRUE(owners.emplace(key, id).second) << id << " and " << owners[key];
    }
    EXPECT_EQ(KeyOf(ControlOf(window, 11)), KeyOf(ControlOf(window, 10))) << "its group's";
}

TEST_F(Keyboard, AKeyFocusesOrPressesItsControl) {
    const std::map<int, int> focused = {{10, 11}, {13, 14}, {15, 15}, {17, 17}};
    for (const auto& [told, reached] : focused) {
        ControlOf(window, 18)->setFocus();
        PressAlt(window, KeyOf(ControlOf(window, told)).toLatin1());
        EXPECT_EQ(IdOf(QApplication::focusWidget()), reached) << told;
    }
    PressAlt(window, KeyOf(ControlOf(window, 12)).toLatin1());
    EXPECT_THAT(dialog.clicked, ElementsAre(12));
    PressAlt(window, KeyOf(ControlOf(window, 18)).toLatin1());
    EXPECT_TRUE(QTest::qWaitFor([this] { return dialog.clicked.size() == 2; }));
    EXPECT_EQ(dialog.clicked.back(), 18);
}

TEST_F(Keyboard, KeysStayWhenATextIsSetAgain) {
    const QString before = ControlOf<QAbstractButton>(window, 18)->text();
    dialog.SetText(18, u"Go");
    QApplication::processEvents();
    EXPECT_EQ(ControlOf<QAbstractButton>(window, 18)->text(), before);
    dialog.SetText(18, u"Start");
    QApplication::processEvents();
    EXPECT_EQ(ControlOf<QAbstractButton>(window, 18)->text(), "&Start");
}

TEST_F(Keyboard, AToolTipKeepsItsTextAndTellsTheKey) {
    dialog.SetToolTip(12, u"Select <all>");
    QApplication::processEvents();
    EXPECT_TRUE(ControlOf(window, 12)->toolTip().startsWith("Select <all> (Alt+"))
        << ControlOf(window, 12)->toolTip().toStdString();
    dialog.SetToolTip(12, u"<b>bold</b>");
    QApplication::processEvents();
    EXPECT_TRUE(ControlOf(window, 12)->toolTip().contains("&lt;b&gt;")) << "not taken for HTML";
}

TEST_F(Keyboard, TheMainDialogItsTabsAndTheShownPageShareNoKey) {
    SampleTabDialog main(kMainLook, 101);
    SamplePage first(kFirstLook);
    SamplePage second(kSecondLook);
    main.Create();
    main.AddTab(0, first, u"Labels");
    main.AddTab(1, second, u"Load");
    main.Show();
    QWidget* const shown = WindowTitled("Main");
    QApplication::processEvents();
    std::set<QChar> common;
    for (const int id : {111, 100, kIdOk})
        EXPECT_TRUE(common.insert(KeyOf(ControlOf(shown, id))).second) << id;
    auto* const bar = shown->findChild<QTabBar*>();
    for (int tab = 0; tab < 2; ++tab)
        EXPECT_TRUE(
            common.insert(QKeySequence::mnemonic(bar->tabText(tab)).toString().back()).second);
    std::set<QChar> inFirst = common;
    for (const int id : {114, 115})
        EXPECT_TRUE(inFirst.insert(KeyOf(ControlOf(shown, id))).second) << id;
    std::set<QChar> inSecond = common;
    for (const int id : {214, 215})
        EXPECT_TRUE(inSecond.insert(KeyOf(ControlOf(shown, id))).second) << id;
    EXPECT_FALSE(common.contains(QChar()));
}

TEST_F(Keyboard, EnterPressesTheDefaultButtonFromEverywhereButAnotherButton) {
    for (const int id : {11, 14, 15, 16, 17}) {
        dialog.clicked.clear();
        dialog.SetFocus(id);
        QTest::keyClick(window->windowHandle(), Qt::Key_Return);
        EXPECT_THAT(dialog.clicked, ElementsAre(kIdOk)) << id;
    }
    for (const int id : {12, 18, kIdOk}) {
        dialog.clicked.clear();
        dialog.SetFocus(id);
        QTest::keyClick(window->windowHandle(), Qt::Key_Enter, Qt::KeypadModifier);
        EXPECT_THAT(dialog.clicked, ElementsAre(id));
    }
    dialog.Enable(kIdOk, false);
    dialog.SetFocus(14);
    dialog.clicked.clear();
    QTest::keyClick(window->windowHandle(), Qt::Key_Return);
    EXPECT_THAT(dialog.clicked, IsEmpty());
}

TEST_F(Keyboard, EscapeIsAClickOfCancelAlsoWithoutSuchAButton) {
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    EXPECT_THAT(dialog.clicked, ElementsAre(kIdCancel));
    EXPECT_TRUE(dialog.IsShown()) << "its handler left it open";
}

} // namespace
