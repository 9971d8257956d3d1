// SPDX-License-Identifier: MIT
// Where a repository is: the text that a user types and the settings keep.
// docs/storage.md describes the forms.
#pragma once

#include "platform/text/Text.h"

namespace Storage {

// A repository of the embedded engine.
struct Address {
    CString path; // absolute, "\" between folders

    // "sqlite:/srv/zebx/repository.db"
    CString Text() const;
};

// Reads an address.  A relative path counts from `currentFolder` ("\" at its end) and is
// refused when that is empty.  Throws Configuration; what it says never repeats a
// password.
Address ParseAddress(CStringView text, CStringView currentFolder);

// The place of a user's own repository.  Throws Configuration when the user has no data
// folder.
Address DefaultAddress();

} // namespace Storage
