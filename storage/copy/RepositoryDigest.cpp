// SPDX-License-Identifier: MIT
#include "storage/copy/RepositoryDigest.h"

#include "platform/text/Utf8.h"
#include "storage/StorageError.h"
#include "storage/content/ContentHash.h"
#include "storage/copy/CopiedTables.h"

namespace Storage {
namespace {

// Numbers in a form that is the same on every machine.
void AddNumber(RunningHash& digest, std::uint64_t number) {
    char bytes[8];
    for (char& byte : bytes) {
        byte = static_cast<char>(number & 0xff);
        number >>= 8;
    }
    digest.Add({bytes, sizeof(bytes)});
}

// Each value led by its kind and size, so that no two rows look alike.
void AddValue(RunningHash& digest, const SqlValue& value) {
    const auto addBytes = [&](char kind, std::string_view bytes) {
        digest.Add({&kind, 1});
        AddNumber(digest, bytes.size());
        digest.Add(bytes);
    };
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        digest.Add("i");
        AddNumber(digest, static_cast<std::uint64_t>(*number));
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
        addBytes('t', *text);
    } else if (const auto* bytes = std::get_if<SqlBytes>(&value)) {
        addBytes('b', bytes->bytes);
    } else {
        digest.Add("n");
    }
}

std::string DigestOf(SqlRows& rows, std::string_view types) {
    RunningHash digest;
    while (rows.Next())
        for (std::size_t column = 0; column < types.size(); ++column)
            AddValue(digest, ValueOf(rows, types, column));
    return digest.Take();
}

class Comparison {
public:
    Comparison(SqlConnection& original, SqlConnection& copy, std::int64_t revision)
        : m_original(original), m_copy(copy), m_revision(revision) {}

    ContentCounts Run() {
        Compare(u"head", "SELECT revision, last_id, content_bytes FROM head", "iii");
        Compare(u"revision", kAllRevisions, kRevisionTypes);
        ForEachCopiedTable(
            [this](const auto& table) { Compare(table.name, table.all, table.types); });
        Compare(u"content", "SELECT hash, size_bytes FROM content ORDER BY hash", "bi");
        return ReadContents();
    }

private:
    void Compare(CStringView table, SqlText sql, std::string_view types) {
        // Both are asked before either is waited for.
        const auto original = m_original.Query(sql, {});
        const auto copy = m_copy.Query(sql, {});
        if (DigestOf(*original, types) != DigestOf(*copy, types))
            throw StorageError(Problem::Integrity, MessageNumber::CopyDiffers,
                               {CString(table), m_original.Name(), m_copy.Name()});
    }

    ContentCounts ReadContents() {
        ContentCounts counts;
        const auto rows = m_copy.Query("SELECT hash, bytes FROM content ORDER BY hash", {});
        while (rows->Next()) {
            StopCopyIfInterrupted(m_copy, m_revision);
            const std::string_view bytes = rows->Bytes(1);
            if (ContentHash(bytes) != rows->Bytes(0))
                throw StorageError(
                    Problem::Integrity, MessageNumber::CopyKeptOtherBytes,
                    {Platform::FromUtf8(ToHexadecimal(rows->Bytes(0))), m_copy.Name()});
            ++counts.contents;
            counts.bytes += static_cast<std::int64_t>(bytes.size());
        }
        return counts;
    }

    SqlConnection& m_original;
    SqlConnection& m_copy;
    const std::int64_t m_revision;
};

} // namespace

ContentCounts CompareRepositories(SqlConnection& original, SqlConnection& copy,
                                  std::int64_t revision) {
    return Comparison(original, copy, revision).Run();
}

} // namespace Storage
