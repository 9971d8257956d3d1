// SPDX-License-Identifier: MIT
// General settings, by name.
#include "storage/store/Store.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"

#include <algorithm>
#include <utility>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;

struct SettingsRow {
    std::int64_t id;
    std::string hash;
};

class SettingsQuery {
public:
    SettingsQuery(SqlConnection& sql, CStringView name)
        : m_rows(sql.Query("SELECT id, hash FROM general_settings "
                           "WHERE name = $1 AND until_revision IS NULL",
                           {ToUtf8(name)})) {}
    std::optional<SettingsRow> Read() {
        const auto rows = std::exchange(m_rows, nullptr);
        if (!rows->Next())
            return std::nullopt;
        return SettingsRow{rows->Integer(0), std::string(rows->Bytes(1))};
    }

private:
    std::unique_ptr<SqlRows> m_rows;
};

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
    SettingsQuery query(*m_sql, name);
    RecordQuery records = RecordQuery::OfSettings(*m_sql, name);
    auto text = m_sql->Query("SELECT g.hash, c.size_bytes, c.bytes FROM general_settings g "
                             "LEFT JOIN content c ON c.hash = g.hash "
                             "WHERE g.name = $1 AND g.until_revision IS NULL",
                             {ToUtf8(name)});
    if (!query.Read())
        return std::nullopt;
    StoredRecords files = records.Read();
    GeneralSettings settings;
    settings.xml = FromUtf8(ReadContent(*text, CString(name), OwnerName({})));
    text.reset();
    for (const StoredRecord& file : files)
        settings.fileIds.push_back(Platform::ToText(file.id));
    m_filesAhead.Expect(std::move(files));
    return settings;
}

void Store::SaveGeneralSettings(CStringView xml, const Repository::RepositoryFiles& files,
                                CStringView name) {
    const CString owner = OwnerName(name);
    CheckTexts({xml, name}, name, OwnerName({}));
    SentFiles sent(CheckHeldFiles(files, owner, m_options.maxFileBytes), owner);
    const std::string bytes = ToUtf8(xml);
    const std::string hash = ContentHash(bytes);
    WriteCall call = Write("SaveGS", name);
    SettingsQuery query(*m_sql, name);
    RecordQuery records = RecordQuery::OfSettings(*m_sql, name);
    sent.AskKnown(*m_sql, hash);
    call.TakeTurn();
    const auto old = query.Read();
    if (PlainRecords(records.Read()) == sent.Records() && old && old->hash == hash)
        return;
    sent.Keep(call);
    call.KeepContent(bytes, hash, sent.IsAlsoKnown());
    if (old)
        EndSettings(call, old->id);
    const std::int64_t id = call.NewId();
    m_sql->Execute("INSERT INTO general_settings (id, name, size_bytes, hash, since_revision) "
                   "VALUES ($1, $2, $3, $4, $5)",
                   {id, ToUtf8(name), static_cast<std::int64_t>(bytes.size()), SqlBytes(hash),
                    call.Revision()});
    InsertHeldFiles(call, id, sent.Records());
    call.Commit();
}

} // namespace Storage
