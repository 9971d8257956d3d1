// SPDX-License-Identifier: MIT
// The module's facade: holds the storage backend, the registries of content kinds and the
// picture of the shared repository, and performs every transfer.
#pragma once

#include "ZEBXGisCore/RepositoryItem.h"
#include "ZEBXNetworkCore/CatalogItem.h"
#include "ZEBXRepositoryClient/ContentKinds.h"
#include "ZEBXRepositoryClient/MsgProvider.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"
#include "ZEBXRepositoryClient/NetRepository.h"

#include <map>

namespace Repository {

class StorageBackend;

// One object for the process, built at the first call of Instance and never destroyed.
// One thread.  Integer results are non-zero for success; nothing throws.
class ZEBX_EXPORT CRepositoryStorageManager {
public:
    using FileManagers = std::map<CString, boost::shared_ptr<IFileManager>>;
    using FOCKinds = std::map<CString, boost::shared_ptr<CFOCMetadata>>;
    using NCFKinds = std::map<CString, boost::shared_ptr<CNCFMetadata>>;

    // The one manager.  The first call loads the storage plug-ins, lets the backend load
    // and at once save its settings, and registers the file manager "GS" and the built-in
    // kinds.  Null only when memory runs out.
    static CRepositoryStorageManager* Instance();

    // Copies share everything with their origin.
    CRepositoryStorageManager(const CRepositoryStorageManager&) = default;
    CRepositoryStorageManager& operator=(const CRepositoryStorageManager&) = default;

    // The user's folder of storage settings, created with every level; "\" at its end.
    // Empty, and nothing created, when the user has no roaming application-data folder.
    static CString GetConfigurationSettingsPath();

    // Non-zero when a backend is held.
    int IsInitialized();
    // The two that follow ask the backend without checking that there is one: call them
    // only when IsInitialized.  Whether this user may write; whether the repository can be
    // used now.
    int AmIAdmin() const;
    int IsRepositoryAccessible();
    // 0 without a backend.
    int IsMultipleGSSupported() const;
    // The backend's display name; empty without one.  The spelling is part of the exported
    // interface and is kept.
    CString GetRepositroyStorageName();
    // The backend, shared; may be empty.
    boost::shared_ptr<void> GetStorage();

    // Shows the configuration dialog, with the drawing locked, until the user closes it.  Where
    // it cannot be shown, the workspace log says why (see ConfigurationDialog.h).
    void ShowConfigurationDialog();

    // An identifier that is taken keeps what it has and the new object is dropped ("GS" is
    // taken from the start); an empty handle is passed over.
    void RegisterNCFMetadata(const boost::shared_ptr<CNCFMetadata>& kind);
    void RegisterFOCMetadata(const boost::shared_ptr<CFOCMetadata>& kind);
    void RegisterFileManager(const boost::shared_ptr<IFileManager>& fileManager);
    // Exact, case-sensitive; empty when there is none.
    boost::shared_ptr<CNCFMetadata> GetNCFMetadataById(const char16_t* id);
    boost::shared_ptr<CFOCMetadata> GetFOCMetadataById(const char16_t* id);
    boost::shared_ptr<IFileManager> GetFileManagerById(const char16_t* id);
    // The registries themselves; the identifiers' order is the order of presentation and
    // of the transfers of everything.
    NCFKinds& GetNCFMetadata();
    FOCKinds& GetFOCMetadata();

    // Drawings.  Loading writes every stored file of the kind into its folder, which is
    // created, and gives 1 unless a file could not be written or the repository went away;
    // an unknown kind is not an error.  Saving gives the backend's result, and 0 when the
    // kind is unknown, has no files, or the repository cannot be used.  The "all" forms
    // take every kind that is not optional or is switched on.  Each file, and each failure,
    // is a line of the workspace log.
    int LoadNCF(const char16_t* id);
    int LoadAllNCFs();
    int SaveNCF(const char16_t* id);
    int SaveAllNCFs();

    // Sets of configuration files, likewise.  `loadDependents` also loads the drawing kinds
    // that the set needs.  LoadAllFOC gives 1 when the repository cannot be used at the
    // start, unlike LoadAllNCFs: kept.  `unused` has no effect.
    int LoadFOC(const char16_t* id, int loadDependents);
    int LoadAllFOC(int unused);
    int SaveFOC(const char16_t* id, int unused);
    int SaveAllFOC(int unused);

