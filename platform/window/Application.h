// SPDX-License-Identifier: MIT
// The process's one QApplication; started by WhyNoWindows, never destroyed.
#pragma once

namespace Platform {

// The statics of the process are being destroyed: windows are left as they are.
bool IsProcessEnding();
// Called when a window is made: from then on its dialog may be a static that outlives Qt's.
void NoticeTheEnd();

} // namespace Platform
