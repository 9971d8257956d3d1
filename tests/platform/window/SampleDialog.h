// SPDX-License-Identifier: MIT
// A dialog that keeps what was told to its handlers, and how a test finds its window.
#pragma once

#include "platform/window/TabDialog.h"
#include "platform/window/WindowSystem.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

// Starts the window system for the test program.
class WindowTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(Platform::WhyNoWindows(u"en"), u""); }
};

template<class Base>
class Recording : public Base {
public:
    using Base::Base;

    bool OnInitDialog() override {
        if (onInit)
            onInit();
        return true;
    }
    void OnClicked(int id) override {
        clicked.push_back(id);
        if (onClicked)
            onClicked(id);
        else
            Base::OnClicked(id);
    }
    void OnChanged(int id) override {
        changed.push_back(id);
        if (onChanged)
            onChanged(id);
    }

    std::vector<int> clicked;
    std::vector<int> changed;
    std::function<void()> onInit;
    std::function<void(int)> onClicked;
    std::function<void(int)> onChanged;
};

using SampleDialog = Recording<Platform::Dialog>;
using SamplePage = Recording<CAcUiTabChildDialog>;
using SampleTabDialog = Recording<CAcUiTabMainDialog>;

// The window of that title.
inline QWidget* WindowTitled(const QString& title) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowTitle() == title)
            return window;
    }
    return nullptr;
}

// Does it when the modal loop that is about to begin runs.
template<class Action>
void Soon(Action action) {
    QTimer::singleShot(0, qApp, action);
}

// Letters are told to the window, which hands them to whoever has the key.
inline void PressAlt(QWidget* window, char letter) {
    QTest::keyClick(window->windowHandle(), letter, Qt::AltModifier);
}

template<class Widget = QWidget>
Widget* ControlOf(const QWidget* window, int id) {
    return window ? window->findChild<Widget*>(QString::number(id)) : nullptr;
}
