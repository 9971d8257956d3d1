// SPDX-License-Identifier: MIT
#include "storage/copy/CopiedContents.h"

#include "platform/host/Interruption.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/StorageError.h"
#include "storage/content/ContentHash.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Storage {
namespace {

using Platform::FromUtf8;

constexpr std::size_t kHashBytes = 32;
// Asked for at once: few enough for a statement's parameter, many enough for a distant server.
constexpr std::size_t kBatch = 1000;

using Hashes = std::set<std::string>;

// What people call a content: the name and kind of a file that has it, or general settings' name.
Message Described(SqlConnection& from, const std::string& hash, MessageNumber number) {
    CString name = FromUtf8(ToHexadecimal(hash));
    CString kind = u"content";
    try {
        const auto files = from.Query(
            "SELECT name, origin_id FROM stored_file WHERE hash = $1 LIMIT 1", {SqlBytes(hash)});
        if (files->Next()) {
            name = FromUtf8(files->Text(0));
            kind = FromUtf8(files->Text(1));
        } else {
            const auto settings = from.Query(
                "SELECT name FROM general_settings WHERE hash = $1 LIMIT 1", {SqlBytes(hash)});
            if (settings->Next()) {
                name = FromUtf8(settings->Text(0));
                kind = u"GS";
            }
        }
    } catch (const StorageError&) {
        // The rows are damaged as well: the hash has to do.
    }
    return {number, {name, kind, from.Name()}};
}

std::vector<std::string> HashesIn(SqlConnection& from, const RevisionRange& range) {
    std::vector<std::string> hashes;
    const auto rows = from.Query("SELECT hash FROM stored_file "
                                 "WHERE since_revision > $1 AND since_revision <= $2 UNION "
                                 "SELECT hash FROM general_settings "
                                 "WHERE since_revision > $1 AND since_revision <= $2",
                                 {range.after, range.last});
    while (rows->Next())
        hashes.emplace_back(rows->Bytes(0));
    std::sort(hashes.begin(), hashes.end());
    return hashes;
}

std::string Pack(const Hashes& hashes) {
    std::string packed;
    packed.reserve(hashes.size() * kHashBytes);
    for (const std::string& hash : hashes)
        packed += hash;
    return packed;
}

// The hashes that `packed` holds, one behind the other: both engines' arrays differ.
#define ZEBX_JOIN_PACKED(columns)                                                                  \
    "WITH RECURSIVE piece (n) AS (SELECT CAST(1 AS BIGINT) UNION ALL "                             \
    "SELECT n + 1 FROM piece WHERE n < $2) SELECT " columns " FROM piece CROSS JOIN content c "    \
    "WHERE c.hash = substr($1, CAST(n * 32 - 31 AS INTEGER), 32)"

class Copier {
public:
    Copier(SqlConnection& from, SqlConnection& to, const RevisionRange& range)
        : m_from(from), m_to(to), m_range(range) {}

    ContentCounts Run() {
        Hashes batch;
        for (const std::string& hash : HashesIn(m_from, m_range)) {
            // No content can have it, and packed it would shift all others.
            if (hash.size() != kHashBytes)
                Stop(hash, MessageNumber::CopiedContentMissing);
            batch.insert(hash);
            if (batch.size() == kBatch)
                Move(batch);
        }
        Move(batch);
        return m_counts;
    }

private:
    // Empties `batch`.
    void Move(Hashes& batch) {
        LeaveOutKnown(batch);
        if (batch.empty())
            return;
        try {
            if (const auto damaged = Fetch(batch))
                Stop(*damaged, MessageNumber::CopiedContentDamaged);
        } catch (const StorageError& error) {
            if (error.Kind() == Problem::Integrity && error.Messages().size() == 1)
                StopAtUnread(batch);
            throw;
        }
        if (!batch.empty())
            Stop(*batch.begin(), MessageNumber::CopiedContentMissing);
    }

    void LeaveOutKnown(Hashes& batch) {
        const std::string packed = Pack(batch);
        const auto rows = m_to.Query(ZEBX_JOIN_PACKED("c.hash"),
                                     {SqlBytes(packed), static_cast<std::int64_t>(batch.size())});
        while (rows->Next())
            batch.erase(std::string(rows->Bytes(0)));
    }

    // Takes what came out of `batch`.  Stops at one that does not fit its hash, and gives that.
    std::optional<std::string> Fetch(Hashes& batch) {
        const std::string packed = Pack(batch);
        const auto rows = m_from.Query(ZEBX_JOIN_PACKED("c.hash, c.size_bytes, c.bytes"),
                                       {SqlBytes(packed), static_cast<std::int64_t>(batch.size())});
        while (rows->Next()) {
            StopCopyIfInterrupted(m_to, m_range.after);
            const std::string hash(rows->Bytes(0));
            if (batch.erase(hash) > 0 && !Add(hash, rows->Integer(1), rows->Bytes(2)))
                return hash;
        }
        return std::nullopt;
    }

    bool Add(const std::string& hash, std::int64_t sizeBytes, std::string_view bytes) {
        if (sizeBytes != static_cast<std::int64_t>(bytes.size()) || ContentHash(bytes) != hash)
            return false;
        m_to.Execute("INSERT INTO content (hash, size_bytes, bytes) VALUES ($1, $2, $3)",
                     {SqlBytes(hash), sizeBytes, SqlBytes(bytes)});
        ++m_counts.contents;
        m_counts.bytes += sizeBytes;
        return true;
    }

    // The engine tells a place in its file; which of the contents is there is found one by one.
    void StopAtUnread(const Hashes& batch) {
        m_from.Rollback();
        for (const std::string& hash : batch)
            if (!IsReadable(hash))
                Stop(hash, MessageNumber::CopiedContentDamaged);
    }

    bool IsReadable(const std::string& hash) {
        try {
            const auto rows =
                m_from.Query("SELECT bytes FROM content WHERE hash = $1", {SqlBytes(hash)});
            if (rows->Next())
                (void)rows->Bytes(0); // SQLite reads the pages of a large value only now
            return true;
        } catch (const StorageError&) {
            return false;
        }
    }

    [[noreturn]] void Stop(const std::string& hash, MessageNumber number) {
        throw StorageError(Problem::Integrity, {Described(m_from, hash, number),
                                                {MessageNumber::CopyStopsAt,
                                                 {m_to.Name(), Platform::ToText(m_range.after)}}});
    }

    SqlConnection& m_from;
    SqlConnection& m_to;
    const RevisionRange m_range;
    ContentCounts m_counts;
};

} // namespace

void StopCopyIfInterrupted(SqlConnection& to, std::int64_t revision) {
    if (Platform::IsInterrupted())
        throw StorageError(Problem::Interrupted, MessageNumber::CopyInterrupted,
                           {to.Name(), Platform::ToText(revision)});
}

ContentCounts CopyContents(SqlConnection& from, SqlConnection& to, const RevisionRange& range) {
    return Copier(from, to, range).Run();
}

} // namespace Storage
