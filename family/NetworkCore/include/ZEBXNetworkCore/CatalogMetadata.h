// SPDX-License-Identifier: MIT
// What is known of a catalogue before it is read: the registry's entry.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <map>
#include <vector>

namespace ZEBGis::Data {

class ZEBX_EXPORT CCatalogMetadata {
public:
    // As a declaration gives it (docs/formats.md).
    struct Declaration {
        CString reference;
        std::map<CString, CString> names; // by language
        bool hidden = false;
        CString fileManagerId; // empty: the catalogue has no files
        CString filesFolder;   // absolute, "\" at its end
        std::vector<CString> fileProperties;
    };
    explicit CCatalogMetadata(Declaration declaration) : m_declaration(std::move(declaration)) {}

    // The catalogue's tag, by which everything asks for it.
    CString GetCatalogReference() const { return m_declaration.reference; }
    // The display name in the user's language, else the English one, else any, else the
    // reference.
    CString GetCatalogNameUI() const;
    // Non-zero: the catalogue is not shown and takes part in no transfer of all catalogues.
    int GetHidden() const { return m_declaration.hidden ? 1 : 0; }
    // The identifier of the file manager that handles the catalogue's files; may be empty.
    CString GetFileManager() const { return m_declaration.fileManagerId; }

    // The folder of the files that belong to items, and the properties whose texts are names
    // of such files.
    CString GetFilesFolder() const { return m_declaration.filesFolder; }
    const std::vector<CString>& GetFileProperties() const { return m_declaration.fileProperties; }

private:
    Declaration m_declaration;
};

} // namespace ZEBGis::Data
