// SPDX-License-Identifier: MIT
// Contents that were fetched from a server, kept on the workstation by their hash; the store
// asks here first.  docs/storage.md says how the files look.
//
// A pack is a file of several contents that were fetched one after another: thousands of small
// contents cost no file each, and come back in the order in which they are wanted.  Packs are
// used by all of the user's processes at once, and anybody may delete them at any time.
// Nothing here fails: what cannot be kept or read is simply not there.  Any thread.
#pragma once

#include "platform/os/PrivateFolder.h"

#include <array>
#include <map>
#include <mutex>
#include <set>
#include <unordered_map>

namespace Storage {

struct CacheLimits {
    std::uint64_t mostBytes = std::uint64_t{2} << 30;
    std::size_t mostPacks = 1000;
    std::uint64_t packBytes = 8 << 20; // a pack ends when it has as many
    // What the disk must have left: the files that are loaded need their room first.
    std::uint64_t leaveFree = std::uint64_t{1} << 30;
};

struct CacheCounts {
    std::int64_t found = 0;
    std::int64_t damaged = 0; // contents that were removed with their pack
    std::int64_t kept = 0;
};

class ContentCache {
public:
    // `folder` is made when it is missing; one that cannot be used turns the cache off.
    explicit ContentCache(CStringView folder, const CacheLimits& limits = {});
    ContentCache(const ContentCache&) = delete;
    ContentCache& operator=(const ContentCache&) = delete;

    bool IsOn() const { return m_folder.IsOpen(); }

    // Learns what other processes added and removed meanwhile; cheap when that is nothing.
    void LookAgain();

    // Whether nothing was there when this object looked last.
    bool IsEmpty() const;
    // Whether it was there when this object looked last.
    bool Has(const std::string& hash) const;
    // Reads a content that fits its hash; false when it is not there any more.  One that does
    // not fit is removed, with its pack.
    bool Read(const std::string& hash, std::string& bytes);

    CacheCounts Counts() const;

private:
    friend class CacheWriter;
    using Hash = std::array<char, 32>;
    struct FirstBytes {
        std::size_t operator()(const Hash& hash) const;
    };
    struct Place {
        std::uint32_t pack;
        std::uint64_t offset;
        std::uint64_t size;
    };
    struct Pack {
        std::string name;
        bool isUsed = false; // since this object looked last
    };

    enum class Found { Whole, Damaged, Gone };

    void AddPack(const std::string& name, std::uint64_t sizeBytes);
    void ForgetPacks(const std::set<std::uint32_t>& packs);
    Found ReadPlace(const std::string& name, const Place& place, bool isFirstUse,
                    const std::string& hash, std::string& bytes);
    bool MakeRoom(std::uint64_t bytes);
    void Take(const std::string& name, const std::vector<std::pair<Hash, std::uint64_t>>& index);

    CacheLimits m_limits;
    Platform::PrivateFolder m_folder;
    mutable std::mutex m_mutex; // of all below
    std::int64_t m_change = 0;  // of the folder, when it was looked through
    std::uint32_t m_nextPack = 0;
    std::map<std::uint32_t, Pack> m_packs;
    std::unordered_map<Hash, Place, FirstBytes> m_places;
    CacheCounts m_counts;
    std::mutex m_reading; // of the pack that was read last
    Platform::PrivateFile m_open;
    std::string m_openName;
};

// Adds contents to the cache, pack by pack.  One thread.
class CacheWriter {
public:
    explicit CacheWriter(ContentCache& cache) : m_cache(cache) {}
    ~CacheWriter() { Finish(); }
    CacheWriter(const CacheWriter&) = delete;
    CacheWriter& operator=(const CacheWriter&) = delete;

    // `hash` is that of `bytes`.
    void Add(const std::string& hash, std::string_view bytes);
    // Lets everybody see what was added.  After a failure nothing is added until then.
    void FinishList();

private:
    bool Begin(std::uint64_t bytes);
    void Flush();
    void Finish();
    void GiveUp();

    ContentCache& m_cache;
    Platform::PrivateFile m_file;
    std::string m_name; // empty: no pack is begun
    std::string m_waiting;
    std::uint64_t m_bytes = 0;
    std::vector<std::pair<ContentCache::Hash, std::uint64_t>> m_index;
    bool m_isOff = false;
};

} // namespace Storage
