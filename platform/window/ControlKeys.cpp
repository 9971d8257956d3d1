// SPDX-License-Identifier: MIT
// Which control of a window gets which key and name, and how they are shown.
#include "platform/window/DialogWindow.h"
#include "platform/window/GroupFrame.h"
#include "platform/window/QtText.h"

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <map>
#include <optional>
#include <tuple>

namespace Platform {
namespace {

using Controls = std::vector<Control>;

bool CanHaveBuddy(ControlClass kind) {
    return IsTextless(kind);
}

// The label directly before a text-less control in the table is its label.
Control* LabelOf(Controls& controls, const Control& control) {
    const auto index = static_cast<std::size_t>(&control - controls.data());
    if (index == 0 || !CanHaveBuddy(control.look->kind))
        return nullptr;
    Control& before = controls[index - 1];
    return before.look->kind == ControlClass::Label ? &before : nullptr;
}

Control* BuddyOf(Controls& controls, const Control& label) {
    const auto index = static_cast<std::size_t>(&label - controls.data());
    if (label.look->kind != ControlClass::Label || index + 1 == controls.size())
        return nullptr;
    Control& next = controls[index + 1];
    return CanHaveBuddy(next.look->kind) ? &next : nullptr;
}

bool IsInside(const ControlTemplate& inner, const ControlTemplate& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x < outer.x + outer.width &&
           inner.y < outer.y + outer.height;
}

Control* FirstInside(Controls& controls, const Control& group) {
    for (Control& control : controls) {
        if (IsFocusable(control.look->kind) && IsInside(*control.look, *group.look))
            return &control;
    }
    return nullptr;
}

// The innermost group box around it.
const Control* GroupOf(const Controls& controls, const Control& control) {
    const Control* innermost = nullptr;
    for (const Control& group : controls) {
        if (group.look->kind == ControlClass::GroupBox && IsInside(*control.look, *group.look) &&
            (!innermost || IsInside(*group.look, *innermost->look)))
            innermost = &group;
    }
    return innermost;
}

CString NameOf(Controls& controls, const Control& control) {
    if (!control.accessibleName.empty())
        return control.accessibleName;
    if (control.look->kind == ControlClass::IconButton)
        return control.toolTip.empty() ? control.text : control.toolTip;
    if (const Control* const label = LabelOf(controls, control))
        return label->text;
    if (!IsTextless(control.look->kind) && control.look->kind != ControlClass::ProgressBar)
        return {};
    const Control* const group = GroupOf(controls, control);
    return group ? group->text : control.toolTip;
}

// One key that is to be given: to a control, or to the caption of a tab.
struct Wish {
    Control* control = nullptr;
    int tab = -1;
    CString text;
};

// A group whose first control has nothing to show a key in gives it its own.
bool LendsItsKey(Controls& controls, const Control& group) {
    const Control* const first = FirstInside(controls, group);
    return first && IsTextless(first->look->kind) && !LabelOf(controls, *first);
}

bool BorrowsItsKey(Controls& controls, const Control& control) {
    const Control* const group = GroupOf(controls, control);
    return group && FirstInside(controls, *group) == &control && LendsItsKey(controls, *group);
}

std::optional<Wish> WishOf(Controls& controls, Control& control) {
    const ControlClass kind = control.look->kind;
    if (kind == ControlClass::Label && BuddyOf(controls, control))
        return Wish{&control, -1, control.text};
    if (kind == ControlClass::GroupBox && LendsItsKey(controls, control))
        return Wish{&control, -1, control.text};
    if (!IsFocusable(kind) || kind == ControlClass::TabControl || LabelOf(controls, control) ||
        BorrowsItsKey(controls, control))
        return {};
    const bool hasName = IsTextless(kind) || kind == ControlClass::IconButton;
    return Wish{&control, -1, hasName ? NameOf(controls, control) : control.text};
}

std::vector<Wish> WishesOf(DialogWindow& window) {
    Controls& controls = window.Controls();
    std::vector<Wish> wishes;
    std::vector<Wish> last;
    for (Control& control : controls) {
        if (std::optional<Wish> wish = WishOf(controls, control))
            wishes.push_back(*wish);
        else if (control.look->kind == ControlClass::GroupBox && FirstInside(controls, control))
            last.push_back({&control, -1, control.text});
        if (control.look->kind == ControlClass::TabControl) {
            for (std::size_t i = 0; i < window.Pages().size(); ++i)
                wishes.push_back({nullptr, static_cast<int>(i), window.Pages()[i].caption});
        }
    }
    wishes.insert(wishes.end(), last.begin(), last.end());
    return wishes;
}

// Showing them.

Qt::Key QtKey(char16_t key) {
    return static_cast<Qt::Key>(key >= u'a' ? key - u'a' + Qt::Key_A : key - u'0' + Qt::Key_0);
}

QKeySequence Sequence(const Mnemonic& mnemonic) {
    return QKeySequence(QKeyCombination(Qt::AltModifier, QtKey(mnemonic.key)));
}

void Press(QWidget& widget) {
    widget.setFocus(Qt::ShortcutFocusReason);
    if (auto* const button = dynamic_cast<QAbstractButton*>(&widget))
        button->click();
}

bool ShowsItsKey(const Control& control) {
    return control.mnemonic.IsInText() && !IsTextless(control.look->kind) &&
           control.look->kind != ControlClass::IconButton;
}

// The shortcut stays, whatever its key: this may run while it is being worked off.
void SetHiddenKey(Control& control, QWidget* pressed) {
    const bool isHidden = control.mnemonic.key && !ShowsItsKey(control);
    const QKeySequence keys = isHidden ? Sequence(control.mnemonic) : QKeySequence();
    control.hiddenKey = keys.toString(QKeySequence::NativeText);
    if (isHidden && !control.shortcut) {
        control.shortcut = new QShortcut(control.widget);
        QObject::connect(control.shortcut, &QShortcut::activated, pressed,
                         [pressed] { Press(*pressed); });
    }
    if (control.shortcut)
        control.shortcut->setKey(keys);
}

void ShowToolTip(Controls& controls, const Control& control) {
    QString tip = ToQt(control.toolTip);
    if (!control.hiddenKey.isEmpty()) {
        if (tip.isEmpty() && control.look->kind != ControlClass::Label)
            tip = ToQt(NameOf(controls, control));
        tip += (tip.isEmpty() ? QStringLiteral("(%1)") : QStringLiteral(" (%1)"))
                   .arg(control.hiddenKey);
    }
    control.widget->setToolTip(PlainToolTip(tip));
}

// The control that a key leads to: a label's and a group's is another one.
QWidget* TargetOf(Controls& controls, Control& control) {
    if (Control* const buddy = BuddyOf(controls, control))
        return buddy->widget;
    Control* const inside =
        control.look->kind == ControlClass::GroupBox ? FirstInside(controls, control) : nullptr;
    return inside ? inside->widget : control.widget;
}

void ShowKey(Controls& controls, Control& control) {
    Control* const buddy = BuddyOf(controls, control);
    QWidget* const target = TargetOf(controls, control);
    control.hasBuddy = buddy != nullptr;
    if (buddy)
        static_cast<QLabel*>(control.widget)->setBuddy(buddy->widget);
    if (auto* const group = dynamic_cast<GroupFrame*>(control.widget))
        group->onKey = [target] { target->setFocus(Qt::ShortcutFocusReason); };
    ShowText(control);
    SetHiddenKey(control, target);
}

void ShowNamesAndToolTips(Controls& controls) {
    for (Control& control : controls) {
        if (BorrowsItsKey(controls, control)) {
            const Mnemonic& lent = GroupOf(controls, control)->mnemonic;
            control.hiddenKey =
                lent.key ? Sequence(lent).toString(QKeySequence::NativeText) : QString();
        }
        ShowToolTip(controls, control);
        const CString name = NameOf(controls, control);
        control.widget->setAccessibleName(ToQt(name));
        control.widget->setAccessibleDescription(ToQt(control.toolTip));
    }
}

// A window and its wishes, each with the key that it got.
struct Keys {
    DialogWindow* window;
    std::vector<Wish> wishes;
    std::vector<Mnemonic> given;
};

bool IsShownInText(const Wish& wish) {
    return !wish.control || (!IsTextless(wish.control->look->kind) &&
                             wish.control->look->kind != ControlClass::IconButton);
}

// What is shown in the texts of the window and all of its pages is chosen together, because a
// page gets only what the window leaves.  The same text has the same key on each page.
void GiveShownKeys(std::vector<Keys>& windows, std::set<char16_t>& taken) {
    using Place = std::tuple<bool, CString, int>; // on a page, text, which of that text there
    std::map<Place, std::size_t> places;
    std::vector<CString> texts;
    const auto forEach = [&](const auto& act) {
        for (Keys& keys : windows) {
            std::map<CString, int> count;
            for (std::size_t i = 0; i < keys.wishes.size(); ++i) {
                const Wish& wish = keys.wishes[i];
                if (IsShownInText(wish))
                    act(Place(&keys != windows.data(), wish.text, count[wish.text]++), wish.text,
                        keys.given[i]);
            }
        }
    };
    forEach([&](const Place& place, const CString& text, const Mnemonic&) {
        if (places.try_emplace(place, texts.size()).second)
            texts.push_back(text);
    });
    const std::vector<Mnemonic> mnemonics = AssignMnemonics(texts, taken);
    forEach([&](const Place& place, const CString&, Mnemonic& given) {
        given = mnemonics[places.at(place)];
    });
}

void GiveHiddenKeys(Keys& keys, std::set<char16_t>& taken) {
    std::vector<CString> texts;
    for (const Wish& wish : keys.wishes)
        if (!IsShownInText(wish))
            texts.push_back(wish.text);
    const std::vector<Mnemonic> mnemonics = AssignMnemonics(texts, taken);
    auto next = mnemonics.begin();
    for (std::size_t i = 0; i < keys.wishes.size(); ++i)
        if (!IsShownInText(keys.wishes[i]))
            keys.given[i] = *next++;
}

void ShowKeys(const Keys& keys) {
    Controls& controls = keys.window->Controls();
    for (std::size_t i = 0; i < keys.wishes.size(); ++i) {
        const Wish& wish = keys.wishes[i];
        if (wish.control) {
            wish.control->mnemonic = keys.given[i];
            ShowKey(controls, *wish.control);
        } else {
            keys.window->Tabs()->setTabText(wish.tab, ToQt(WithMnemonic(wish.text, keys.given[i])));
        }
    }
    ShowNamesAndToolTips(controls);
}

Keys KeysOf(DialogWindow& window) {
    Keys keys{&window, WishesOf(window), {}};
    keys.given.resize(keys.wishes.size());
    return keys;
}

} // namespace

void DialogWindow::AssignKeys() {
    if (m_host)
        return m_host->AssignKeys();
    m_keysDue.stop();
    std::vector<Keys> windows = {KeysOf(*this)};
    for (const Page& page : m_pages)
        windows.push_back(KeysOf(*page.window));
    std::set<char16_t> taken;
    GiveShownKeys(windows, taken);
    GiveHiddenKeys(windows.front(), taken);
    for (Keys& keys : windows) {
        std::set<char16_t> takenInPage = taken;
        if (&keys != windows.data())
            GiveHiddenKeys(keys, takenInPage);
        ShowKeys(keys);
    }
}

void DialogWindow::KeysChanged() {
    if (m_host)
        return m_host->KeysChanged();
    m_keysDue.start();
}

} // namespace Platform
