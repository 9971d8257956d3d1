// SPDX-License-Identifier: MIT
#include "storage/store/FileRows.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"
#include "storage/store/NameCheck.h"

#include <boost/make_shared.hpp>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;
using Repository::CRepositoryFile;

enum Column {
    kId,
    kHolder,
    kName,
    kNameFolded,
    kFileManagerId,
    kOriginId,
    kCustomParameter,
    kFileType,
    kSizeBytes,
    kHash,
    kOtherName
};

// The columns above.  The folded name comes only where it is another text.
#define ZEBX_SELECT_FILES_AND(otherName)                                                           \
    "SELECT f.id, f.holder, f.name, NULLIF(f.name_folded, f.name), f.file_manager_id, "            \
    "f.origin_id, f.custom_parameter, f.file_type, f.size_bytes, f.hash, " otherName               \
    " FROM stored_file f "
#define ZEBX_SELECT_FILES ZEBX_SELECT_FILES_AND("NULL")
// Another current name of the kind that differs by case alone and came first; the tables do not
// allow one, but somebody may have changed them.
#define ZEBX_OTHER_NAME                                                                            \
    "(SELECT o.name FROM stored_file o WHERE o.file_type = f.file_type "                           \
    "AND o.origin_id = f.origin_id AND o.name_folded = f.name_folded "                             \
    "AND o.holder IS NULL AND o.until_revision IS NULL "                                           \
    "AND f.holder IS NULL AND f.until_revision IS NULL AND o.id < f.id LIMIT 1)"

bool Fits(std::string_view bytes, std::int64_t sizeBytes, std::string_view hash) {
    return static_cast<std::int64_t>(bytes.size()) == sizeBytes && ContentHash(bytes) == hash;
}

StoredRecord ReadRecord(SqlRows& row) {
    StoredRecord read;
    read.id = row.Integer(kId);
    read.holder = row.IsNull(kHolder) ? 0 : row.Integer(kHolder);
    read.record = {FromUtf8(row.Text(kName)),
                   FromUtf8(row.Text(kFileManagerId)),
                   FromUtf8(row.Text(kOriginId)),
                   FromUtf8(row.Text(kCustomParameter)),
                   static_cast<std::int32_t>(row.Integer(kFileType)),
                   row.Integer(kSizeBytes),
                   std::string(row.Bytes(kHash))};
    read.folded = Platform::FoldCase(read.record.name);
    read.isFoldedOtherwise =
        ToUtf8(read.folded) != row.Text(row.IsNull(kNameFolded) ? kName : kNameFolded);
    if (!row.IsNull(kOtherName))
        read.otherName = FromUtf8(row.Text(kOtherName));
    return read;
}

void CheckStoredName(const StoredRecord& stored) {
    const CString& name = stored.record.name;
    const CString& owner = stored.record.originId;
    if (const auto wrong = CheckName(name))
        throw StorageError(Problem::Refused, *wrong, {name, owner});
    if (stored.otherName)
        throw StorageError(Problem::Refused, MessageNumber::NameDiffersByCase,
                           {name, owner, *stored.otherName});
    if (stored.isFoldedOtherwise)
        throw StorageError(Problem::Integrity, MessageNumber::RecordDamaged, {name, owner});
}

void CheckContent(const FileRecord& record, const TakenContent& content) {
    if (!content.isThere)
        throw StorageError(Problem::Integrity, MessageNumber::ContentMissing,
                           {record.name, record.originId});
    if (!content.fitsItsHash || static_cast<std::int64_t>(content.bytes.size()) != record.sizeBytes)
        throw StorageError(Problem::Integrity, MessageNumber::ContentDamaged,
                           {record.name, record.originId});
}

} // namespace

RecordQuery RecordQuery::ById(SqlConnection& sql, std::int64_t id) {
    return RecordQuery(sql.Query(ZEBX_SELECT_FILES_AND(ZEBX_OTHER_NAME) "WHERE f.id = $1", {id}));
}

RecordQuery RecordQuery::OfKind(SqlConnection& sql, std::int32_t contentCode, CStringView kindId) {
    return RecordQuery(sql.Query(ZEBX_SELECT_FILES "WHERE f.file_type = $1 AND f.origin_id = $2 "
                                                   "AND f.holder IS NULL "
                                                   "AND f.until_revision IS NULL",
                                 {contentCode, ToUtf8(kindId)}));
}

RecordQuery RecordQuery::OfHolder(SqlConnection& sql, std::int64_t holder) {
    return RecordQuery(
        sql.Query(ZEBX_SELECT_FILES "WHERE f.holder = $1 ORDER BY f.position", {holder}));
}

// `holder`: a table, and which of its rows; the current one is meant.
#define ZEBX_SELECT_FILES_OF_ONE(holder)                                                           \
    ZEBX_SELECT_FILES "WHERE f.holder = (SELECT id FROM " holder                                   \
                      " AND until_revision IS NULL) ORDER BY f.position"
#define ZEBX_SELECT_FILES_OF_ALL(holders)                                                          \
    ZEBX_SELECT_FILES "WHERE f.holder IN (SELECT id FROM " holders                                 \
                      " AND until_revision IS NULL) ORDER BY f.holder, f.position"

