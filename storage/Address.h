// SPDX-License-Identifier: MIT
// Where a repository is: the text that a user types and the settings keep.
// docs/storage.md describes the forms.
#pragma once

#include "platform/text/Text.h"

namespace Storage {

struct Address {
    // Of the embedded engine: absolute, "\" between folders.  Empty: on a server.
    CString path = {};
    // Of the server engine: a URI as libpq takes it, handed over as it stands; without a password.
    CString server = {};

    // Not part of the text; for a server.
    CString schema = {};      // where the URI names none
    CString application = {}; // who connects, as the server's administrators see it

    bool IsServer() const { return !server.empty(); }
    // "sqlite:/srv/zebx/repository.db", "postgresql://server.example.org/gis"
    CString Text() const;
};

// Reads an address.  A relative path counts from `currentFolder` ("\" at its end) and is
// refused when that is empty.  A server's URI with a password in it is refused: it would end
// in settings, logs and the list of processes.  Throws Configuration; what it says never repeats
// a password.
Address ParseAddress(CStringView text, CStringView currentFolder);

// The place of a user's own repository.  Throws Configuration when the user has no data
// folder.
Address DefaultAddress();

} // namespace Storage
