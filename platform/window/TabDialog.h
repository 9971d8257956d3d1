// SPDX-License-Identifier: MIT
// The tabbed dialog: a main window with a tab control, and the pages in it.
#pragma once

#include "platform/window/Dialog.h"

// A page.  It becomes a window of its own inside the tab control when it is added.
class ZEBX_EXPORT CAcUiTabChildDialog : public Platform::Dialog {
public:
    using Platform::Dialog::Dialog;
};

class ZEBX_EXPORT CAcUiTabMainDialog : public Platform::Dialog {
public:
    CAcUiTabMainDialog(const Platform::DialogTemplate& look, int tabControlId)
        : Dialog(look), m_tabControlId(tabControlId) {}

    // Creates the page and inserts it before the tab of that index (or at the end).  The page
    // must outlive this dialog's window.  A page that is in already is not added again.
    void AddTab(int index, CAcUiTabChildDialog& page, const CString& caption);
    // The page stays created and keeps its state.
    void RemoveTab(CAcUiTabChildDialog& page);
    bool HasTab(const CAcUiTabChildDialog& page) const;
    int TabCount() const;
    CString TabCaption(int index) const;
    int SelectedTab() const;
    void SelectTab(int index);

private:
    int m_tabControlId;
};
