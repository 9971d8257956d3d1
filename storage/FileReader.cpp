// SPDX-License-Identifier: MIT
#include "storage/FileRows.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/ContentHash.h"
#include "storage/NameCheck.h"

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
    kContentSize,
    kContent,
    kOtherName
};

// The columns above.  The last one: another current name of the kind that differs by case
// alone and came first; the tables do not allow one, but somebody may have changed them.
#define ZEBX_SELECT_FILES                                                                          \
    "SELECT f.id, f.holder, f.name, f.name_folded, f.file_manager_id, f.origin_id, "               \
    "f.custom_parameter, f.file_type, f.size_bytes, f.hash, c.size_bytes, c.bytes, "               \
    "(SELECT o.name FROM stored_file o WHERE o.file_type = f.file_type "                           \
    "AND o.origin_id = f.origin_id AND o.name_folded = f.name_folded "                             \
    "AND o.holder IS NULL AND o.until_revision IS NULL "                                           \
    "AND f.holder IS NULL AND f.until_revision IS NULL AND o.id < f.id LIMIT 1) "                  \
    "FROM stored_file f LEFT JOIN content c ON c.hash = f.hash "

bool Fits(std::string_view bytes, std::int64_t sizeBytes, std::string_view hash) {
    return static_cast<std::int64_t>(bytes.size()) == sizeBytes && ContentHash(bytes) == hash;
}

} // namespace

FileReader FileReader::ById(SqlConnection& sql, std::int64_t id) {
    return FileReader(sql.Query(ZEBX_SELECT_FILES "WHERE f.id = $1", {id}));
}

FileReader FileReader::OfHolder(SqlConnection& sql, std::int64_t holder) {
    return FileReader(
        sql.Query(ZEBX_SELECT_FILES "WHERE f.holder = $1 ORDER BY f.position", {holder}));
}

FileReader FileReader::OfRepositoryItems(SqlConnection& sql, CStringView tag) {
    return FileReader(sql.Query(ZEBX_SELECT_FILES
                                "WHERE f.holder IN (SELECT id FROM repository_item "
                                "WHERE tag = $1 AND until_revision IS NULL) "
                                "ORDER BY f.holder, f.position",
                                {ToUtf8(tag)}));
}

FileReader FileReader::OfCatalogueChildren(SqlConnection& sql, CStringView tag,
                                           CStringView parentId) {
    return FileReader(sql.Query(ZEBX_SELECT_FILES
                                "WHERE f.holder IN (SELECT id FROM catalogue_item "
                                "WHERE catalogue_tag = $1 AND parent_id = $2 "
                                "AND until_revision IS NULL) ORDER BY f.holder, f.position",
                                {ToUtf8(tag), ToUtf8(parentId)}));
}

std::int64_t FileReader::Holder() const {
    return m_rows->Integer(kHolder);
}

void FileReader::CheckStoredName(const CString& name, const CString& owner) const {
    if (const auto wrong = CheckName(name))
        throw StorageError(Problem::Refused, *wrong, {name, owner});
    if (!m_rows->IsNull(kOtherName))
        throw StorageError(Problem::Refused, MessageNumber::NameDiffersByCase,
                           {name, owner, FromUtf8(m_rows->Text(kOtherName))});
    if (ToUtf8(Platform::FoldCase(name)) != m_rows->Text(kNameFolded))
        throw StorageError(Problem::Integrity, MessageNumber::RecordDamaged, {name, owner});
}

void FileReader::CheckContentSize(const CString& name, const CString& owner) const {
    if (m_rows->IsNull(kContent))
        throw StorageError(Problem::Integrity, MessageNumber::ContentMissing, {name, owner});
    const std::int64_t sizeBytes = m_rows->Integer(kSizeBytes);
    if (m_rows->Integer(kContentSize) != sizeBytes ||
        static_cast<std::int64_t>(m_rows->Bytes(kContent).size()) != sizeBytes)
        throw StorageError(Problem::Integrity, MessageNumber::ContentDamaged, {name, owner});
}

void UncheckedFile::CheckHash(const std::string& hash) const {
    if (hash != expectedHash)
        throw StorageError(Problem::Integrity, MessageNumber::ContentDamaged,
                           {file->GetFileName(), file->GetOriginId()});
}

boost::shared_ptr<CRepositoryFile> FileReader::File() const {
    const UncheckedFile read = ReadUnchecked();
    read.CheckHash(ContentHash(m_rows->Bytes(kContent)));
    return read.file;
}

UncheckedFile FileReader::ReadUnchecked() const {
    const CString name = FromUtf8(m_rows->Text(kName));
    const CString owner = FromUtf8(m_rows->Text(kOriginId));
    CheckStoredName(name, owner);
    CheckContentSize(name, owner);
    auto file = boost::make_shared<CRepositoryFile>();
    file->SetFileId(Platform::ToText(m_rows->Integer(kId)).c_str());
    file->SetFileManagerId(FromUtf8(m_rows->Text(kFileManagerId)).c_str());
    file->SetOriginId(owner.c_str());
    file->SetFileName(name.c_str());
    file->SetCustomParameter(FromUtf8(m_rows->Text(kCustomParameter)).c_str());
    file->SetFileType(static_cast<Repository::enmFileType>(m_rows->Integer(kFileType)));
    file->SetFileBytes(std::string(m_rows->Bytes(kContent)));
    return {file, std::string(m_rows->Bytes(kHash))};
}

void AttachFiles(FileReader reader, const FileLists& lists, const LeftOut& leftOut) {
    std::map<std::pair<std::int64_t, CString>, CString> names; // holder and folded to name
    while (reader.Next()) {
        try {
            auto file = reader.File();
            const CString name = file->GetFileName();
            const auto key = std::make_pair(reader.Holder(), Platform::FoldCase(name));
            const CString& first = names.try_emplace(key, name).first->second;
            if (first != name)
                throw StorageError(Problem::Refused, MessageNumber::NameDiffersByCase,
                                   {name, file->GetOriginId(), first});
            lists.at(reader.Holder())->push_back(std::move(file));
        } catch (const StorageError& error) {
            if (error.Kind() != Problem::Refused && error.Kind() != Problem::Integrity)
                throw;
            leftOut(error);
        }
    }
}

std::string ReadContent(SqlConnection& sql, const std::string& hash, const CString& name,
                        const CString& owner) {
    const auto rows =
        sql.Query("SELECT size_bytes, bytes FROM content WHERE hash = $1", {SqlBytes(hash)});
    if (!rows->Next())
        throw StorageError(Problem::Integrity, MessageNumber::ContentMissing, {name, owner});
    if (!Fits(rows->Bytes(1), rows->Integer(0), hash))
        throw StorageError(Problem::Integrity, MessageNumber::ContentDamaged, {name, owner});
    return std::string(rows->Bytes(1));
}

} // namespace Storage
