// SPDX-License-Identifier: MIT
// The repository as a table for people.
#include "storage/store/Store.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"

#include <algorithm>
#include <tuple>

namespace Storage {
namespace {

using Platform::FromUtf8;

StoredFile ReadStoredFile(SqlRows& rows) {
    StoredFile file;
    file.contentCode = static_cast<std::int32_t>(rows.Integer(0));
    file.kind = FromUtf8(rows.Text(1));
    file.id = Platform::ToText(rows.Integer(2));
    file.name = FromUtf8(rows.Text(3));
    file.sizeBytes = rows.Integer(4);
    file.sha256 = FromUtf8(ToHexadecimal(rows.Bytes(5)));
    file.revision = rows.Integer(6);
    file.time = FromUtf8(rows.Text(7));
    return file;
}

std::vector<StoredFile> ReadFiles(SqlConnection& sql) {
    std::vector<StoredFile> files;
    const auto rows = sql.Query("SELECT f.file_type, f.origin_id, f.id, f.name, f.size_bytes, "
                                "f.hash, f.since_revision, r.made_at FROM stored_file f "
                                "LEFT JOIN revision r ON r.number = f.since_revision "
                                "WHERE f.holder IS NULL AND f.until_revision IS NULL",
                                {});
    while (rows->Next())
        files.push_back(ReadStoredFile(*rows));
    return files;
}

// The kinds that were announced and have no files.
void AddEmptyKinds(SqlConnection& sql, std::vector<StoredFile>& files) {
    const auto rows = sql.Query(
        "SELECT k.content_code, k.kind_id, k.since_revision, r.made_at FROM kind k "
        "LEFT JOIN revision r ON r.number = k.since_revision WHERE k.until_revision IS NULL "
        "AND NOT EXISTS (SELECT 1 FROM stored_file f WHERE f.file_type = k.content_code "
        "AND f.origin_id = k.kind_id AND f.holder IS NULL AND f.until_revision IS NULL)",
        {});
    while (rows->Next()) {
        StoredFile kind;
        kind.contentCode = static_cast<std::int32_t>(rows->Integer(0));
        kind.kind = FromUtf8(rows->Text(1));
        kind.revision = rows->Integer(2);
        kind.time = FromUtf8(rows->Text(3));
        files.push_back(kind);
    }
}

void Sort(std::vector<StoredFile>& files) {
    const auto key = [](const StoredFile& file) {
        return std::make_tuple(file.contentCode, CStringView(file.kind),
                               Platform::FoldCase(file.name), CStringView(file.name));
    };
    std::sort(files.begin(), files.end(), [&](const StoredFile& left, const StoredFile& right) {
        return key(left) < key(right);
    });
}

std::vector<StoredGS> ReadSettings(SqlConnection& sql) {
    std::vector<StoredGS> settings;
    const auto rows = sql.Query("SELECT g.name, g.size_bytes, g.hash, g.since_revision, r.made_at "
                                "FROM general_settings g "
                                "LEFT JOIN revision r ON r.number = g.since_revision "
                                "WHERE g.until_revision IS NULL",
                                {});
    while (rows->Next())
        settings.push_back({FromUtf8(rows->Text(0)), rows->Integer(1),
                            FromUtf8(ToHexadecimal(rows->Bytes(2))), rows->Integer(3),
                            FromUtf8(rows->Text(4))});
    std::sort(settings.begin(), settings.end(),
              [](const StoredGS& left, const StoredGS& right) { return left.name < right.name; });
    return settings;
}

} // namespace

void Store::List(std::vector<StoredFile>& files, std::vector<StoredGS>& settings) {
    const ReadTransaction transaction(*m_sql);
    files = ReadFiles(*m_sql);
    AddEmptyKinds(*m_sql, files);
    Sort(files);
    settings = ReadSettings(*m_sql);
}

} // namespace Storage
