// SPDX-License-Identifier: MIT
// A control of a window: its line of the template, and the widget made of it.
#pragma once

#include "platform/window/Mnemonics.h"
#include "platform/window/Template.h"

#include <QString>

class QShortcut;
class QWidget;

namespace Platform {

struct Control {
    const ControlTemplate* look = nullptr;
    QWidget* widget = nullptr;
    CString text;           // as it was set, without marks
    CString toolTip;        // likewise
    CString accessibleName; // likewise
    Mnemonic mnemonic;
    bool hasBuddy = false;         // a label that leads to the control after it
    QString hiddenKey;             // "Alt+X": told by the tool tip, not by the text
    QShortcut* shortcut = nullptr; // for the hidden key
};

QWidget* MakeWidget(const ControlTemplate& look, QWidget* parent);

// Takes the focus and is worked with.
bool IsFocusable(ControlClass kind);
// A focusable control without a text of its own that its key could be underlined in.
bool IsTextless(ControlClass kind);

// Shows control.text with its mnemonic; edited texts are left as they are.
void ShowText(const Control& control);
// Sets the text as a whole.
void SetControlText(Control& control, const CString& text);
CString TextOf(const Control& control);

void ShowIcon(const Control& control, const char16_t* resource);

} // namespace Platform
