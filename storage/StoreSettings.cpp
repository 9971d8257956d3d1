// SPDX-License-Identifier: MIT
// General settings, by name.
#include "storage/Store.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/ContentHash.h"

#include <algorithm>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;

struct SettingsRow {
    std::int64_t id;
    std::string hash;
};

std::optional<SettingsRow> FindSettings(SqlConnection& sql, const std::string& name) {
    const auto rows = sql.Query("SELECT id, hash FROM general_settings "
                                "WHERE name = $1 AND until_revision IS NULL",
                                {name});
    if (!rows->Next())
        return std::nullopt;
    return SettingsRow{rows->Integer(0), std::string(rows->Bytes(1))};
}

// What the user calls them; the default ones have no name.
CString OwnerName(CStringView name) {
    return name.empty() ? CString(u"GS") : u"GS " + CString(name);
}

void EndSettings(WriteCall& call, std::int64_t id) {
    call.Sql().Execute("UPDATE general_settings SET until_revision = $2 WHERE id = $1",
                       {id, call.Revision()});
    EndHeldFiles(call, id);
}

} // namespace

std::vector<CString> Store::GeneralSettingsNames() {
    std::vector<CString> names;
    const auto rows =
        m_sql->Query("SELECT name FROM general_settings WHERE until_revision IS NULL", {});
    while (rows->Next())
        names.push_back(FromUtf8(rows->Text(0)));
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<GeneralSettings> Store::LoadGeneralSettings(CStringView name) {
    const ReadTransaction transaction(*m_sql);
    const auto row = FindSettings(*m_sql, ToUtf8(name));
    if (!row)
        return std::nullopt;
    GeneralSettings settings;
    settings.xml = FromUtf8(ReadContent(*m_sql, row->hash, CString(name), OwnerName({})));
    for (const FileRow& file : HeldFiles(*m_sql, row->id))
        settings.fileIds.push_back(Platform::ToText(file.id));
    return settings;
}

void Store::SaveGeneralSettings(CStringView xml, const Repository::RepositoryFiles& files,
                                CStringView name) {
    const CString owner = OwnerName(name);
    CheckTexts({xml, name}, name, OwnerName({}));
    const auto held = CheckHeldFiles(files, owner, m_options.maxFileBytes);
    const std::string bytes = ToUtf8(xml);
    const std::string hash = ContentHash(bytes);
    WriteCall call = Write("SaveGS", name);
    const auto old = FindSettings(*m_sql, ToUtf8(name));
    const auto records = KeepContents(call, held, owner);
    if (old && old->hash == hash && HeldRecords(*m_sql, old->id) == records)
        return;
    KeepContent(call, bytes, hash);
    if (old)
        EndSettings(call, old->id);
    const std::int64_t id = call.NewId();
    m_sql->Execute("INSERT INTO general_settings (id, name, size_bytes, hash, since_revision) "
                   "VALUES ($1, $2, $3, $4, $5)",
                   {id, ToUtf8(name), static_cast<std::int64_t>(bytes.size()), SqlBytes(hash),
                    call.Revision()});
    InsertHeldFiles(call, id, records);
    call.Commit();
}

} // namespace Storage
