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
#include <QTabBar>
#include <QTabWidget>
#include <algorithm>
#include <utility>

namespace Platform {
namespace {

// A drop-down list's height in its template is that of its open list; closed it has this one.
constexpr int kClosedListHeight = 12;
constexpr int kListLine = 8;

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

QRect PlaceOf(const ControlTemplate& look, const DialogUnits& units) {
    if (look.kind != ControlClass::DropDownList)
        return units.ToPixels(look.x, look.y, look.width, look.height);
    return units.ToPixels(look.x, look.y, look.width, kClosedListHeight);
}

} // namespace

DialogWindow::DialogWindow(Dialog& dialog) : QWidget(nullptr, Qt::Window), m_dialog(&dialog) {
    SetUsableWhileBusy(*this, dialog.m_isUsableWhileBusy);
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

// Layout.

void DialogWindow::TakeTemplateSize() {
    if (m_host)
        return Layout();
    m_templateSize = DialogUnits(font()).ToPixels(m_dialog->m_look.width, m_dialog->m_look.height);
    setMinimumSize(m_templateSize);
    resize(m_templateSize);
    Layout();
}

// A page grows with the tab control that it is in.
QSize DialogWindow::Growth(const DialogUnits& units) const {
    if (!m_host)
        return size() - m_templateSize;
    for (const Control& control : m_host->m_controls) {
        if (control.look->kind == ControlClass::TabControl)
            return control.widget->size() - PlaceOf(*control.look, units).size();
    }
    return {0, 0};
}

void DialogWindow::Layout() {
    const DialogUnits units(font());
    const QSize growth = Growth(units).expandedTo({0, 0});
    for (const Control& control : m_controls) {
        const ControlTemplate& look = *control.look;
        control.widget->setGeometry(Resized(PlaceOf(look, units), look.onResize, growth));
        if (auto* const dropDown = dynamic_cast<QComboBox*>(control.widget))
            dropDown->setMaxVisibleItems(
                std::max(3, (look.height - kClosedListHeight) / kListLine));
    }
}

void DialogWindow::resizeEvent(QResizeEvent*) {
    Layout();
}

void DialogWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange && m_dialog)
        TakeTemplateSize();
    QWidget::changeEvent(event);
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

void DialogWindow::PressDefault() {
    for (const Control& control : m_controls) {
        if (control.look->kind == ControlClass::DefaultPushButton)
            return static_cast<QPushButton*>(control.widget)->click();
    }
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    auto* const button = dynamic_cast<QPushButton*>(window()->focusWidget());
    if (!isPlain || event->isAutoRepeat())
        event->ignore();
    else if (isEnter && button)
        button->click();
    else if (m_host)
        event->ignore(); // on to the window that this page is in
    else if (isEnter)
        PressDefault();
    else if (event->key() == Qt::Key_Escape)
        close();
    else
        event->ignore();
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
    if (m_areKeysDue)
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

// Pages.

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

} // namespace Platform
