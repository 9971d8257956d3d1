// SPDX-License-Identifier: MIT
#include "storage/store/Store.h"

#include "platform/text/Utf8.h"

namespace Storage {

using Platform::FromUtf8;

Store::Store(std::unique_ptr<SqlConnection> connection, StoreOptions options)
    : m_sql(std::move(connection)), m_options(std::move(options)), m_filesAhead(Cache()),
      m_catalogueAhead(Cache()), m_heldContents(Cache()) {}

// What is on this computer anyway needs no second copy of it.
std::shared_ptr<ContentCache> Store::Cache() const {
    return m_sql->MayAskAhead() ? m_options.cache : nullptr;
}

WriteCall Store::Write(std::string_view operation, CStringView subject) {
    return WriteCall(*m_sql, m_options.stamp(), operation, subject);
}

void Store::ReadState(RepositoryState& state) {
    const ReadTransaction transaction(*m_sql);
    const auto rows = m_sql->Query(
        "SELECT h.schema_version, h.revision, h.content_bytes, r.made_at, r.user_name, "
        "(SELECT COUNT(*) FROM stored_file WHERE holder IS NULL AND until_revision IS NULL) "
        "FROM head h LEFT JOIN revision r ON r.number = h.revision WHERE h.id = 1",
        {});
    if (!rows->Next())
        throw StorageError(Problem::Integrity, MessageNumber::Damaged, {m_sql->Name(), u"head"});
    state.schemaVersion = static_cast<std::int32_t>(rows->Integer(0));
    state.revision = rows->Integer(1);
    state.contentBytes = rows->Integer(2);
    state.revisionTime = FromUtf8(rows->Text(3));
    state.revisionUser = FromUtf8(rows->Text(4));
    state.files = rows->Integer(5);
}

} // namespace Storage
