// SPDX-License-Identifier: MIT
// The window system as a whole: whether there is one, the wait cursor, and what is not a
// window of ours: the chooser of files and the clipboard.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <optional>

namespace Platform {

// Empty when windows can be shown here; otherwise why not, in the system's words ("DISPLAY is
// not set").  The first success starts the window system for the process.  `language` ("hr") is
// that of the few texts that the window system has of its own.
ZEBX_EXPORT CString WhyNoWindows(CStringView language);

// Shows the wait cursor for as long as it stands.
class ZEBX_EXPORT WaitCursor {
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

// Paints the windows and lets them be moved while a handler works: drops whatever the user
// clicked or typed meanwhile, except in windows that are usable then.  Called often, it does
// its work a few times a second; called outside of a handler, it does nothing.  File steps
// (platform/host/FileSteps.h) call it while a handler works.
ZEBX_EXPORT void PumpWindows();

struct FileQuestion {
    CString title;
    CString folder; // where to begin; empty: anywhere
    CString name;   // proposed
    CString filter; // "Repositories (*.db)"
    bool isForSaving = false;
};

// Lets the user choose a file; its full path, none when the user did not choose.
ZEBX_EXPORT std::optional<CString> ChooseFile(const FileQuestion& question);

ZEBX_EXPORT void SetClipboardText(const CString& text);

} // namespace Platform
