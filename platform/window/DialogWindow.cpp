// SPDX-License-Identifier: MIT
#include "platform/window/DialogWindow.h"

#include "platform/window/Application.h"
#include "platform/window/Busy.h"
#include "platform/window/InterruptionWatch.h"
#include "platform/window/ListControl.h"
#include "platform/window/QtText.h"
#include "platform/window/WindowSystem.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <utility>

namespace Platform {
namespace {

CString EscapedTitle(CStringView text) {
    // Qt takes "[*]" for the place of a mark for unsaved changes.
    CString escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, 3) == u"[*]") {
            escaped += u"[*][*]";
            i += 2;
        } else {
            escaped += text[i];
        }
    }
    return escaped;
}

} // namespace

DialogWindow::DialogWindow(Dialog& dialog) : QWidget(nullptr, Qt::Window), m_dialog(&dialog) {
    SetUsableWhileBusy(*this, dialog.m_isUsableWhileBusy);
    m_keysDue.setSingleShot(true);
    connect(&m_keysDue, &QTimer::timeout, this, [this] { AssignKeys(); });
    m_updateDue.setSingleShot(true);
    connect(&m_updateDue, &QTimer::timeout, this, [this] { Update(); });
    MakeControls();
    GroupRadioButtons();
    TakeTemplateSize();
}

DialogWindow::~DialogWindow() {
    if (m_loop)
        m_loop->exit();
    if (m_host)
        m_host->RemovePage(*this);
    // Pages belong to their own dialogs.
    for (const Page& page : m_pages) {
        page.window->m_host = nullptr;
        page.window->setParent(nullptr, Qt::Window);
    }
    if (m_dialog)
        m_dialog->m_window = nullptr;
}

void DialogWindow::MakeControls() {
    m_controls.reserve(m_dialog->m_look.controls.size());
    for (const ControlTemplate& look : m_dialog->m_look.controls) {
        Control control;
        control.look = &look;
        control.widget = MakeWidget(look, this);
        SetControlText(control, CString(TextOf(look.text)));
        ShowText(control);
        Connect(control);
        m_controls.push_back(std::move(control));
    }
}

void DialogWindow::Connect(const Control& control) {
    const int id = control.look->id;
    const auto clicked = [this, id] { Handle([id](Dialog& dialog) { dialog.OnClicked(id); }); };
    const auto changed = [this, id] { Handle([id](Dialog& dialog) { dialog.OnChanged(id); }); };
    if (auto* const button = dynamic_cast<QPushButton*>(control.widget))
        connect(button, &QPushButton::clicked, this, clicked);
    else if (auto* const box = dynamic_cast<QAbstractButton*>(control.widget))
        connect(box, &QAbstractButton::clicked, this, changed);
    else if (auto* const field = dynamic_cast<QLineEdit*>(control.widget))
        connect(field, &QLineEdit::textEdited, this, changed);
    else if (auto* const dropDown = dynamic_cast<QComboBox*>(control.widget))
        connect(dropDown, &QComboBox::activated, this, changed);
    else if (auto* const list = dynamic_cast<ListControl*>(control.widget))
        list->Model().onTicked = changed;
}

void DialogWindow::GroupRadioButtons() {
    QButtonGroup* group = nullptr;
    for (const Control& control : m_controls) {
        auto* const button = dynamic_cast<QRadioButton*>(control.widget);
        if (!button)
            group = nullptr;
        else if (!group)
            group = new QButtonGroup(this);
        if (button)
            group->addButton(button);
    }
}

Control* DialogWindow::Find(int id) {
    const auto found =
        std::find_if(m_controls.begin(), m_controls.end(),
                     [id](const Control& control) { return control.look->id == id; });
    return found == m_controls.end() ? nullptr : &*found;
}

void DialogWindow::SetTitle(const CString& text) {
    m_title = text;
    setWindowTitle(OneLine(EscapedTitle(text)));
}

// The key is found anew; until then the text is shown without.
void DialogWindow::TextChanged(Control& control) {
    control.mnemonic = {};
    ShowText(control);
    KeysChanged();
}

void DialogWindow::FocusFirst() {
    for (const Control& control : m_controls) {
        if (IsFocusable(control.look->kind) && control.widget->isEnabled() &&
            !control.widget->isHidden()) {
            control.widget->setFocus();
            return;
        }
    }
}

