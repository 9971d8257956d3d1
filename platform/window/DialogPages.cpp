// SPDX-License-Identifier: MIT
// The pages in a window's tab control.
#include "platform/window/DialogWindow.h"
#include "platform/window/QtText.h"

#include <QTabBar>
#include <QTabWidget>
#include <algorithm>

namespace Platform {

QTabWidget* DialogWindow::Tabs() {
    for (const Control& control : m_controls) {
        if (auto* const tabs = dynamic_cast<QTabWidget*>(control.widget))
            return tabs;
    }
    return nullptr;
}

void DialogWindow::InsertPage(int index, DialogWindow& page, const CString& caption) {
    QTabWidget* const tabs = Tabs();
    if (!tabs || page.m_host)
        return;
    const int count = static_cast<int>(m_pages.size());
    const int place = index < 0 || index > count ? count : index;
    page.m_host = this;
    page.setMinimumSize(0, 0);
    page.setAccessibleName(ToQt(caption));
    m_pages.insert(m_pages.begin() + place, {&page, caption});
    tabs->insertTab(place, &page, ToQt(WithMnemonic(caption, {})));
    page.Layout();
    OrderTabStops();
    KeysChanged();
}

void DialogWindow::RemovePage(DialogWindow& page) {
    const auto found = std::find_if(m_pages.begin(), m_pages.end(),
                                    [&page](const Page& held) { return held.window == &page; });
    if (found == m_pages.end())
        return;
    // A window that is hidden would keep the focus in a page that is gone.
    if (QWidget* const focus = focusWidget(); focus && page.isAncestorOf(focus))
        focus->clearFocus();
    Tabs()->removeTab(static_cast<int>(found - m_pages.begin()));
    m_pages.erase(found);
    page.m_host = nullptr;
    page.setParent(nullptr, Qt::Window);
    KeysChanged();
}

void DialogWindow::OrderTabStops() {
    QWidget* last = nullptr;
    const auto follow = [&last](QWidget* next) {
        if (last)
            setTabOrder(last, next);
        last = next;
    };
    for (const Control& control : m_controls) {
        if (auto* const tabs = dynamic_cast<QTabWidget*>(control.widget)) {
            follow(tabs->tabBar());
            for (const Page& page : m_pages) {
                for (const Control& inPage : page.window->m_controls)
                    follow(inPage.widget);
            }
        } else {
            follow(control.widget);
        }
    }
}

} // namespace Platform
