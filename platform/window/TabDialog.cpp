// SPDX-License-Identifier: MIT
#include "platform/window/TabDialog.h"

#include "platform/window/DialogWindow.h"

#include <QTabWidget>
#include <algorithm>

using Platform::DialogWindow;

namespace {

bool Holds(DialogWindow& window, const DialogWindow* page) {
    const std::vector<DialogWindow::Page>& pages = window.Pages();
    return std::any_of(pages.begin(), pages.end(),
                       [page](const DialogWindow::Page& held) { return held.window == page; });
}

} // namespace

void CAcUiTabMainDialog::AddTab(int index, CAcUiTabChildDialog& page, const CString& caption) {
    DialogWindow* const child = m_window ? DialogWindow::For(page) : nullptr;
    if (child)
        m_window->InsertPage(index, *child, caption);
}

void CAcUiTabMainDialog::RemoveTab(CAcUiTabChildDialog& page) {
    DialogWindow* const child = DialogWindow::Of(page);
    if (m_window && child)
        m_window->RemovePage(*child);
}

bool CAcUiTabMainDialog::HasTab(const CAcUiTabChildDialog& page) const {
    const DialogWindow* const child = DialogWindow::Of(page);
    return m_window && child && Holds(*m_window, child);
}

int CAcUiTabMainDialog::TabCount() const {
    return m_window ? static_cast<int>(m_window->Pages().size()) : 0;
}

CString CAcUiTabMainDialog::TabCaption(int index) const {
    return index >= 0 && index < TabCount() ? m_window->Pages()[index].caption : CString();
}

int CAcUiTabMainDialog::SelectedTab() const {
    const auto* const tabs = m_window ? m_window->FindWidget<QTabWidget>(m_tabControlId) : nullptr;
    return tabs ? tabs->currentIndex() : -1;
}

void CAcUiTabMainDialog::SelectTab(int index) {
    if (auto* const tabs = m_window ? m_window->FindWidget<QTabWidget>(m_tabControlId) : nullptr)
        tabs->setCurrentIndex(index);
}
