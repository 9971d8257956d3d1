// SPDX-License-Identifier: MIT
// The files that belong to catalogue items (drawings, pictures, data sheets): a file manager
// for each catalogue, between the properties that name the files and the catalogue's folder.
#pragma once

#include "ZEBXNetworkCore/CatalogMetadata.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "ZEBXRepositoryClient/StorageBackend.h"

#include <functional>

namespace App {

// The file manager of one identifier.  What goes wrong with a file is a line of the workspace
// log; where memory ends the operations throw, and the storage manager's border stops that.
class CatalogueFileManager : public Repository::IFileManager {
public:
    explicit CatalogueFileManager(CString id) : m_id(std::move(id)) {}
    virtual ~CatalogueFileManager() = default;

    // Appends the files that the item names, as they stand in the folder of its catalogue: of
    // every catalogue in memory that names this manager.
    void GetFiles(Repository::RepositoryFiles& files, const char16_t* itemId) override;
    // Writes the files into the folder of the catalogue whose reference is this manager's
    // identifier; never anywhere else, whatever a record says.  A file that is there already
    // is not written again.
    void PutFiles(Repository::RepositoryFiles& files, int flag, const void* argument) override;
    CString GetId() override { return m_id; }

private:
    CString m_id;
};

// Registers what both directions look for: the identifier that a catalogue names, by which its
// files are sent, and the catalogue's own reference, by which they are put in place.
void RegisterCatalogueFileManagers(Repository::CRepositoryStorageManager& manager);

// Shows the file names that the item's properties hold, each once, with the property.
void LookAtFileNames(const ZEBGis::Data::CCatalogMetadata& metadata,
                     const ZEBGis::Data::CCatalogItem& item,
                     const std::function<void(const CString& name, const CString& property)>& look);

} // namespace App
