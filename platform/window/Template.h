// SPDX-License-Identifier: MIT
// What a window looks like, as data: a table of its controls.
//
// Positions and sizes are in dialog units: a fourth of the font's average character width
// across, an eighth of its height down.  A window so opens the same at any font and scale.
#pragma once

#include "platform/text/Text.h"

#include <span>

namespace Platform {

enum class ControlClass {
    PushButton,
    DefaultPushButton, // what Enter presses
    IconButton,        // its tool tip, or else its text, is its name; see Dialog::SetIcon
    GroupBox,
    TabControl,
    ListView, // rows and columns, see ListView
    DropDownList,
    Label,
    TextField,
    ReadOnlyText, // several lines that can be marked and copied
    CheckBox,
    RadioButton, // one of those that follow each other in the table
    ProgressBar
};

// What a control does when its window is made larger than its template: any of these, added.
enum OnResize : unsigned { Stay = 0, MoveRight = 1, MoveDown = 2, GrowWide = 4, GrowTall = 8 };

struct ControlTemplate {
    int id; // unique in its window
    ControlClass kind;
    const char16_t* text; // until SetText; null: none
    int x, y;             // of the upper left corner
    int width, height;
    unsigned onResize = Stay;
};

// The tab order is the table's.  Both live as long as the windows made of them.
struct DialogTemplate {
    const char16_t* text;
    int width, height;
    std::span<const ControlTemplate> controls;
};

// The controls that end a window: its default button, and what Escape means.
inline constexpr int kIdOk = 1;
inline constexpr int kIdCancel = 2;

} // namespace Platform