    // General settings.  All give 0 without a backend and write nothing to the log.
    // SaveGS: 1 when the backend's result is above 0.  LoadGS: the text goes to `xml` and
    // the files to the file manager "GS".  SaveGSLocally: fetches the default GS and makes
    // it the local one; the local one is untouched unless everything was fetched.
    int SaveGS(const char16_t* xml, const char16_t* name);
    int LoadGS(CString& xml, const char16_t* name);
    int SaveGSLocally();
    int GetAvailableGS(std::vector<CString>& names);

    // Definitions.  The manager keeps a picture of the shared repository in memory, which only
    // these operations change; until the first refresh it is empty.  Nothing goes to the log.
    //
    // AddRepositoryItem: puts the item into the picture, then sends it; the picture keeps it
    // also when the storage refuses.  0 for a null item.  Delete and Rename: the storage
    // first, the picture only after its success.  GetRepositoryItemById: fetches an item and
    // makes a local one of it, owned by the caller, with the requested id and the stored name;
    // null when there is none or it cannot be made.  `option` goes to the storage as it is.
    // GetRepositoryItemsLite: appends the picture's items of a tag, owned by the caller;
    // always 0, kept: callers judge by what was appended.  RefreshNetRepository: reads the
    // items of a tag, or of every tag that exists locally when `tag` is null, into the picture;
    // 1 when at least one tag was read, 0 also when the repository became inaccessible.
    int AddRepositoryItem(const char16_t* tag, ZEBGis::CRepositoryItem* item);
    int DeleteRepositoryItem(const char16_t* tag, const char16_t* id);
    int RenameRepositoryItem(const char16_t* tag, const char16_t* id, const char16_t* newName);
    ZEBGis::CRepositoryItem* GetRepositoryItemById(const char16_t* tag, const char16_t* id,
                                                   int option);
    int GetRepositoryItemsLite(const char16_t* tag, std::vector<ZEBGis::CRepositoryItem*>& out);
    int RefreshNetRepository(const char16_t* tag);

    // Catalogue items.  Results are the backend's; nothing goes to the log.
    //
    // `parentId` null: the top level.  `flag` goes to the backend as it is.
    int GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                             std::vector<boost::shared_ptr<CNetCatalogueItem>>& items, int flag);
    // Empty when there is no such item or its content is no item.
    boost::shared_ptr<ZEBGis::Data::CCatalogItem>
    GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id, int withFiles);
    // 0 for an empty item.
    int AddCatalogItem(const char16_t* catalogueTag, const char16_t* catalogueName,
                       const boost::shared_ptr<ZEBGis::Data::CCatalogItem>& item, int withFiles);
    int DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id);
    // The record's files go to the file manager whose id is the record's catalogue tag, kept:
    // in the other direction they come from the one that the catalogue's metadata names.  The
    // record's parent wins over the one in its content.  Empty when the content is no item.
    boost::shared_ptr<ZEBGis::Data::CCatalogItem>
    Transform2CatalogItem(const boost::shared_ptr<CNetCatalogueItem>& record, int withFiles);
    // A group travels without its members.  Never empty.
    boost::shared_ptr<CNetCatalogueItem>
    Transform2NetCatalogItem(const char16_t* catalogueTag, const char16_t* catalogueName,
                             const boost::shared_ptr<ZEBGis::Data::CCatalogItem>& item,
                             int withFiles);

private:
    CRepositoryStorageManager() = default;

    static CString GetVersion(const char16_t* path);
    static CString ReadVersion();
    void LoadPlugins();
    void LoadPlugin(const CString& path);
    void LoadSettings();
    void SaveSettings();
    void RegisterBuiltInNCFKinds();
    void RegisterBuiltInFOCKinds();
    StorageBackend* Backend() const;

    static CRepositoryStorageManager* m_pInstance;

    FileManagers m_fileManagers;
    FOCKinds m_focKinds;
    NCFKinds m_ncfKinds;
    CString m_reserved; // read by nothing: keeps the layout of the exported class
    boost::shared_ptr<void> m_storage;
    boost::shared_ptr<IMsgProvider> m_msgProvider;
    boost::shared_ptr<CNetRepository> m_netRepository;
    CString m_version;
};

} // namespace Repository
