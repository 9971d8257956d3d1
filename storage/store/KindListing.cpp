// SPDX-License-Identifier: MIT
#include "storage/store/KindListing.h"

#include "platform/text/Utf8.h"
#include "storage/content/ContentCache.h"
#include "storage/content/ContentHash.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;

constexpr char kBetweenFields = '\x01';
constexpr char kBetweenRows = '\x02';

enum Field {
    kId,
    kSizeBytes,
    kHash,
    kName,
    kNameFolded,
    kFileManagerId,
    kCustomParameter,
    kFields
};

std::array<std::string, kFields> FieldsOf(const StoredRecord& stored) {
    const FileRecord& record = stored.record;
    return {std::to_string(stored.id),     std::to_string(record.sizeBytes),
            ToHexadecimal(record.hash),    ToUtf8(record.name),
            ToUtf8(stored.folded),         ToUtf8(record.fileManagerId),
            ToUtf8(record.customParameter)};
}

bool IsWritable(const StoredRecord& stored, const std::array<std::string, kFields>& fields) {
    return !stored.isFoldedOtherwise && std::ranges::none_of(fields, [](const std::string& field) {
        return field.find_first_of("\x01\x02") != std::string::npos;
    });
}

// What stands before the next `end`, which goes with it.
std::string_view Take(std::string_view& from, char end) {
    const std::string_view taken = from.substr(0, from.find(end));
    from.remove_prefix(std::min(from.size(), taken.size() + 1));
    return taken;
}

std::int64_t ToNumber(std::string_view digits) {
    std::int64_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

void Keep(ContentCache& cache, const StoredRecords& records) {
    const std::string listing = WriteKindListing(records);
    const std::string hash = ContentHash(listing);
    if (!listing.empty() && !cache.Has(hash))
        CacheWriter(cache).Add(hash, listing);
}

} // namespace

std::string WriteKindListing(const StoredRecords& records) {
    std::vector<const StoredRecord*> byId;
    for (const StoredRecord& stored : records)
        byId.push_back(&stored);
    std::ranges::sort(byId, {}, &StoredRecord::id);
    std::string listing;
    for (const StoredRecord* stored : byId) {
        const auto fields = FieldsOf(*stored);
        if (!IsWritable(*stored, fields))
            return {};
        if (!listing.empty())
            listing += kBetweenRows;
        for (const std::string& field : fields)
            listing.append(field).push_back(kBetweenFields);
        listing.pop_back();
    }
    return listing;
}

StoredRecords ReadKindListing(std::string_view listing, std::int32_t contentCode,
                              CStringView kindId) {
    StoredRecords records;
    while (!listing.empty()) {
        std::string_view row = Take(listing, kBetweenRows);
        std::array<std::string_view, kFields> fields;
        for (std::string_view& field : fields)
            field = Take(row, kBetweenFields);
        StoredRecord& stored = records.emplace_back();
        stored.id = ToNumber(fields[kId]);
        stored.record = {FromUtf8(fields[kName]),
                         FromUtf8(fields[kFileManagerId]),
                         CString(kindId),
                         FromUtf8(fields[kCustomParameter]),
                         contentCode,
                         ToNumber(fields[kSizeBytes]),
                         FromHexadecimal(fields[kHash])};
        stored.folded = FromUtf8(fields[kNameFolded]);
    }
    return records;
}

StoredRecords ListKind(SqlConnection& sql, ContentCache* cache, std::int32_t contentCode,
                       CStringView kindId) {
    const bool mayKeep = cache && cache->IsOn() && !sql.DescribeServer().server.empty();
    if (mayKeep && !cache->IsEmpty()) {
        const std::string hash = sql.KindDigest(contentCode, ToUtf8(kindId));
        cache->LookAgain();
        std::string listing;
        if (!hash.empty() && cache->Has(hash) && cache->Read(hash, listing))
            return ReadKindListing(listing, contentCode, kindId);
    }
    StoredRecords records = RecordQuery::OfKind(sql, contentCode, kindId).Read();
    if (mayKeep)
        Keep(*cache, records);
    return records;
}

} // namespace Storage
