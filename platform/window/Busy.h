// SPDX-License-Identifier: MIT
// While a handler works its window, and every other that was there before, takes no input: what
// the user does with them is dropped.
#pragma once

#include <QCursor>
#include <QWidget>
#include <vector>

namespace Platform {

// Whether the user may do something with it, or with the window around it, now.
bool TakesInput(const QWidget& widget);

// A handler of that window works.
class BusyScope {
public:
    explicit BusyScope(const QWidget& window);
    ~BusyScope();
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;
};

// Whether a handler of that window works.
bool IsWorking(const QWidget& window);

// The window whose handler works now; null: none.
const QWidget* WorkingWindow();

// That window was opened by the handler that works now, if any, and takes input meanwhile.
class OpenedWindow {
public:
    explicit OpenedWindow(const QWidget& window);
    ~OpenedWindow();
    OpenedWindow(const OpenedWindow&) = delete;
    OpenedWindow& operator=(const OpenedWindow&) = delete;

private:
    std::vector<QCursor> m_cursors; // to wait with: not while the user is asked
};

// Takes input whatever other window's handler works.
void SetUsableWhileBusy(QWidget& window, bool isUsable);

// Once, when the application has started.
void StartDroppingInput();

} // namespace Platform
