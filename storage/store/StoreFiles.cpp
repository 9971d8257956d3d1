// SPDX-License-Identifier: MIT
// Files of kinds.
#include "storage/store/FileSending.h"
#include "storage/store/KindListing.h"
#include "storage/store/Store.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace Storage {
namespace {

using Platform::ToUtf8;

// A row id that was handed out as text; 0, which no row has, for any other text.
std::int64_t ToRowId(CStringView text) {
    const std::string digits = ToUtf8(text);
    std::int64_t id = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
    return error == std::errc() && end == digits.data() + digits.size() ? id : 0;
}

CString SubjectOf(const std::map<KindKey, FilesByName>& kinds) {
    CString subject;
    for (const auto& [kind, files] : kinds)
        subject.append(subject.empty() ? u"" : u", ").append(kind.second);
    return subject;
}

void CheckAgainstStored(const KindKey& kind, const FilesByName& files,
                        const std::map<CString, FileRow>& stored, Refusals& refusals) {
    for (const auto& [folded, file] : files) {
        const auto found = stored.find(folded);
        if (found != stored.end())
            CheckSameCase(file->GetFileName(), kind.second, found->second.record.name, refusals);
    }
}

// The current files of the kinds; on a server all are asked for at once.
std::map<KindKey, std::map<CString, FileRow>>
StoredFilesOf(WriteCall& call, const std::map<KindKey, FilesByName>& kinds) {
    std::map<KindKey, KindFilesQuery> queries;
    std::map<KindKey, std::map<CString, FileRow>> stored;
    for (const auto& [kind, sent] : kinds) {
        KindFilesQuery query(call.Sql(), kind.first, kind.second);
        if (call.Sql().MayAskAhead())
            queries.emplace(kind, std::move(query));
        else
            stored[kind] = query.Read();
    }
    call.TakeTurn();
    for (auto& [kind, query] : queries)
        stored[kind] = query.Read();
    return stored;
}

// Of several whose names differ by case alone the first row's is the right one.  The records are
// sorted.
void TellOtherNames(StoredRecords& records) {
    std::size_t first = 0;
    for (std::size_t i = 1; i < records.size(); ++i) {
        StoredRecord& stored = records[i];
        StoredRecord& right = records[first];
        if (stored.folded != right.folded || right.isFoldedOtherwise) {
            first = i;
        } else if (!stored.isFoldedOtherwise) {
            const bool isEarlier = stored.id < right.id;
            (isEarlier ? right : stored).otherName = (isEarlier ? stored : right).record.name;
            if (isEarlier)
                first = i;
        }
    }
}

// Sorted here and not in SQL, where every engine has an order of its own.
StoredRecords SortedByName(StoredRecords records) {
    std::vector<StoredRecord*> byName;
    for (StoredRecord& stored : records)
        byName.push_back(&stored);
    std::ranges::sort(byName, [](const StoredRecord* left, const StoredRecord* right) {
        return std::tie(left->folded, left->record.name, left->id) <
               std::tie(right->folded, right->record.name, right->id);
    });
    StoredRecords sorted;
    sorted.reserve(records.size());
    for (StoredRecord* stored : byName)
        sorted.push_back(std::move(*stored));
    TellOtherNames(sorted);
    return sorted;
}

// A page that is damaged says nothing to somebody who waits for a file.
[[noreturn]] void ThrowForFile(SqlConnection& sql, std::int64_t id, const StorageError& error) {
    const Message& message = error.Messages()[0];
    if (message.number == MessageNumber::DamagedPage) {
        const auto rows = sql.Query("SELECT name, origin_id FROM stored_file WHERE id = $1", {id});
        if (rows->Next())
            throw StorageError(Problem::Integrity, MessageNumber::ContentPageDamaged,
                               {Platform::FromUtf8(rows->Text(0)),
                                Platform::FromUtf8(rows->Text(1)), message.values[1]});
    }
    throw StorageError(error);
}

} // namespace

void Store::RegisterContent(std::int32_t contentCode, CStringView kindId,
                            std::int32_t messageNumber) {
    CheckTexts({kindId}, kindId, {});
    if (kindId.empty())
        throw StorageError(Problem::Refused, MessageNumber::NothingGiven);
    WriteCall call = Write("RegisterContent", kindId);
    std::int64_t old = 0;
    {
        const auto rows =
            m_sql->Query("SELECT id, message_number FROM kind WHERE content_code = $1 "
                         "AND kind_id = $2 AND until_revision IS NULL",
                         {contentCode, ToUtf8(kindId)});
        call.TakeTurn();
        if (rows->Next()) {
            if (rows->Integer(1) == messageNumber)
                return;
            old = rows->Integer(0);
        }
    }
    m_sql->Execute("UPDATE kind SET until_revision = $2 WHERE id = $1", {old, call.Revision()});
    m_sql->Execute("INSERT INTO kind (id, content_code, kind_id, message_number, since_revision) "
                   "VALUES ($1, $2, $3, $4, $5)",
                   {call.NewId(), contentCode, ToUtf8(kindId), messageNumber, call.Revision()});
    call.Commit();
}

void Store::AddFiles(const Repository::RepositoryFiles& files) {
    const auto kinds = CheckKindFiles(files, m_options.maxFileBytes);
    WriteCall call = Write("AddRepositoryFiles", SubjectOf(kinds));
    const auto stored = StoredFilesOf(call, kinds);
    Refusals refusals;
    for (const auto& [kind, sent] : kinds)
        CheckAgainstStored(kind, sent, stored.at(kind), refusals);
    refusals.ThrowIfAny();
    std::vector<SentFile> all;
    for (const auto& [kind, sent] : kinds) {
        const auto& old = stored.at(kind);
        for (const auto& [folded, file] : sent) {
            const auto found = old.find(folded);
            all.push_back({file, found == old.end() ? nullptr : &found->second});
        }
    }
    FileSending(call, all).Run();
    call.Commit();
}

std::vector<CString> Store::FileIds(std::int32_t contentCode, CStringView kindId) {
    StoredRecords records = SortedByName(ListKind(*m_sql, Cache().get(), contentCode, kindId));
    std::vector<CString> ids;
    for (const StoredRecord& stored : records)
        ids.push_back(Platform::ToText(stored.id));
    m_filesAhead.Expect(std::move(records));
    return ids;
}

RepositoryFilePtr Store::File(CStringView fileId) {
    const std::int64_t id = ToRowId(fileId);
    try {
        return m_filesAhead.File(*m_sql, id);
    } catch (const StorageError& error) {
        ThrowForFile(*m_sql, id, error);
    }
}

} // namespace Storage
