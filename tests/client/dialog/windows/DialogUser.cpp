// SPDX-License-Identifier: MIT
#include "client/dialog/windows/DialogUser.h"

#include "platform/window/WindowSystem.h"

#include <QApplication>
#include <QGroupBox>
#include <QTimer>

using testing::ReturnPointee;

namespace {

QString Plain(QString text) {
    return text.replace(QStringLiteral("&&"), QStringLiteral("\n"))
        .remove(QLatin1Char('&'))
        .replace(QLatin1Char('\n'), QLatin1Char('&'));
}

} // namespace

DialogUser::DialogUser() {
    EXPECT_EQ(Platform::WhyNoWindows(u"en"), u"");
    EXPECT_CALL(backend, HasConnectionParameters())
        .WillRepeatedly(ReturnPointee(&hasConnectionParameters));
    EXPECT_CALL(backend, AmIAdmin()).WillRepeatedly(ReturnPointee(&isAdmin));
    EXPECT_CALL(backend, IsRepositoryAccessible()).WillRepeatedly(ReturnPointee(&isAccessible));
}

int DialogUser::Open(const std::function<void()>& use) {
    Repository::CDlgNetworkRepositoryConfiguration dialog(manager);
    QTimer::singleShot(0, [&] {
        use();
        if (dialog.IsShown())
            dialog.EndDialog(99);
    });
    return dialog.DoModal();
}

QWidget* DialogUser::Window() {
    return WindowTitled(Msg(10383));
}

QWidget* DialogUser::WindowTitled(const CString& title) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (FromQt(window->windowTitle()) == title)
            return window;
    return nullptr;
}

QTabWidget* DialogUser::Tabs() const {
    return Control<QTabWidget>(Window(), 101);
}

std::vector<CString> DialogUser::TabCaptions() const {
    std::vector<CString> captions;
    for (int tab = 0; tab < Tabs()->count(); ++tab)
        captions.push_back(FromQt(Plain(Tabs()->tabText(tab))));
    return captions;
}

QWidget* DialogUser::Page(int tab) const {
    Tabs()->setCurrentIndex(tab);
    return Tabs()->widget(tab);
}

CString DialogUser::TextOf(const QWidget* window, int id) {
    const auto* const widget = Control<QWidget>(window, id);
    if (const auto* const group = qobject_cast<const QGroupBox*>(widget))
        return FromQt(Plain(group->title()));
    return FromQt(Plain(qobject_cast<const QAbstractButton*>(widget)->text()));
}

CString DialogUser::ToolTipOf(const QWidget* window, int id) {
    return FromQt(Control<QWidget>(window, id)->toolTip());
}

CString DialogUser::NameOf(const QWidget* window, int id) {
    return FromQt(Control<QWidget>(window, id)->accessibleName());
}

void DialogUser::Click(const QWidget* window, int id) {
    QTest::mouseClick(Control<QWidget>(window, id), Qt::LeftButton);
}

void DialogUser::Choose(const QWidget* window, int id, int entry) {
    Control<QComboBox>(window, id)->setCurrentIndex(entry);
}

std::vector<CString> DialogUser::RowsOf(const QTreeView* list) {
    std::vector<CString> rows;
    for (int row = 0; row < list->model()->rowCount(); ++row)
        rows.push_back(FromQt(list->model()->index(row, 0).data().toString()));
    return rows;
}

std::vector<int> DialogUser::TicksOf(const QTreeView* list) {
    std::vector<int> ticks;
    for (int row = 0; row < list->model()->rowCount(); ++row)
        ticks.push_back(list->model()->index(row, 0).data(Qt::CheckStateRole).toInt());
    return ticks;
}

void DialogUser::Tick(QTreeView* list, int row) {
    list->setCurrentIndex(list->model()->index(row, 0));
    QTest::keyClick(list, Qt::Key_Space);
}

void DialogUser::RegisterSomeOfEach() {
    for (const char16_t* id : {u"A", u"B", u"C"}) {
        RegisterNCF(id, 10313);
        RegisterFOC(id, 10321);
    }
    DeclareCatalogues(workstation, {Declared(u"A"), Declared(u"B"), Declared(u"C")});
}
