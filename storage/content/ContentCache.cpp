// SPDX-License-Identifier: MIT
#include "storage/content/ContentCache.h"

#include "storage/content/ContentHash.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Storage {
namespace {

// A pack: the contents; for each its hash and its size; how many they are, the hash of all that
// is behind the contents before it, and the magic.  Numbers are 8 bytes, the lowest first.
constexpr std::size_t kHashBytes = 32;
constexpr std::size_t kEntryBytes = kHashBytes + 8;
constexpr std::size_t kFooterBytes = 8 + kHashBytes + 8;
constexpr std::string_view kMagic = "ZEBXPCK1";
constexpr std::string_view kSuffix = ".contents";
constexpr std::string_view kNewSuffix = ".new";
// Written in pieces of that size, so that small contents cost no call each.
constexpr std::size_t kPieceBytes = 256 * 1024;
// A pack on its way that nobody wrote to for so long is a killed process's.
constexpr std::int64_t kLeftOverNs = std::int64_t{3600} * 1'000'000'000;
// An index beyond that is none of ours.
constexpr std::uint64_t kMostEntries = 1'000'000;

void AppendNumber(std::string& bytes, std::uint64_t number) {
    for (int i = 0; i < 8; ++i)
        bytes += static_cast<char>(number >> (8 * i));
}

std::uint64_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint64_t number = 0;
    for (std::size_t i = 8; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

template<typename Hash>
Hash HashOf(std::string_view bytes) {
    Hash hash = {};
    std::memcpy(hash.data(), bytes.data(), std::min(bytes.size(), hash.size()));
    return hash;
}

std::string IndexOf(const auto& index) {
    std::string bytes;
    for (const auto& [hash, size] : index) {
        bytes.append(hash.data(), hash.size());
        AppendNumber(bytes, size);
    }
    AppendNumber(bytes, index.size());
    bytes += ContentHash(bytes);
    return bytes.append(kMagic);
}

// The entries of a pack; nothing when it is damaged or no pack.
std::string ReadIndex(const Platform::PrivateFile& file, std::uint64_t sizeBytes) {
    std::string footer(kFooterBytes, '\0');
    if (sizeBytes < kFooterBytes ||
        file.ReadAt(sizeBytes - kFooterBytes, footer.data(), kFooterBytes) ||
        !footer.ends_with(kMagic))
        return {};
    const std::uint64_t count = NumberAt(footer, 0);
    if (count > kMostEntries || count * kEntryBytes > sizeBytes - kFooterBytes)
        return {};
    std::string entries(count * kEntryBytes, '\0');
    if (file.ReadAt(sizeBytes - kFooterBytes - entries.size(), entries.data(), entries.size()))
        return {};
    const bool fits = ContentHash(entries + footer.substr(0, 8)) == footer.substr(8, kHashBytes);
    return fits ? entries : std::string();
}

} // namespace

std::size_t ContentCache::FirstBytes::operator()(const Hash& hash) const {
    std::size_t number = 0;
    std::memcpy(&number, hash.data(), sizeof(number));
    return number;
}

ContentCache::ContentCache(CStringView folder, const CacheLimits& limits) : m_limits(limits) {
    if (!folder.empty() && !m_folder.Open(folder))
        LookAgain();
}

void ContentCache::LookAgain() {
    const std::lock_guard lock(m_mutex);
    if (!IsOn())
        return;
    for (auto& [number, pack] : m_packs)
        pack.isUsed = false;
    std::int64_t change = 0;
    std::vector<Platform::PrivateFolder::Entry> files;
    if (m_folder.GetChange(change) || change == m_change || m_folder.List(files))
        return;
    m_change = change;
    std::map<std::string, std::uint64_t> there;
    for (const auto& file : files)
        if (file.name.ends_with(kSuffix))
            there[file.name] = file.sizeBytes;
    std::set<std::uint32_t> gone;
    for (const auto& [number, pack] : m_packs)
        if (there.erase(pack.name) == 0)
            gone.insert(number);
    ForgetPacks(gone);
    for (const auto& [name, size] : there)
        AddPack(name, size);
}

void ContentCache::AddPack(const std::string& name, std::uint64_t sizeBytes) {
    Platform::PrivateFile file;
    if (m_folder.OpenFile(name, file))
        return;
    const std::string entries = ReadIndex(file, sizeBytes);
    if (entries.empty()) {
        ++m_counts.damaged;
        m_folder.Remove(name);
        return;
    }
    std::vector<std::pair<Hash, std::uint64_t>> index;
    for (std::size_t at = 0; at < entries.size(); at += kEntryBytes)
        index.emplace_back(HashOf<Hash>(std::string_view(entries).substr(at)),
                           NumberAt(entries, at + kHashBytes));
    Take(name, index);
}

void ContentCache::Take(const std::string& name,
                        const std::vector<std::pair<Hash, std::uint64_t>>& index) {
    const std::uint32_t number = m_nextPack++;
    m_packs[number] = {name};
    std::uint64_t offset = 0;
    for (const auto& [hash, size] : index) {
        m_places.insert_or_assign(hash, Place{number, offset, size});
        offset += size;
    }
}

void ContentCache::ForgetPacks(const std::set<std::uint32_t>& packs) {
    if (packs.empty())
        return;
    std::erase_if(m_places, [&](const auto& place) { return packs.contains(place.second.pack); });
    for (const std::uint32_t pack : packs)
        m_packs.erase(pack);
}

bool ContentCache::IsEmpty() const {
    const std::lock_guard lock(m_mutex);
    return m_places.empty();
}

bool ContentCache::Has(const std::string& hash) const {
    const std::lock_guard lock(m_mutex);
    return m_places.contains(HashOf<Hash>(hash));
}

bool ContentCache::Read(const std::string& hash, std::string& bytes) {
    bytes.clear();
    Place place = {};
    std::string name;
    bool isFirstUse = false;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_places.find(HashOf<Hash>(hash));
        if (found == m_places.end())
            return false;
        place = found->second;
        Pack& pack = m_packs.at(place.pack);
        name = pack.name;
        isFirstUse = !std::exchange(pack.isUsed, true);
    }
    const Found found = ReadPlace(name, place, isFirstUse, hash, bytes);
    if (found != Found::Whole)
        bytes.clear();
    if (found == Found::Damaged)
        m_folder.Remove(name);
    const std::lock_guard lock(m_mutex);
    m_counts.found += found == Found::Whole ? 1 : 0;
    m_counts.damaged += found == Found::Damaged ? 1 : 0;
    if (found != Found::Whole)
        ForgetPacks({place.pack});
    return found == Found::Whole;
}

