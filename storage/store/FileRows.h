// SPDX-License-Identifier: MIT
// The rows of stored files and their contents: what every operation that moves files
// shares.
#pragma once

#include "ZEBXRepositoryClient/StorageBackend.h"
#include "storage/content/ContentsAhead.h"
#include "storage/store/FileCheck.h"
#include "storage/store/WriteCall.h"

#include <optional>

namespace Storage {

using RepositoryFilePtr = boost::shared_ptr<Repository::CRepositoryFile>;

// What is kept of a file beside its content.
struct FileRecord {
    CString name;
    CString fileManagerId;
    CString originId;
    CString customParameter;
    std::int32_t fileType = 0;
    std::int64_t sizeBytes = 0;
    std::string hash;

    bool operator==(const FileRecord&) const = default;
};

struct FileRow {
    std::int64_t id = 0;
    FileRecord record;
};

FileRecord RecordOf(const Repository::CRepositoryFile& file, std::string_view bytes,
                    std::string hash);

// Which of some contents the repository has: asked with one query.
class KnownContents {
public:
    // Asks, and waits for nothing.
    KnownContents(SqlConnection& sql, const std::vector<std::string_view>& hashes);
    bool IsKnown(std::size_t number);

private:
    void Read();

    std::unique_ptr<SqlRows> m_rows; // until they are read
    std::vector<bool> m_isKnown;
};

// The current files of a kind, by case-folded name.
class KindFilesQuery {
public:
    KindFilesQuery(SqlConnection& sql, std::int32_t contentCode, CStringView kindId);
    std::map<CString, FileRow> Read();

private:
    std::unique_ptr<SqlRows> m_rows;
};

// `holder` is nothing for a kind's file.
void InsertFile(WriteCall& call, std::optional<std::int64_t> holder, std::int64_t position,
                const FileRecord& record);
void EndFile(WriteCall& call, std::int64_t id);
void EndHeldFiles(WriteCall& call, std::int64_t holder);

// Files that travel with something, on their way into the repository.
class SentFiles {
public:
    // Decodes and hashes them; the files must stay as they are.
    SentFiles(const std::vector<const Repository::CRepositoryFile*>& files, CStringView owner);
    const std::vector<FileRecord>& Records() const { return m_records; }

    // Which contents are known, to be sent with what else is asked; `also` is the hash of one
    // more.
    void AskKnown(SqlConnection& sql, std::string_view also = {});
    bool IsAlsoKnown() { return m_known->IsKnown(m_files.size()); }
    // Adds the contents that the repository does not have.
    void Keep(WriteCall& call);

private:
    struct Sent {
        const Repository::CRepositoryFile* file = nullptr;
        std::string buffer;
        std::string_view bytes;
    };

    CStringView m_owner;
    std::vector<Sent> m_files;
    std::vector<FileRecord> m_records;
    std::optional<KnownContents> m_known;
};

void InsertHeldFiles(WriteCall& call, std::int64_t holder, const std::vector<FileRecord>& records);

// A file as its row tells it, before anything of it was checked.
struct StoredRecord {
    std::int64_t id = 0;
    std::int64_t holder = 0;
    FileRecord record;
    CString folded;                   // the name
    bool isFoldedOtherwise = false;   // in the row than here
    std::optional<CString> otherName; // that came first and differs by case alone

    // The file with that content.  Throws Refused for a name that may not be given out,
    // Integrity for what is damaged.
    RepositoryFilePtr WithContent(TakenContent content) const;
};
using StoredRecords = std::vector<StoredRecord>;

// A query for records.
class RecordQuery {
public:
    static RecordQuery ById(SqlConnection& sql, std::int64_t id);
    // The current ones, in no order, without their other names.
    static RecordQuery OfKind(SqlConnection& sql, std::int32_t contentCode, CStringView kindId);
    static RecordQuery OfHolder(SqlConnection& sql, std::int64_t holder);
    static RecordQuery OfRepositoryItem(SqlConnection& sql, CStringView tag, CStringView id);
    static RecordQuery OfCatalogueItem(SqlConnection& sql, CStringView tag, CStringView id);
    static RecordQuery OfSettings(SqlConnection& sql, CStringView name);
    // By holder, in order.
    static RecordQuery OfRepositoryItems(SqlConnection& sql, CStringView tag);
    static RecordQuery OfCatalogueChildren(SqlConnection& sql, CStringView tag,
                                           CStringView parentId);
    static RecordQuery OfCatalogue(SqlConnection& sql, CStringView tag);

    StoredRecords Read();

private:
    explicit RecordQuery(std::unique_ptr<SqlRows> rows) : m_rows(std::move(rows)) {}
    std::unique_ptr<SqlRows> m_rows;
};

std::vector<WantedContent> ContentsOf(const StoredRecords& records);
std::vector<FileRecord> PlainRecords(const StoredRecords& records);

// The file lists of items, by the row that their files came with.
using FileLists = std::map<std::int64_t, Repository::RepositoryFiles*>;
using LeftOut = std::function<void(const StorageError&)>;

// Appends files to an item's list.  A file that may not be given out is left out and told to
// `leftOut`; so is one whose name differs by case alone from an earlier one's.
class FileAttacher {
public:
    explicit FileAttacher(const LeftOut& leftOut) : m_leftOut(leftOut) {}
    // `take` gives the content and may throw.
    void Attach(const StoredRecord& record, const std::function<TakenContent()>& take,
                Repository::RepositoryFiles& files);

private:
    const LeftOut& m_leftOut;
    std::map<std::pair<std::int64_t, CString>, CString> m_names; // holder and folded to name
};

// Reads the contents of all records, in their order, and attaches the files.  Outside of
// transactions, which a damaged content would end: contents never change.
void AttachFiles(SqlConnection& sql, ContentsAhead& contents, const StoredRecords& records,
                 const FileLists& lists, const LeftOut& leftOut);

// The bytes of a content of its own, not of a file: `row` gives its hash, size and bytes, which
// are null when it is not there.  Throws Integrity.
std::string ReadContent(SqlRows& row, const CString& name, const CString& owner);

} // namespace Storage
