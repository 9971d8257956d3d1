// SPDX-License-Identifier: MIT
// The window behind a Dialog: a window of its own, or a page in another's tab control.
#pragma once

#include "platform/window/Control.h"
#include "platform/window/Dialog.h"
#include "platform/window/DialogUnits.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <vector>

class QEventLoop;
class QTabWidget;

namespace Platform {

class DialogWindow : public QWidget {
public:
    // Null when no window can be shown here.  The dialog's OnInitDialog has run.
    static DialogWindow* For(Dialog& dialog);
    static DialogWindow* Of(const Dialog& dialog) { return dialog.m_window; }
    ~DialogWindow() override;
    // At the end of its dialog.
    void Destroy();

    Control* Find(int id);
    template<class Widget>
    Widget* FindWidget(int id);
    std::vector<Control>& Controls() { return m_controls; }

    // Shows it, before other windows.
    void Open();
    int RunModal();
    void End(int result);
    void SetTitle(const CString& text);
    const CString& Title() const { return m_title; }
    void TextChanged(Control& control);
    // The keys of all controls; now, or soon and once for many changes.
    void AssignKeys();
    void KeysChanged();
    void UpdateSoon() { m_updateDue.start(); }

    struct Page {
        DialogWindow* window;
        CString caption;
    };
    QTabWidget* Tabs();
    std::vector<Page>& Pages() { return m_pages; }
    void InsertPage(int index, DialogWindow& page, const CString& caption);
    void RemovePage(DialogWindow& page);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    explicit DialogWindow(Dialog& dialog);
    void MakeControls();
    void Connect(const Control& control);
    void GroupRadioButtons();
    void Initialise();
    void TakeTemplateSize();
    void Layout();
    QSize Growth(const DialogUnits& units) const;
    void OrderTabStops();
    void FocusFirst();
    void Update();
    void PressDefault();
    bool TurnPage(const QKeyEvent& event);
    DialogWindow& Root();
    // Runs it unless the window takes no input now; nothing else can be clicked meanwhile.
    void Handle(const std::function<void(Dialog&)>& handler);

    CString m_title;
    Dialog* m_dialog; // null once it is destroyed
    std::vector<Control> m_controls;
    std::vector<Page> m_pages;
    QPointer<DialogWindow> m_host; // that this one is a page of
    QSize m_templateSize;
    QEventLoop* m_loop = nullptr;
    int m_result = kIdCancel;
    bool m_isOpening = false;
    bool m_hasEnded = false; // while it was opening
    QTimer m_keysDue;        // for many changes once, as the next
    QTimer m_updateDue;
};

template<class Widget>
Widget* DialogWindow::FindWidget(int id) {
    Control* const control = Find(id);
    return control ? dynamic_cast<Widget*>(control->widget) : nullptr;
}

} // namespace Platform