ContentCache::Found ContentCache::ReadPlace(const std::string& name, const Place& place,
                                            bool isFirstUse, const std::string& hash,
                                            std::string& bytes) {
    const std::lock_guard lock(m_reading);
    if (m_openName != name) {
        m_openName.clear();
        if (m_folder.OpenFile(name, m_open))
            return Found::Gone;
        m_openName = name;
    }
    if (isFirstUse)
        m_open.Touch();
    std::uint64_t packBytes = 0;
    if (m_open.GetSize(packBytes) || place.offset > packBytes ||
        place.size > packBytes - place.offset)
        return Found::Damaged;
    bytes.resize(place.size);
    const bool isWhole =
        !m_open.ReadAt(place.offset, bytes.data(), bytes.size()) && ContentHash(bytes) == hash;
    return isWhole ? Found::Whole : Found::Damaged;
}

CacheCounts ContentCache::Counts() const {
    const std::lock_guard lock(m_mutex);
    return m_counts;
}

// Removes the packs that were not used for longest until `bytes` more fit in.
bool ContentCache::MakeRoom(std::uint64_t bytes) {
    std::vector<Platform::PrivateFolder::Entry> files;
    if (bytes > m_limits.mostBytes / 4 || m_folder.List(files))
        return false;
    std::erase_if(files, [](const auto& file) {
        return !file.name.ends_with(kSuffix) && !file.name.ends_with(kNewSuffix);
    });
    std::ranges::sort(files, {}, &Platform::PrivateFolder::Entry::changedNs);
    std::uint64_t all = bytes;
    std::size_t packs = 1;
    for (const auto& file : files) {
        all += file.sizeBytes;
        packs += file.name.ends_with(kSuffix) ? 1 : 0;
    }
    for (const auto& file : files) {
        const bool isPack = file.name.ends_with(kSuffix);
        const bool isLeft = file.name.ends_with(kNewSuffix) &&
                            files.back().changedNs - file.changedNs > kLeftOverNs;
        const bool isTooMuch = all > m_limits.mostBytes || packs > m_limits.mostPacks;
        if (!isLeft && !(isPack && isTooMuch))
            continue;
        const std::error_code error = m_folder.Remove(file.name);
        if (error && error != std::errc::no_such_file_or_directory)
            return false;
        all -= file.sizeBytes;
        packs -= isPack ? 1 : 0;
    }
    std::uint64_t free = 0;
    return all <= m_limits.mostBytes && packs <= m_limits.mostPacks &&
           !m_folder.GetFreeBytes(free) && free >= m_limits.leaveFree + bytes;
}

