// SPDX-License-Identifier: MIT
// The rows of stored files and their contents: what every operation that moves files
// shares.
#pragma once

#include "ZEBXRepositoryClient/StorageBackend.h"
#include "storage/FileCheck.h"
#include "storage/WriteCall.h"

#include <optional>

namespace Storage {

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

// Keeps a content; one that is there already is not touched.
void KeepContent(WriteCall& call, std::string_view bytes, const std::string& hash);

// The current files of a kind, by case-folded name.
std::map<CString, FileRow> KindFiles(SqlConnection& sql, std::int32_t contentCode,
                                     CStringView kindId);
// The files that came with the row `holder`, in order.
std::vector<FileRow> HeldFiles(SqlConnection& sql, std::int64_t holder);
std::vector<FileRecord> HeldRecords(SqlConnection& sql, std::int64_t holder);

// `holder` is nothing for a kind's file.
void InsertFile(WriteCall& call, std::optional<std::int64_t> holder, std::int64_t position,
                const FileRecord& record);
void EndFile(WriteCall& call, std::int64_t id);
void EndHeldFiles(WriteCall& call, std::int64_t holder);

// Decodes the files and keeps their contents.
std::vector<FileRecord> KeepContents(WriteCall& call,
                                     const std::vector<const Repository::CRepositoryFile*>& files,
                                     CStringView owner);
void InsertHeldFiles(WriteCall& call, std::int64_t holder, const std::vector<FileRecord>& records);

// A file all of which was checked but its hash.
struct UncheckedFile {
    boost::shared_ptr<Repository::CRepositoryFile> file;
    std::string expectedHash;

    // Throws Integrity unless `hash`, which the content has, is the expected one.
    void CheckHash(const std::string& hash) const;
};

// Reads files with their contents, each checked before it is given out.
class FileReader {
public:
    static FileReader ById(SqlConnection& sql, std::int64_t id);
    static FileReader OfHolder(SqlConnection& sql, std::int64_t holder);
    // By holder, in order.
    static FileReader OfRepositoryItems(SqlConnection& sql, CStringView tag);
    static FileReader OfCatalogueChildren(SqlConnection& sql, CStringView tag,
                                          CStringView parentId);

    bool Next() { return m_rows->Next(); }
    std::int64_t Holder() const;
    // Throws Refused for a name that may not be given out, Integrity for what is damaged.
    boost::shared_ptr<Repository::CRepositoryFile> File() const;
    // The same but for the hash.
    UncheckedFile ReadUnchecked() const;

private:
    explicit FileReader(std::unique_ptr<SqlRows> rows) : m_rows(std::move(rows)) {}
    void CheckStoredName(const CString& name, const CString& owner) const;
    void CheckContentSize(const CString& name, const CString& owner) const;

    std::unique_ptr<SqlRows> m_rows;
};

// The file lists of items, by the row that their files came with.
using FileLists = std::map<std::int64_t, Repository::RepositoryFiles*>;
using LeftOut = std::function<void(const StorageError&)>;

// Appends the files to their items' lists.  A file that may not be given out is left out and
// told to `leftOut`; so is one whose name differs by case alone from an earlier one's.
void AttachFiles(FileReader reader, const FileLists& lists, const LeftOut& leftOut);

// The bytes of a content of its own, not of a file.  Throws Integrity.
std::string ReadContent(SqlConnection& sql, const std::string& hash, const CString& name,
                        const CString& owner);

} // namespace Storage
