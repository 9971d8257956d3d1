// SPDX-License-Identifier: MIT
// The family's progress bar: a caption, a range with a position in it, and a line of text.
// Where it is shown is the program's business: a terminal's line, a window, nowhere.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace ZEBGis {

struct ProgressState {
    CString caption;
    CString text;
    int from = 0;
    int to = 0;
    int position = 0; // may lie outside of the range
};

// Shows the progress bar of the process.  Nothing may throw.
class ZEBX_EXPORT IProgressView {
public:
    // The bar is visible and this is its state; at each change.
    virtual void Update(const ProgressState& state) = 0;
    virtual void Hide() = 0;

protected:
    ~IProgressView() = default;
};

// Replaces the view and returns the former one; null: shown nowhere.  The view must stand until
// it is replaced.
ZEBX_EXPORT IProgressView* SetProgressView(IProgressView* view);

// Its end does not hide it: what is to disappear is hidden.  One is visible at a time.
class ZEBX_EXPORT CCoreProgressBar {
public:
    void SetCaption(const char16_t* caption);
    void SetRange(int from, int to);
    void SetPos(int position);
    void SetText(const char16_t* text);
    void Show();
    void Hide();

private:
    void Tell();

    ProgressState m_state;
    bool m_isShown = false;
};

} // namespace ZEBGis
