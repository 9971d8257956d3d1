// SPDX-License-Identifier: MIT
// The progress bar as a window of its own, beside the dialog whose button began a load.
#pragma once

#include "ZEBXGisCore/CoreProgressBar.h"
#include "platform/window/Dialog.h"

namespace Repository {

// Shows the process's progress bar for as long as it stands.  A bar that nobody hides stays; the
// user can close the window at any time and does not see that bar again.
class ProgressWindow : public Platform::Dialog, private ZEBGis::IProgressView {
public:
    ProgressWindow();
    ~ProgressWindow() override;

private:
    void Update(const ZEBGis::ProgressState& state) override;
    void Hide() override;
    void OnCancel() override;
    void ShowState(const ZEBGis::ProgressState& state);

    ZEBGis::IProgressView* const m_formerView;
    bool m_isClosedByUser = false;
};

} // namespace Repository
