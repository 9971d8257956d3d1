// SPDX-License-Identifier: MIT
// The repository's operations, stated once for every engine.
//
// Each operation is one transaction and lands whole or not at all; each that changes
// something is one revision.  What did not change makes no revision and adds no content.
// Operations throw StorageError.
#pragma once

#include "ZEBXRepositoryClient/StorageBackend.h"
#include "ZEBXRepositoryStorage/RepositoryAdministration.h"
#include "storage/store/CatalogueAhead.h"
#include "storage/store/FilesAhead.h"
#include "storage/store/WriteCall.h"

namespace Storage {

using RepositoryItemPtr = boost::shared_ptr<Repository::CNetRepositoryItem>;

struct GeneralSettings {
    CString xml;
    std::vector<CString> fileIds;
};

struct StoreOptions {
    std::function<Stamp()> stamp;
    // Told of each file that is left out of an item because it may not be given out.
    LeftOut leftOut;
    std::uint64_t maxFileBytes = kMaxFileBytes;
    // Of contents from a server; may be none.
    std::shared_ptr<ContentCache> cache;
};

class Store {
public:
    Store(std::unique_ptr<SqlConnection> connection, StoreOptions options);

    SqlConnection& Connection() { return *m_sql; }

    void RegisterContent(std::int32_t contentCode, CStringView kindId, std::int32_t messageNumber);
    void AddFiles(const Repository::RepositoryFiles& files);
    // In the case-folded order of the names.  The ids stand for what the files are now: they
    // give the same content when somebody replaces the files meanwhile.
    std::vector<CString> FileIds(std::int32_t contentCode, CStringView kindId);
    // Empty when there is none.  Throws Refused for a name that may not be given out and
    // Integrity for a damaged content.
    RepositoryFilePtr File(CStringView fileId);

    // The names, the default one (empty) first.
    std::vector<CString> GeneralSettingsNames();
    // Nothing when there are none of that name.
    std::optional<GeneralSettings> LoadGeneralSettings(CStringView name);
    void SaveGeneralSettings(CStringView xml, const Repository::RepositoryFiles& files,
                             CStringView name);

    // In order of arrival; unknown tags give nothing.
    std::vector<RepositoryItemPtr> RepositoryItems(CStringView tag);
    RepositoryItemPtr RepositoryItem(CStringView tag, CStringView id);
    // An id that is there already keeps its place in the order.
    void AddRepositoryItem(CStringView tag, Repository::CNetRepositoryItem& item);
    // Throw Refused when there is no such item.
    void RenameRepositoryItem(CStringView tag, CStringView id, CStringView newName);
    void DeleteRepositoryItem(CStringView tag, CStringView id);

    // The children of a group, in order of arrival; an empty parent is the top level.
    std::vector<CatalogueItemPtr> CatalogueChildren(CStringView tag, CStringView parentId,
                                                    bool withFiles);
    CatalogueItemPtr CatalogueItem(CStringView tag, CStringView id, bool withFiles);
    // An id that is there already keeps its place unless it moves to another parent, where
    // it is the last to arrive.
    void AddCatalogueItem(Repository::CNetCatalogueItem& item);
    // With all its descendants.  Throws Refused when there is no such item.
    void DeleteCatalogueItem(CStringView tag, CStringView id);

    // Fills in what the repository itself knows of its state.
    void ReadState(RepositoryState& state);
    void List(std::vector<StoredFile>& files, std::vector<StoredGS>& settings);
    void ListItems(std::vector<StoredItem>& catalogueItems, std::vector<StoredItem>& definitions);
    // See RepositoryAdministration.
    std::vector<RevisionEntry> Revisions(std::int64_t before, std::size_t count);
    // Throws Refused with a message for each file that AddFiles would refuse.
    void CheckNames(const std::vector<NamedFile>& files);
    // See RepositoryAdministration.
    void Check(const TellFinding& tell, CheckCounts& counts);

private:
    std::shared_ptr<ContentCache> Cache() const;
    WriteCall Write(std::string_view operation, CStringView subject);
    bool ReadCatalogueAhead(CStringView tag, CStringView parentId);
    std::vector<CatalogueItemPtr> ChildrenNow(CStringView tag, CStringView parentId,
                                              bool withFiles);
    CatalogueItemPtr ItemNow(CStringView tag, CStringView id, bool withFiles);

    std::unique_ptr<SqlConnection> m_sql;
    StoreOptions m_options;
    FilesAhead m_filesAhead;
    CatalogueAhead m_catalogueAhead;
    ContentsAhead m_heldContents; // of items, within one call
};

} // namespace Storage