bool CacheWriter::Begin(std::uint64_t bytes) {
    const std::string name = RandomName();
    if (!m_cache.MakeRoom(std::max(bytes, m_cache.m_limits.packBytes)) ||
        m_cache.m_folder.CreateFile(name + std::string(kNewSuffix), m_file))
        return false;
    m_name = name;
    return true;
}

void CacheWriter::Add(const std::string& hash, std::string_view bytes) {
    if (m_isOff || !m_cache.IsOn())
        return;
    if (m_name.empty() && !Begin(bytes.size())) {
        // Tried again with the next list.
        m_isOff = true;
        return;
    }
    m_index.emplace_back(HashOf<ContentCache::Hash>(hash), bytes.size());
    m_bytes += bytes.size();
    if (bytes.size() < kPieceBytes)
        m_waiting.append(bytes);
    if (m_waiting.size() >= kPieceBytes || bytes.size() >= kPieceBytes)
        Flush();
    if (bytes.size() >= kPieceBytes && m_file.Append(bytes))
        GiveUp();
    if (m_bytes >= m_cache.m_limits.packBytes)
        Finish();
}

void CacheWriter::Flush() {
    if (!m_waiting.empty() && m_file.Append(m_waiting))
        GiveUp();
    m_waiting.clear();
}

void CacheWriter::GiveUp() {
    m_file.Close();
    if (!m_name.empty())
        m_cache.m_folder.Remove(m_name + std::string(kNewSuffix));
    m_name.clear();
    m_index.clear();
    m_waiting.clear();
    m_bytes = 0;
    m_isOff = true;
}

void CacheWriter::Finish() {
    if (!m_name.empty()) {
        m_waiting += IndexOf(m_index);
        Flush();
    }
    if (!m_name.empty()) {
        m_file.Close();
        const std::string name = m_name + std::string(kSuffix);
        if (m_cache.m_folder.Rename(m_name + std::string(kNewSuffix), name)) {
            GiveUp();
        } else {
            const std::lock_guard lock(m_cache.m_mutex);
            m_cache.Take(name, m_index);
            m_cache.m_counts.kept += static_cast<std::int64_t>(m_index.size());
        }
    }
    m_name.clear();
    m_index.clear();
    m_bytes = 0;
}

void CacheWriter::FinishList() {
    Finish();
    m_isOff = false;
}

} // namespace Storage
