// SPDX-License-Identifier: MIT
// What a storage plug-in implements: the backend that keeps the repository, and the
// object that hands it out.
//
// A plug-in is a module ZEBXRepositoryClientPlugin_<name>.arx in the installation folder
// that exports GetPluginInfo.  The manager takes the backend as a
// boost::shared_ptr<void> that was made from a boost::shared_ptr<StorageBackend>.  While
// plug-ins are asked there is no manager yet: they must not call its Instance.
//
// Integers are results unless said otherwise: non-zero is success, and callers hand them
// on unchanged.  No operation may throw.  All calls come from one thread.
#pragma once

#include "ZEBXRepositoryClient/MsgProvider.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"
#include "ZEBXRepositoryClient/NetRepositoryItem.h"

namespace Repository {

using RepositoryFiles = std::vector<boost::shared_ptr<CRepositoryFile>>;

// The operations stand in slot order, which is fixed; new ones go to the end.
class ZEBX_EXPORT StorageBackend {
public:
    virtual void Reserved1() {}

    // Right after the backend was handed out, following SetVersion: the folder in which
    // the plug-in keeps its own settings ("\" at its end; empty when there is none).
    virtual void SetSettingsPath(const char16_t* folder) = 0;
    virtual void SaveSettings() = 0;
    virtual void LoadSettings() = 0;

    virtual void Reserved5() {}
    virtual void Reserved6() {}

    // The number of the message that is the storage's display name.
    virtual int GetNameMsgNum() = 0;

    // Connects anew with the parameters that were edited last.
    virtual int ApplyConnectionParameters() = 0;
    // 0: there is nothing to edit.
    virtual int HasConnectionParameters() = 0;

    // The version of the family's core library, "a.b.c.d"; empty when unknown.
    virtual void SetVersion(const char16_t* version) = 0;

    // Whether more than one GS can be kept, by name.
    virtual int IsMultipleGSSupported() = 0;
    // Fills `names` with the names of the GS that are kept.
    virtual int GetAvailableGS(std::vector<CString>& names) = 0;
    // Gives the GS text of that name and the ids of the files stored with it.
    virtual int LoadGS(CString& xml, std::vector<CString>& fileIds, const char16_t* name) = 0;
    // Keeps text and files under the name (null and empty: the default one).  Success
    // only when greater than 0.
    virtual int SaveGS(const char16_t* xml, const RepositoryFiles& files, const char16_t* name) = 0;

    // The stored file of that id, content included; empty when there is none.
    virtual boost::shared_ptr<CRepositoryFile> GetRepositoryFile(const char16_t* fileId) = 0;
    // Announces a kind before its files are sent.
    virtual int RegisterContent(int contentCode, const char16_t* kindId, int messageNumber) = 0;
    // Whether this user may write to the repository.
    virtual int AmIAdmin() = 0;
    // Adds or replaces files, all of them or none; removes nothing.  Never empty.
    virtual int AddRepositoryFiles(const RepositoryFiles& files) = 0;
    // Fills `fileIds` with the ids of the kind's stored files.
    virtual int GetRepositoryFileIds(int contentCode, const char16_t* kindId,
                                     std::vector<CString>& fileIds) = 0;

    // Definitions, by the tag of their definition repository.
    virtual int GetRepositoryItems(const char16_t* tag,
                                   std::vector<boost::shared_ptr<CNetRepositoryItem>>& items) = 0;
    virtual int DeleteRepositoryItem(const char16_t* tag, const char16_t* id) = 0;
    virtual int RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                                     const char16_t* newName) = 0;
    virtual boost::shared_ptr<CNetRepositoryItem>
    GetRepositoryItemById(const char16_t* tag, const char16_t* id, int flag) = 0;
    virtual int AddRepositoryItem(const char16_t* tag,
                                  const boost::shared_ptr<CNetRepositoryItem>& item) = 0;

    // Catalogue items, by the tag of their catalogue.  A null or empty parent is the top
    // level.  Without `withFiles` the items carry no files.
    virtual int GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                                     std::vector<boost::shared_ptr<CNetCatalogueItem>>& items,
                                     int withFiles) = 0;
    virtual boost::shared_ptr<CNetCatalogueItem>
    GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id, int withFiles) = 0;
    virtual int AddCatalogItem(boost::shared_ptr<CNetCatalogueItem> item) = 0;
    virtual int DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) = 0;

    // Whether the repository can be used now; 0 stops any running transfer.  Cheap:
    // asked between any two steps.
    virtual int IsRepositoryAccessible() = 0;

    // Lets the user edit the connection; the result is ignored.
    virtual int EditConnectionParameters() = 0;

    // Behind the slots, so that they keep their numbers.
    virtual ~StorageBackend() = default;
};

// A plug-in's information object; it lives as long as the plug-in's module.
class ZEBX_EXPORT IPluginInfo {
public:
    // Puts the backend into `backend`; leaves it empty when there is none to give.
    virtual void GetStorageBackend(boost::shared_ptr<void>& backend) = 0;
    // Lends the message provider, which lives until the process ends.
    virtual void SetMsgProvider(IMsgProvider* provider) = 0;

protected:
    ~IPluginInfo() = default;
};

// The plug-in's export "GetPluginInfo"; gives the same object at each call.
using GetPluginInfoFunction = IPluginInfo* (*)();

} // namespace Repository
