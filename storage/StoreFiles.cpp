// SPDX-License-Identifier: MIT
// Files of kinds.
#include "storage/Store.h"

#include "platform/host/FileSteps.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>
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

struct SentFile {
    const Repository::CRepositoryFile* file;
    const FileRow* old; // null: new
};

// The contents of files and their hashes, in order; the next ones are hashed meanwhile.
class Contents {
public:
    explicit Contents(const std::vector<SentFile>& files) : m_files(files) {}

    // The next file's bytes, valid until the next call, and their hash.
    std::pair<std::string_view, std::string> Next() {
        while (m_begun < m_files.size() && m_begun < m_taken + kAhead)
            Begin();
        const std::string_view bytes = m_contents[m_taken++ % m_contents.size()].bytes;
        return {bytes, m_hashes.Take()};
    }

private:
    static constexpr std::size_t kAhead = 3;
    struct Content {
        std::string buffer;
        std::string_view bytes;
    };

    void Begin() {
        const auto& file = *m_files[m_begun].file;
        Content& content = m_contents[m_begun++ % m_contents.size()];
        content.bytes = DecodeContent(file, file.GetOriginId(), content.buffer);
        m_hashes.Add(content.bytes);
    }

    const std::vector<SentFile>& m_files;
    std::size_t m_begun = 0;
    std::size_t m_taken = 0;
    std::array<Content, kAhead + 1> m_contents; // those in work and the one that was given out
    HashAhead m_hashes;                         // ends before them
};

void AddOrReplace(WriteCall& call, const SentFile& sent, std::string_view bytes,
                  const std::string& hash) {
    StopIfInterrupted(*sent.file, sent.file->GetOriginId());
    const FileRecord record = RecordOf(*sent.file, bytes, hash);
    if (sent.old && sent.old->record == record)
        return;
    KeepContent(call, bytes, record.hash);
    if (sent.old)
        EndFile(call, sent.old->id);
    InsertFile(call, std::nullopt, 0, record);
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
    std::map<KindKey, std::map<CString, FileRow>> stored;
    Refusals refusals;
    for (const auto& [kind, sent] : kinds) {
        stored[kind] = KindFiles(*m_sql, kind.first, kind.second);
        CheckAgainstStored(kind, sent, stored[kind], refusals);
    }
    refusals.ThrowIfAny();
    std::vector<SentFile> all;
    for (const auto& [kind, sent] : kinds) {
        const auto& old = stored[kind];
        for (const auto& [folded, file] : sent) {
            const auto found = old.find(folded);
            all.push_back({file, found == old.end() ? nullptr : &found->second});
        }
    }
    Contents contents(all);
    for (const SentFile& sent : all) {
        const auto [bytes, hash] = contents.Next();
        AddOrReplace(call, sent, bytes, hash);
        Platform::TellFileStep(Platform::FileStep::Stored);
    }
    call.Commit();
}

std::vector<CString> Store::FileIds(std::int32_t contentCode, CStringView kindId) {
    // Sorted here and not in SQL, where every engine has an order of its own.
    std::vector<std::tuple<CString, CString, std::int64_t>> files;
    const auto rows =
        m_sql->Query("SELECT name, id FROM stored_file WHERE file_type = $1 AND origin_id = $2 "
                     "AND holder IS NULL AND until_revision IS NULL",
                     {contentCode, ToUtf8(kindId)});
    while (rows->Next()) {
        CString name = Platform::FromUtf8(rows->Text(0));
        CString folded = Platform::FoldCase(name);
        files.emplace_back(std::move(folded), std::move(name), rows->Integer(1));
    }
    std::sort(files.begin(), files.end());
    std::vector<CString> ids;
    std::vector<std::int64_t> rowIds;
    for (const auto& [folded, name, id] : files) {
        ids.push_back(Platform::ToText(id));
        rowIds.push_back(id);
    }
    m_filesAhead.Expect(std::move(rowIds));
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
