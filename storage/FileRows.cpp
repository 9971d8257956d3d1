// SPDX-License-Identifier: MIT
#include "storage/FileRows.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"
#include "storage/ContentHash.h"

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;
using Repository::CRepositoryFile;

FileRow ReadRow(SqlRows& rows) {
    FileRow row;
    row.id = rows.Integer(0);
    row.record.name = FromUtf8(rows.Text(1));
    row.record.fileManagerId = FromUtf8(rows.Text(2));
    row.record.originId = FromUtf8(rows.Text(3));
    row.record.customParameter = FromUtf8(rows.Text(4));
    row.record.fileType = static_cast<std::int32_t>(rows.Integer(5));
    row.record.sizeBytes = rows.Integer(6);
    row.record.hash = rows.Bytes(7);
    return row;
}

bool ContentIsKnown(SqlConnection& sql, const std::string& hash) {
    return sql.Query("SELECT 1 FROM content WHERE hash = $1", {SqlBytes(hash)})->Next();
}

} // namespace

FileRecord RecordOf(const CRepositoryFile& file, std::string_view bytes, std::string hash) {
    return {file.GetFileName(), file.GetFileManagerId(),
            file.GetOriginId(), file.GetCustomParameter(),
            file.GetFileType(), static_cast<std::int64_t>(bytes.size()),
            std::move(hash)};
}

void KeepContent(WriteCall& call, std::string_view bytes, const std::string& hash) {
    if (ContentIsKnown(call.Sql(), hash))
        return;
    call.Sql().Execute("INSERT INTO content (hash, size_bytes, bytes) VALUES ($1, $2, $3)",
                       {SqlBytes(hash), static_cast<std::int64_t>(bytes.size()), SqlBytes(bytes)});
    call.CountContent(bytes.size());
}

std::map<CString, FileRow> KindFiles(SqlConnection& sql, std::int32_t contentCode,
                                     CStringView kindId) {
    std::map<CString, FileRow> files;
    const auto rows = sql.Query("SELECT id, name, file_manager_id, origin_id, custom_parameter, "
                                "file_type, size_bytes, hash FROM stored_file "
                                "WHERE file_type = $1 AND origin_id = $2 "
                                "AND holder IS NULL AND until_revision IS NULL",
                                {contentCode, ToUtf8(kindId)});
    while (rows->Next()) {
        FileRow row = ReadRow(*rows);
        files.try_emplace(Platform::FoldCase(row.record.name), std::move(row));
    }
    return files;
}

std::vector<FileRow> HeldFiles(SqlConnection& sql, std::int64_t holder) {
    std::vector<FileRow> files;
    const auto rows = sql.Query("SELECT id, name, file_manager_id, origin_id, custom_parameter, "
                                "file_type, size_bytes, hash FROM stored_file "
                                "WHERE holder = $1 ORDER BY position",
                                {holder});
    while (rows->Next())
        files.push_back(ReadRow(*rows));
    return files;
}

std::vector<FileRecord> HeldRecords(SqlConnection& sql, std::int64_t holder) {
    std::vector<FileRecord> records;
    for (FileRow& row : HeldFiles(sql, holder))
        records.push_back(std::move(row.record));
    return records;
}

void InsertFile(WriteCall& call, std::optional<std::int64_t> holder, std::int64_t position,
                const FileRecord& record) {
    call.Sql().Execute(
        "INSERT INTO stored_file (id, holder, position, name, name_folded, file_manager_id, "
        "origin_id, custom_parameter, file_type, size_bytes, hash, since_revision) "
        "VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12)",
        {call.NewId(), holder ? SqlValue(*holder) : SqlValue(nullptr), position,
         ToUtf8(record.name), ToUtf8(Platform::FoldCase(record.name)), ToUtf8(record.fileManagerId),
         ToUtf8(record.originId), ToUtf8(record.customParameter), record.fileType, record.sizeBytes,
         SqlBytes(record.hash), call.Revision()});
}

void EndFile(WriteCall& call, std::int64_t id) {
    call.Sql().Execute("UPDATE stored_file SET until_revision = $2 WHERE id = $1",
                       {id, call.Revision()});
}

void EndHeldFiles(WriteCall& call, std::int64_t holder) {
    call.Sql().Execute("UPDATE stored_file SET until_revision = $2 WHERE holder = $1",
                       {holder, call.Revision()});
}

std::vector<FileRecord>
KeepContents(WriteCall& call, const std::vector<const CRepositoryFile*>& files, CStringView owner) {
    std::vector<FileRecord> records;
    std::string buffer;
    for (const CRepositoryFile* file : files) {
        StopIfInterrupted(*file, owner);
        const std::string_view bytes = DecodeContent(*file, owner, buffer);
        records.push_back(RecordOf(*file, bytes, ContentHash(bytes)));
        KeepContent(call, bytes, records.back().hash);
    }
    return records;
}

void InsertHeldFiles(WriteCall& call, std::int64_t holder, const std::vector<FileRecord>& records) {
    std::int64_t position = 0;
    for (const FileRecord& record : records)
        InsertFile(call, holder, ++position, record);
}

} // namespace Storage
