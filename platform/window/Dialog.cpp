// SPDX-License-Identifier: MIT
#include "platform/window/Dialog.h"

#include "platform/window/Application.h"
#include "platform/window/Busy.h"
#include "platform/window/DialogWindow.h"
#include "platform/window/ListControl.h"
#include "platform/window/QtText.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QProgressBar>
#include <algorithm>
#include <limits>

namespace Platform {
namespace {

// A control's part of a dialog that may have no window, or no such control.
template<class Widget, class Action>
void With(DialogWindow* window, int id, Action&& action) {
    Widget* const widget = window ? window->FindWidget<Widget>(id) : nullptr;
    if (widget)
        action(*widget);
}

Control* Find(DialogWindow* window, int id) {
    return window ? window->Find(id) : nullptr;
}

} // namespace

Dialog::Dialog(const DialogTemplate& look) : m_look(look) {}

Dialog::~Dialog() {
    // Qt's own objects may be gone by then.
    if (m_window && !IsProcessEnding())
        m_window->Destroy();
}

void Dialog::Create() {
    DialogWindow::For(*this);
}

void Dialog::Show() {
    if (DialogWindow* const window = DialogWindow::For(*this))
        window->Open();
}

void Dialog::Hide() {
    if (m_window)
        m_window->hide();
}

bool Dialog::IsShown() const {
    return m_window && m_window->isVisible();
}

int Dialog::DoModal() {
    DialogWindow* const window = DialogWindow::For(*this);
    return window ? window->RunModal() : kIdCancel;
}

void Dialog::EndDialog(int result) {
    if (m_window)
        m_window->End(result);
}

void Dialog::SetUsableWhileBusy(bool isUsable) {
    m_isUsableWhileBusy = isUsable;
}

void Dialog::UpdateSoon() {
    if (m_window)
        m_window->UpdateSoon();
}

void Dialog::SetTitle(const CString& text) {
    if (m_window)
        m_window->SetTitle(text);
}

CString Dialog::Title() const {
    return m_window ? m_window->Title() : CString(TextOf(m_look.text));
}

void Dialog::SetText(int id, const CString& text) {
    if (Control* const control = Find(m_window, id)) {
        SetControlText(*control, text);
        m_window->TextChanged(*control);
    }
}

CString Dialog::Text(int id) const {
    const Control* const control = Find(m_window, id);
    return control ? TextOf(*control) : CString();
}

void Dialog::SetToolTip(int id, const CString& text) {
    if (Control* const control = Find(m_window, id)) {
        control->toolTip = text;
        m_window->KeysChanged();
    }
}

void Dialog::SetAccessibleName(int id, const CString& text) {
    if (Control* const control = Find(m_window, id)) {
        control->accessibleName = text;
        m_window->KeysChanged();
    }
}

void Dialog::SetIcon(int id, const char16_t* resource) {
    if (Control* const control = Find(m_window, id)) {
        ShowIcon(*control, resource);
        m_window->KeysChanged();
    }
}

void Dialog::Enable(int id, bool isEnabled) {
    With<QWidget>(m_window, id, [isEnabled](QWidget& widget) { widget.setEnabled(isEnabled); });
}

bool Dialog::IsEnabled(int id) const {
    bool isEnabled = false;
    With<QWidget>(m_window, id, [&](const QWidget& widget) {
        isEnabled = !widget.testAttribute(Qt::WA_ForceDisabled);
    });
    return isEnabled;
}

void Dialog::SetVisible(int id, bool isVisible) {
    With<QWidget>(m_window, id, [isVisible](QWidget& widget) { widget.setVisible(isVisible); });
}

void Dialog::SetFocus(int id) {
    With<QWidget>(m_window, id, [](QWidget& widget) { widget.setFocus(); });
}

void Dialog::SetChecked(int id, bool isChecked) {
    With<QAbstractButton>(m_window, id,
                          [isChecked](QAbstractButton& button) { button.setChecked(isChecked); });
}

bool Dialog::IsChecked(int id) const {
    bool isChecked = false;
    With<QAbstractButton>(m_window, id, [&isChecked](const QAbstractButton& button) {
        isChecked = button.isChecked();
    });
    return isChecked;
}

void Dialog::SetRange(int id, int from, int to) {
    // An empty range would make the bar move to and fro.
    With<QProgressBar>(m_window, id, [from, to](QProgressBar& bar) {
        const int last = std::numeric_limits<int>::max() - 1;
        const int begin = std::min(from, last);
        bar.setRange(begin, std::max(to, begin + 1));
    });
}

void Dialog::SetPosition(int id, int position) {
    With<QProgressBar>(m_window, id, [position](QProgressBar& bar) {
        bar.setValue(std::clamp(position, bar.minimum(), bar.maximum()));
    });
}

ListView Dialog::List(int id) const {
    return ListView(m_window ? m_window->FindWidget<ListControl>(id) : nullptr);
}

DropDownList Dialog::DropDown(int id) const {
    return DropDownList(m_window ? m_window->FindWidget<QComboBox>(id) : nullptr);
}

void Dialog::OnClicked(int id) {
    if (id == kIdOk || id == kIdCancel)
        EndDialog(id);
}

} // namespace Platform
