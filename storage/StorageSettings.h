// SPDX-License-Identifier: MIT
// The plug-in's own settings: the address of the repository that is in use, in a file
// of the folder that the backend was given.  docs/storage.md describes the file.
#pragma once

#include "platform/text/Text.h"

namespace Storage {

class StorageSettings {
public:
    // `folder` ends with "\"; empty: there is none.
    void SetFolder(CStringView folder) { m_folder = folder; }

    // Reads the file; without one the address is empty.  Throws Configuration when it
    // cannot be read or understood, and then the address is empty too.
    void Load();

    // Writes the file, private, whole or not at all, unless it says the same already.
    // Throws Configuration.
    void Save() const;

    // As the user gave it, absolute; empty: the default place.
    const CString& Address() const { return m_address; }
    void SetAddress(CStringView address) { m_address = address; }

private:
    CString Path() const;
    std::string FileText() const;

    CString m_folder;
    CString m_address;
};

} // namespace Storage
