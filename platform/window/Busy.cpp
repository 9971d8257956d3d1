// SPDX-License-Identifier: MIT
#include "platform/window/Busy.h"

#include "platform/host/FileSteps.h"
#include "platform/window/WindowSystem.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>
#include <vector>

namespace Platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenPumps(40);
constexpr const char* kUsable = "zebxUsableWhileBusy";

struct Opened {
    const QWidget* window;
    std::size_t handlers; // that worked when it was opened
};

struct Working {
    const QWidget* window;
    Clock::time_point since;
};

struct BusyState {
    std::vector<Working> working; // a handler of each works, the newest last
    std::vector<Opened> opened;
    std::function<void(FileStep)> formerListener;
    Clock::time_point lastPump;
};

// Lives until the process ends: windows may be destroyed after this library's statics.
BusyState& State() {
    static auto* const state = new BusyState;
    return *state;
}

void Pump() {
    QCoreApplication::processEvents();
    State().lastPump = Clock::now();
}

void OnFileStep(FileStep step) {
    if (State().formerListener)
        State().formerListener(step);
    PumpWindows();
}

bool IsUsableWhileBusy(const QWidget& window) {
    return window.property(kUsable).toBool() && !IsWorking(window);
}

// A window that a handler opened takes input until one of its own handlers works.
bool WasOpenedByTheNewest(const QWidget& window) {
    const BusyState& state = State();
    return std::any_of(state.opened.begin(), state.opened.end(), [&](const Opened& opened) {
        return opened.window == &window && opened.handlers >= state.working.size();
    });
}

bool IsInput(const QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseMove:
        return static_cast<const QMouseEvent&>(event).buttons() != Qt::NoButton;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    case QEvent::Close: // by the user, not by the program
        return event.spontaneous();
    default:
        return false;
    }
}

const QWidget* WidgetOf(const QWindow& window) {
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [&](const QWidget* widget) {
        return widget->windowHandle() == &window;
    });
    return found == windows.end() ? nullptr : *found;
}

// The widget that an event is for: itself, its window's, or the owner of a shortcut.
const QWidget* WidgetOf(const QObject* receiver) {
    for (; receiver; receiver = receiver->parent()) {
        if (const auto* widget = qobject_cast<const QWidget*>(receiver))
            return widget;
        if (const auto* window = qobject_cast<const QWindow*>(receiver))
            return WidgetOf(*window);
    }
    return nullptr;
}

class InputFilter : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (State().working.empty() || !IsInput(*event))
            return false;
        const QWidget* const widget = WidgetOf(receiver);
        if (!widget || TakesInput(*widget))
            return false;
        if (event->type() == QEvent::Close)
            event->ignore();
        return true;
    }
};

} // namespace

bool TakesInput(const QWidget& widget) {
    if (State().working.empty())
        return true;
    // What pops up out of a window belongs to it.
    for (const QWidget* window = widget.window(); window;
         window = window->parentWidget() ? window->parentWidget()->window() : nullptr) {
        if (WasOpenedByTheNewest(*window) || IsUsableWhileBusy(*window))
            return true;
        if (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog)
            return false;
    }
    return false;
}

BusyScope::BusyScope(const QWidget& window) {
    BusyState& state = State();
    state.working.push_back({&window, Clock::now()});
    if (state.working.size() == 1)
        state.formerListener = SetFileStepListener(OnFileStep);
    state.lastPump = Clock::now();
}

BusyScope::~BusyScope() {
    BusyState& state = State();
    // What the user did meanwhile and waits in the queue is dropped, too.
    if (Clock::now() - state.working.back().since >= kBetweenPumps)
        Pump();
    if (state.working.size() == 1)
        SetFileStepListener(std::exchange(state.formerListener, {}));
    state.working.pop_back();
}

bool IsWorking(const QWidget& window) {
    const std::vector<Working>& working = State().working;
    return std::any_of(working.begin(), working.end(),
                       [&](const Working& handler) { return handler.window == &window; });
}

const QWidget* WorkingWindow() {
    return State().working.empty() ? nullptr : State().working.back().window;
}

OpenedWindow::OpenedWindow(const QWidget& window) {
    State().opened.push_back({&window, State().working.size()});
    for (; QApplication::overrideCursor(); QApplication::restoreOverrideCursor())
        m_cursors.push_back(*QApplication::overrideCursor());
}

OpenedWindow::~OpenedWindow() {
    for (; !m_cursors.empty(); m_cursors.pop_back())
        QApplication::setOverrideCursor(m_cursors.back());
    State().opened.pop_back();
}

void SetUsableWhileBusy(QWidget& window, bool isUsable) {
    window.setProperty(kUsable, isUsable);
}

void StartDroppingInput() {
    qApp->installEventFilter(new InputFilter(qApp));
}

void PumpWindows() {
    const BusyState& state = State();
    if (!state.working.empty() && Clock::now() - state.lastPump >= kBetweenPumps)
        Pump();
}

} // namespace Platform
