// SPDX-License-Identifier: MIT
// A window made of a template.  Whoever needs one derives from Dialog and overrides what
// happens at its opening and at a click.
//
// One thread.  Nothing throws, and what an overridden handler throws is stopped here.  A
// control that the template lacks is passed over, and asked for, it gives nothing.
#pragma once

#include "platform/Export.h"
#include "platform/window/Template.h"

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <memory>
#include <vector>

class CAcUiTabMainDialog;

namespace Platform {

class DialogWindow; // the window system's side

// A list of rows and columns.  A handle: copies mean the same list, which lives with its
// window.  Rows and columns count from 0.
class ZEBX_EXPORT ListView {
public:
    enum Style : unsigned { Plain = 0, CheckBoxes = 1, GridLines = 2 };

    explicit ListView(void* list) : m_list(list) {}

    // A whole row is marked at a click, whatever the style.
    void SetStyle(unsigned style);
    // Returns its number.  Texts stand to the left.
    int InsertColumn(const CString& header);
    // As wide as its header and its widest text ask for; the last column also takes what is
    // left of the list's width.
    void SizeColumnToHeader(int column);

    // One text a column; missing ones are empty.  The data belongs to the caller.  `icon` is a
    // resource (see Dialog::SetIcon), before the text of that column; null: none.  Returns the
    // row.
    int AddRow(std::vector<CString> texts, const void* data = nullptr,
               const char16_t* icon = nullptr, int iconColumn = 0);
    void DeleteAllRows();
    int RowCount() const;
    CString Text(int row, int column) const;
    const void* Data(int row) const;

    // 0 without a tick, 1 with one, 2 partly; 0 for a row that is not there.
    int CheckState(int row) const;
    void SetCheckState(int row, int state);
    void SetAllCheckStates(int state);

    // Marked rows, ascending.
    std::vector<int> SelectedRows() const;
    void SelectAll();
    void ScrollTo(int row);
    // Whether the last row can be seen; true for an empty list.
    bool IsAtEnd() const;

private:
    void* m_list;
};

// A list of which one entry is chosen.  A handle, likewise.
class ZEBX_EXPORT DropDownList {
public:
    explicit DropDownList(void* list) : m_list(list) {}

    int Add(const CString& text, const void* data = nullptr);
    int Count() const;
    CString Text(int entry) const;
    const void* Data(int entry) const;
    // -1: none.
    int Selected() const;
    void Select(int entry);

private:
    void* m_list;
};

class ZEBX_EXPORT Dialog {
public:
    explicit Dialog(const DialogTemplate& look);
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // Builds the window, not shown, and runs OnInitDialog; once, later calls do nothing.
    void Create();
    // Creates and shows it, and returns at once.
    void Show();
    void Hide();
    bool IsShown() const;
    // Creates and shows it and works off what happens until it ends; returns the result given
    // to EndDialog.  The dialog that was shown so last, if any, takes no input meanwhile.  An
    // interruption (platform/host/Interruption.h) ends it with kIdCancel.
    int DoModal();
    // Ends DoModal; a window that was shown otherwise is hidden.
    void EndDialog(int result);

    // Usable while another window's handler works (see PumpWindows).  Before Create.
    void SetUsableWhileBusy(bool isUsable);

    // OnUpdate will run, once for many calls, when the window system comes to it; also while a
    // handler works.  For what changes too fast to be shown each time.
    void UpdateSoon();

    void SetTitle(const CString& text);
    CString Title() const;

    // "&" in a text has no meaning.  Every control gets a key of its own in its window when it
    // opens, as far as there are letters: underlined in its text, or told by its tooltip.
    void SetText(int id, const CString& text);
    CString Text(int id) const;
    void SetToolTip(int id, const CString& text);
    // What a screen reader says of a control without a text of its own.
    void SetAccessibleName(int id, const CString& text);
    // `resource`: a name from platform/window/icons, "IDI_SELALL".
    void SetIcon(int id, const char16_t* resource);
    void Enable(int id, bool isEnabled);
    bool IsEnabled(int id) const;
    void SetVisible(int id, bool isVisible);
    void SetFocus(int id);
    // Check boxes and radio buttons.
    void SetChecked(int id, bool isChecked);
    bool IsChecked(int id) const;
    // Progress bars.
    void SetRange(int id, int from, int to);
    void SetPosition(int id, int position);

    ListView List(int id) const;
    DropDownList DropDown(int id) const;

protected:
    // Fills the controls.  True: the window system chooses where the focus goes.
    virtual bool OnInitDialog() { return true; }
    // A button was pressed, with mouse or keys.  The default ends the dialog for kIdOk and
    // kIdCancel with that number.  While it runs nothing else can be clicked.
    virtual void OnClicked(int id);
    // A text was edited, an entry chosen, a box ticked, by the user.
    virtual void OnChanged(int /*id*/) {}
    // See UpdateSoon.
    virtual void OnUpdate() {}
    // Escape, or the window's own closing button.  The default is a click of kIdCancel.
    virtual void OnCancel() { OnClicked(kIdCancel); }

private:
    friend class DialogWindow;
    friend class ::CAcUiTabMainDialog;
    const DialogTemplate& m_look;
    DialogWindow* m_window = nullptr;
    bool m_isUsableWhileBusy = false;
};

} // namespace Platform