RecordQuery RecordQuery::OfRepositoryItem(SqlConnection& sql, CStringView tag, CStringView id) {
    return RecordQuery(
        sql.Query(ZEBX_SELECT_FILES_OF_ONE("repository_item WHERE tag = $1 AND item_id = $2"),
                  {ToUtf8(tag), ToUtf8(id)}));
}

RecordQuery RecordQuery::OfCatalogueItem(SqlConnection& sql, CStringView tag, CStringView id) {
    return RecordQuery(sql.Query(
        ZEBX_SELECT_FILES_OF_ONE("catalogue_item WHERE catalogue_tag = $1 AND item_id = $2"),
        {ToUtf8(tag), ToUtf8(id)}));
}

RecordQuery RecordQuery::OfSettings(SqlConnection& sql, CStringView name) {
    return RecordQuery(
        sql.Query(ZEBX_SELECT_FILES_OF_ONE("general_settings WHERE name = $1"), {ToUtf8(name)}));
}

RecordQuery RecordQuery::OfRepositoryItems(SqlConnection& sql, CStringView tag) {
    return RecordQuery(
        sql.Query(ZEBX_SELECT_FILES_OF_ALL("repository_item WHERE tag = $1"), {ToUtf8(tag)}));
}

RecordQuery RecordQuery::OfCatalogueChildren(SqlConnection& sql, CStringView tag,
                                             CStringView parentId) {
    return RecordQuery(sql.Query(
        ZEBX_SELECT_FILES_OF_ALL("catalogue_item WHERE catalogue_tag = $1 AND parent_id = $2"),
        {ToUtf8(tag), ToUtf8(parentId)}));
}

RecordQuery RecordQuery::OfCatalogue(SqlConnection& sql, CStringView tag) {
    return RecordQuery(sql.Query(
        ZEBX_SELECT_FILES_OF_ALL("catalogue_item WHERE catalogue_tag = $1"), {ToUtf8(tag)}));
}

StoredRecords RecordQuery::Read() {
    StoredRecords records;
    while (m_rows->Next())
        records.push_back(ReadRecord(*m_rows));
    m_rows.reset();
    return records;
}

RepositoryFilePtr StoredRecord::WithContent(TakenContent content) const {
    CheckStoredName(*this);
    CheckContent(record, content);
    auto file = boost::make_shared<CRepositoryFile>();
    file->SetFileId(Platform::ToText(id).c_str());
    file->SetFileManagerId(record.fileManagerId.c_str());
    file->SetOriginId(record.originId.c_str());
    file->SetFileName(record.name.c_str());
    file->SetCustomParameter(record.customParameter.c_str());
    file->SetFileType(static_cast<Repository::enmFileType>(record.fileType));
    file->SetFileBytes(std::move(content.bytes));
    return file;
}

std::vector<WantedContent> ContentsOf(const StoredRecords& records) {
    std::vector<WantedContent> wanted;
    wanted.reserve(records.size());
    for (const StoredRecord& stored : records)
        wanted.push_back({stored.record.hash, stored.record.sizeBytes});
    return wanted;
}

std::vector<FileRecord> PlainRecords(const StoredRecords& records) {
    std::vector<FileRecord> plain;
    for (const StoredRecord& stored : records)
        plain.push_back(stored.record);
    return plain;
}

void FileAttacher::Attach(const StoredRecord& record, const std::function<TakenContent()>& take,
                          Repository::RepositoryFiles& files) {
    try {
        auto file = record.WithContent(take());
        const CString name = file->GetFileName();
        const auto key = std::make_pair(record.holder, Platform::FoldCase(name));
        const CString& first = m_names.try_emplace(key, name).first->second;
        if (first != name)
            throw StorageError(Problem::Refused, MessageNumber::NameDiffersByCase,
                               {name, file->GetOriginId(), first});
        files.push_back(std::move(file));
    } catch (const StorageError& error) {
        if (error.Kind() != Problem::Refused && error.Kind() != Problem::Integrity)
            throw;
        m_leftOut(error);
    }
}

void AttachFiles(SqlConnection& sql, ContentsAhead& contents, const StoredRecords& records,
                 const FileLists& lists, const LeftOut& leftOut) {
    contents.Expect(ContentsOf(records));
    FileAttacher attacher(leftOut);
    for (std::size_t place = 0; place < records.size(); ++place)
        attacher.Attach(
            records[place], [&] { return contents.Take(sql, place); },
            *lists.at(records[place].holder));
    contents.Forget();
}

std::string ReadContent(SqlRows& row, const CString& name, const CString& owner) {
    if (!row.Next() || row.IsNull(2))
        throw StorageError(Problem::Integrity, MessageNumber::ContentMissing, {name, owner});
    if (!Fits(row.Bytes(2), row.Integer(1), row.Bytes(0)))
        throw StorageError(Problem::Integrity, MessageNumber::ContentDamaged, {name, owner});
    return std::string(row.Bytes(2));
}

} // namespace Storage
