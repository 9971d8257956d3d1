// SPDX-License-Identifier: MIT
#include "platform/window/Control.h"

#include "platform/window/GroupFrame.h"
#include "platform/window/Icons.h"
#include "platform/window/ListControl.h"
#include "platform/window/QtText.h"
#include "platform/window/TextLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>

namespace Platform {
namespace {

constexpr QSize kIconSize(16, 16);

QWidget* MakeButton(bool isDefault, QWidget* parent) {
    auto* const button = new QPushButton(parent);
    button->setAutoDefault(false);
    button->setDefault(isDefault);
    button->setIconSize(kIconSize);
    return button;
}

QWidget* MakeReadOnlyText(QWidget* parent) {
    auto* const text = new QPlainTextEdit(parent);
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return text;
}

QWidget* MakeProgressBar(QWidget* parent) {
    auto* const bar = new QProgressBar(parent);
    bar->setTextVisible(false);
    return bar;
}

QWidget* MakeTabs(QWidget* parent) {
    auto* const tabs = new QTabWidget(parent);
    tabs->setUsesScrollButtons(true);
    tabs->setElideMode(Qt::ElideNone);
    // The bar alone is a stop of the tab key.
    tabs->setFocusPolicy(Qt::NoFocus);
    tabs->tabBar()->setFocusPolicy(Qt::TabFocus);
    return tabs;
}

QWidget* MakeOfClass(ControlClass kind, QWidget* parent) {
    switch (kind) {
    case ControlClass::PushButton:
    case ControlClass::IconButton:
        return MakeButton(false, parent);
    case ControlClass::DefaultPushButton:
        return MakeButton(true, parent);
    case ControlClass::GroupBox:
        return new GroupFrame(parent);
    case ControlClass::TabControl:
        return MakeTabs(parent);
    case ControlClass::ListView:
        return new ListControl(parent);
    case ControlClass::DropDownList:
        return new QComboBox(parent);
    case ControlClass::Label:
        return new TextLabel(parent);
    case ControlClass::TextField:
        return new QLineEdit(parent);
    case ControlClass::ReadOnlyText:
        return MakeReadOnlyText(parent);
    case ControlClass::CheckBox:
        return new QCheckBox(parent);
    case ControlClass::RadioButton:
        return new QRadioButton(parent);
    case ControlClass::ProgressBar:
        return MakeProgressBar(parent);
    }
    return new QWidget(parent);
}

} // namespace

QWidget* MakeWidget(const ControlTemplate& look, QWidget* parent) {
    QWidget* const widget = MakeOfClass(look.kind, parent);
    widget->setObjectName(QString::number(look.id));
    return widget;
}

bool IsFocusable(ControlClass kind) {
    return kind != ControlClass::GroupBox && kind != ControlClass::Label &&
           kind != ControlClass::ProgressBar;
}

bool IsTextless(ControlClass kind) {
    return kind == ControlClass::ListView || kind == ControlClass::DropDownList ||
           kind == ControlClass::TextField || kind == ControlClass::ReadOnlyText;
}

void ShowText(const Control& control) {
    const QString marked = ToQt(WithMnemonic(FromQt(OneLine(control.text)), control.mnemonic));
    switch (control.look->kind) {
    case ControlClass::PushButton:
    case ControlClass::DefaultPushButton:
    case ControlClass::CheckBox:
    case ControlClass::RadioButton:
        static_cast<QAbstractButton*>(control.widget)->setText(marked);
        break;
    case ControlClass::IconButton: {
        auto* const button = static_cast<QAbstractButton*>(control.widget);
        const QString plain = ToQt(WithMnemonic(control.text, {}));
        button->setText(button->icon().isNull() ? plain : QString());
        break;
    }
    case ControlClass::GroupBox:
        static_cast<QGroupBox*>(control.widget)->setTitle(marked);
        break;
    case ControlClass::Label:
        static_cast<QLabel*>(control.widget)
            ->setText(control.hasBuddy ? marked : ToQt(control.text));
        break;
    default:
        break;
    }
}

void SetControlText(Control& control, const CString& text) {
    control.text = text;
    if (control.look->kind == ControlClass::TextField)
        static_cast<QLineEdit*>(control.widget)->setText(ToQt(text));
    if (control.look->kind == ControlClass::ReadOnlyText)
        static_cast<QPlainTextEdit*>(control.widget)->setPlainText(ToQt(text));
}

CString TextOf(const Control& control) {
    if (control.look->kind == ControlClass::TextField)
        return FromQt(static_cast<QLineEdit*>(control.widget)->text());
    return control.text;
}

void ShowIcon(const Control& control, const char16_t* resource) {
    if (auto* const button = dynamic_cast<QAbstractButton*>(control.widget))
        button->setIcon(IconFor(resource));
}

} // namespace Platform