// What the user does.

DialogWindow& DialogWindow::Root() {
    return m_host ? *m_host : *this;
}

void DialogWindow::Handle(const std::function<void(Dialog&)>& handler) {
    DialogWindow& root = Root();
    if (!m_dialog || !TakesInput(root))
        return;
    const BusyScope busy(root);
    try {
        handler(*m_dialog);
    } catch (...) { // what a handler throws has nowhere to go from here
    }
}

// No handler of what the user does: others may work meanwhile.
void DialogWindow::Update() {
    try {
        if (m_dialog)
            m_dialog->OnUpdate();
    } catch (...) { // what could not be shown is shown with the next change
    }
}

void DialogWindow::PressDefault() {
    for (const Control& control : m_controls) {
        if (control.look->kind == ControlClass::DefaultPushButton)
            return static_cast<QPushButton*>(control.widget)->click();
    }
}

// From anywhere in the window, not only from inside of the tab control.
bool DialogWindow::TurnPage(const QKeyEvent& event) {
    const bool isForward = event.key() == Qt::Key_Tab;
    const int count = static_cast<int>(m_pages.size());
    if (count == 0 || !(event.modifiers() & Qt::ControlModifier) ||
        !(isForward || event.key() == Qt::Key_Backtab))
        return false;
    Tabs()->setCurrentIndex((Tabs()->currentIndex() + (isForward ? 1 : count - 1)) % count);
    return true;
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
    if (TurnPage(*event))
        return;
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    auto* const button = dynamic_cast<QPushButton*>(window()->focusWidget());
    const bool isKnown = isEnter || event->key() == Qt::Key_Escape;
    const bool isForButton = isEnter && button;
    // Ignored, it goes on to the window that this page is in.
    if (!isKnown || !isPlain || event->isAutoRepeat() || (m_host && !isForButton))
        event->ignore();
    else if (isForButton)
        button->click();
    else if (isEnter)
        PressDefault();
    else
        close();
}

void DialogWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    Handle([](Dialog& dialog) { dialog.OnCancel(); });
}

// Opening and ending.

DialogWindow* DialogWindow::For(Dialog& dialog) {
    if (dialog.m_window || !WhyNoWindows({}).empty())
        return dialog.m_window;
    NoticeTheEnd();
    dialog.m_window = new DialogWindow(dialog);
    dialog.m_window->Initialise();
    return dialog.m_window;
}

void DialogWindow::Initialise() {
    SetTitle(CString(TextOf(m_dialog->m_look.text)));
    bool chooseFocus = true;
    m_isOpening = true;
    try {
        chooseFocus = m_dialog->OnInitDialog();
    } catch (...) { // the window opens with what there is
    }
    m_isOpening = false;
    if (chooseFocus)
        FocusFirst();
    AssignKeys();
}

void DialogWindow::Open() {
    if (m_host)
        return;
    if (m_keysDue.isActive())
        AssignKeys();
    if (isVisible())
        raise();
    show();
    activateWindow();
}

int DialogWindow::RunModal() {
    static auto* const shown = new std::vector<QPointer<DialogWindow>>;
    if (std::exchange(m_hasEnded, false) || m_loop || m_host)
        return m_result;
    DialogWindow* const parent = shown->empty() ? nullptr : shown->back().data();
    setParent(parent, parent ? Qt::Dialog : Qt::Window);
    setWindowModality(parent ? Qt::WindowModal : Qt::NonModal);
    const OpenedWindow opened(*this);
    QEventLoop loop;
    m_loop = &loop;
    m_result = kIdCancel;
    shown->push_back(this);
    Open();
    const QPointer<DialogWindow> self(this);
    {
        const InterruptionWatch watch(*this);
        loop.exec();
    }
    shown->pop_back();
    if (!self)
        return kIdCancel;
    m_loop = nullptr;
    hide();
    setParent(nullptr, Qt::Window);
    return m_result;
}

void DialogWindow::End(int result) {
    if (m_host)
        return;
    m_result = result;
    hide();
    m_hasEnded = m_isOpening;
    if (m_loop)
        m_loop->exit();
}

void DialogWindow::Destroy() {
    m_dialog = nullptr;
    hide();
    if (IsWorking(Root()) || m_loop)
        deleteLater();
    else
        delete this;
}

} // namespace Platform
