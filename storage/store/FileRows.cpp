// SPDX-License-Identifier: MIT
#include "storage/store/FileRows.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"

#include <utility>

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

} // namespace

FileRecord RecordOf(const CRepositoryFile& file, std::string_view bytes, std::string hash) {
    return {file.GetFileName(), file.GetFileManagerId(),
            file.GetOriginId(), file.GetCustomParameter(),
            file.GetFileType(), static_cast<std::int64_t>(bytes.size()),
            std::move(hash)};
}

KnownContents::KnownContents(SqlConnection& sql, const std::vector<std::string_view>& hashes)
    : m_isKnown(hashes.size()) {
    if (hashes.empty())
        return;
    const std::string packed = PackHashes(hashes);
    m_rows =
        sql.Query("WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $2) "
                  "SELECT n.i FROM n WHERE EXISTS "
                  "(SELECT 1 FROM content c WHERE c.hash = substr($1, n.i * 32 - 31, 32))",
                  {SqlBytes(packed), static_cast<std::int64_t>(hashes.size())});
    if (!sql.MayAskAhead())
        Read(); // the next ones are asked for before these are needed
}

void KnownContents::Read() {
    for (const auto rows = std::exchange(m_rows, nullptr); rows && rows->Next();)
        m_isKnown.at(static_cast<std::size_t>(rows->Integer(0) - 1)) = true;
}

bool KnownContents::IsKnown(std::size_t number) {
    Read();
    return m_isKnown.at(number);
}

KindFilesQuery::KindFilesQuery(SqlConnection& sql, std::int32_t contentCode, CStringView kindId)
    : m_rows(sql.Query("SELECT id, name, file_manager_id, origin_id, custom_parameter, "
                       "file_type, size_bytes, hash FROM stored_file "
                       "WHERE file_type = $1 AND origin_id = $2 "
                       "AND holder IS NULL AND until_revision IS NULL",
                       {contentCode, ToUtf8(kindId)})) {}

std::map<CString, FileRow> KindFilesQuery::Read() {
    std::map<CString, FileRow> files;
    for (const auto rows = std::exchange(m_rows, nullptr); rows->Next();) {
        FileRow row = ReadRow(*rows);
        files.try_emplace(Platform::FoldCase(row.record.name), std::move(row));
    }
    return files;
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

SentFiles::SentFiles(const std::vector<const CRepositoryFile*>& files, CStringView owner)
    : m_owner(owner) {
    m_files.reserve(files.size()); // the bytes may lie in the buffers
    for (const CRepositoryFile* file : files) {
        StopIfInterrupted(*file, owner);
        Sent& sent = m_files.emplace_back();
        sent.file = file;
        sent.bytes = DecodeContent(*file, owner, sent.buffer);
        m_records.push_back(RecordOf(*file, sent.bytes, ContentHash(sent.bytes)));
    }
}

void SentFiles::AskKnown(SqlConnection& sql, std::string_view also) {
    std::vector<std::string_view> hashes;
    for (const FileRecord& record : m_records)
        hashes.push_back(record.hash);
    if (!also.empty())
        hashes.push_back(also);
    m_known.emplace(sql, hashes);
}

void SentFiles::Keep(WriteCall& call) {
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        StopIfInterrupted(*m_files[i].file, m_owner);
        call.KeepContent(m_files[i].bytes, m_records[i].hash, m_known->IsKnown(i));
    }
}

void InsertHeldFiles(WriteCall& call, std::int64_t holder, const std::vector<FileRecord>& records) {
    std::int64_t position = 0;
    for (const FileRecord& record : records)
        InsertFile(call, holder, ++position, record);
}

} // namespace Storage
