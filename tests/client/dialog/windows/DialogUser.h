// SPDX-License-Identifier: MIT
// The configuration dialog on a real window, and a user who looks at it and clicks.
#pragma once

#include "client/dialog/DlgNetworkRepositoryConfiguration.h"
#include "client/dialog/KindsTest.h"
#include "client/manager/LocalCatalogues.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <functional>

inline CString FromQt(const QString& text) {
    return text.toStdU16String();
}

class DialogUser : public KindsTest {
protected:
    enum Tab { GS, Catalogues, FOC, NCF, Admin };

    DialogUser();

    // Opens the dialog, lets the user do this, and closes it when the user did not.  Returns
    // the dialog's result.
    int Open(const std::function<void()>& use);

    // The dialog is the one that is open.
    static QWidget* Window();
    static QWidget* WindowTitled(const CString& title);
    QTabWidget* Tabs() const;
    std::vector<CString> TabCaptions() const;
    // Brings the page to the front.
    QWidget* Page(int tab) const;

    template<class Widget>
    static Widget* Control(const QWidget* window, int id) {
        return window->findChild<Widget*>(QString::number(id));
    }
    // Without the mark of its key.
    static CString TextOf(const QWidget* window, int id);
    static CString ToolTipOf(const QWidget* window, int id);
    static CString NameOf(const QWidget* window, int id);
    static void Click(const QWidget* window, int id);
    static void Choose(const QWidget* window, int id, int entry);

    static std::vector<CString> RowsOf(const QTreeView* list);
    static std::vector<int> TicksOf(const QTreeView* list);
    // As the user does it with the keys.
    static void Tick(QTreeView* list, int row);

    // Answers of the backend, whenever it is asked.
    int hasConnectionParameters = 1;
    int isAdmin = 0;
    int isAccessible = 1;

    // Kinds and catalogues whose pages have something to show.
    void RegisterSomeOfEach();
};
