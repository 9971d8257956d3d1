// SPDX-License-Identifier: MIT
#include "Workplace.h"

#include "support/Bytes.h"

#include <algorithm>
#include <cstdlib>
#include <sqlite3.h>
#include <stdexcept>

namespace AppTest {
namespace {

constexpr const char* kDrawings[] = {"label/l.dwg",
                                     "nodes/a.dwg",
                                     "nodes/b.dwg",
                                     "nodes/Šaht.dwg",
                                     "GPE/frame.dwg",
                                     "symbol/s.dwg",
                                     "PipeCatalogueBlocks/p.dwg"};
constexpr const char* kConfigurations[] = {"topologyConfiguration.xml", "GPEConfiguration.xml",
                                           "ZEBXTerrainType.cfg"};

// A database as any other program opens it.
class Database {
public:
    explicit Database(const fs::path& path) { Check(sqlite3_open(path.c_str(), &m_database)); }
    ~Database() { sqlite3_close(m_database); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Calls `each` with every row.
    template<typename Each>
    void ForEach(const char* sql, Each each) {
        sqlite3_stmt* statement = nullptr;
        Check(sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr));
        int code = SQLITE_OK;
        while ((code = sqlite3_step(statement)) == SQLITE_ROW)
            each(statement);
        sqlite3_finalize(statement);
        Check(code == SQLITE_DONE ? SQLITE_OK : code);
    }

private:
    void Check(int code) {
        if (code != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_database));
    }
    sqlite3* m_database = nullptr;
};

std::string TextOf(sqlite3_stmt* statement, int column) {
    const void* bytes = sqlite3_column_blob(statement, column);
    const auto size = std::size_t(sqlite3_column_bytes(statement, column));
    return bytes ? std::string(static_cast<const char*>(bytes), size) : std::string();
}

std::string FolderOfKind(const std::string& kind) {
    static const std::map<std::string, std::string> folders = {{"001_LABEL", "label/"},
                                                               {"002_NODE", "nodes/"},
                                                               {"003_PIPE", "PipeCatalogueBlocks/"},
                                                               {"004_SYMBOL", "symbol/"},
                                                               {"005_GPEBLOCKS", "GPE/"}};
    const auto found = folders.find(kind);
    return found == folders.end() ? std::string() : found->second;
}

// Files of one kind go in one call: those of a folder, and each set of configuration files.
std::string CallOf(const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string();
    return folder.empty() ? path : folder;
}

} // namespace

Files Generation(int generation) {
    Files files;
    const auto number = unsigned(generation);
    unsigned seed = 0;
    for (const char* path : kDrawings) {
        ++seed;
        files[path] = SomeBytes(20'000 + 977 * seed * number, seed * 2 + number);
    }
    for (const char* path : kConfigurations)
        files[path] =
            "<generation n=\"" + std::to_string(generation) + "\">" + path + "</generation>";
    files["GeneralSettings.xml"] = "<settings generation=\"" + std::to_string(generation) + "\"/>";
    return files;
}

void WriteFiles(const fs::path& support, const Files& files) {
    for (const auto& [path, bytes] : files)
        Write(support / path, bytes);
}

Files FilesIn(const fs::path& support) {
    Files files;
    if (fs::exists(support))
        for (const auto& entry : fs::recursive_directory_iterator(support))
            if (entry.is_regular_file())
                files[entry.path().lexically_relative(support).string()] = Bytes(entry.path());
    files.erase("GeneralSettings.previous.xml");
    return files;
}

Files FilesOf(const fs::path& repository) {
    // A copy, since other programs write pages without checksums when they tidy up.
    const TemporaryFolder folder;
    for (const char* side : {"", "-wal"})
        if (fs::exists(repository.string() + side))
            fs::copy(repository.string() + side, folder.Native() / ("copy" + std::string(side)));
    Database database(folder.Native() / "copy");
    database.ForEach("PRAGMA integrity_check", [](sqlite3_stmt* row) {
        if (TextOf(row, 0) != "ok")
            throw std::runtime_error(TextOf(row, 0));
    });
    database.ForEach("PRAGMA foreign_key_check",
                     [](sqlite3_stmt*) { throw std::runtime_error("a row refers to nothing"); });
    Files files;
    database.ForEach("SELECT f.origin_id, f.name, c.bytes FROM stored_file f JOIN content c ON "
                     "c.hash = f.hash WHERE f.holder IS NULL AND f.until_revision IS NULL",
                     [&](sqlite3_stmt* row) {
                         files[FolderOfKind(TextOf(row, 0)) + TextOf(row, 1)] = TextOf(row, 2);
                     });
    database.ForEach("SELECT c.bytes FROM general_settings g JOIN content c ON c.hash = g.hash "
                     "WHERE g.until_revision IS NULL",
                     [&](sqlite3_stmt* row) { files["GeneralSettings.xml"] = TextOf(row, 0); });
    return files;
}

std::string WhyNotWhole(const Files& files, bool mayMiss) {
    const Files first = Generation(1);
    const Files second = Generation(2);
    for (const auto& [path, bytes] : files) {
        if (fs::path(path).filename().string().starts_with(".zebx-")) {
            // On its way into another file's place, whole.
            const auto isThis = [&content = bytes](const auto& file) {
                return file.second == content;
            };
            if (std::any_of(second.begin(), second.end(), isThis))
                continue;
        }
        const auto one = first.find(path);
        if (one == first.end())
            return path + " is there";
        if (bytes != one->second && bytes != second.at(path))
            return path + " has " + std::to_string(bytes.size()) + " bytes of neither";
    }
    for (const auto& [path, bytes] : first)
        if (!mayMiss && !files.contains(path))
            return path + " is missing";
    return {};
}

std::string WhyHalfACall(const Files& files, bool mayMiss) {
    if (std::string why = WhyNotWhole(files, mayMiss); !why.empty())
        return why;
    std::map<std::string, std::set<int>> generations;
    for (const auto& [path, bytes] : Generation(1)) {
        const auto found = files.find(path);
        const int generation = found == files.end() ? 0 : found->second == bytes ? 1 : 2;
        generations[CallOf(path)].insert(generation);
    }
    for (const auto& [call, seen] : generations)
        if (seen.size() > 1)
            return call + " is of two generations";
    return {};
}

Snapshot::Snapshot(const Station& station) : m_station(station) {
    fs::copy(station.Folder(), m_copy.Native(), fs::copy_options::recursive);
}

void Snapshot::PutBack() const {
    for (const auto& entry : fs::directory_iterator(m_station.Folder()))
        fs::remove_all(entry.path());
    fs::copy(m_copy.Native(), m_station.Folder(), fs::copy_options::recursive);
}

std::size_t StepThrough(std::size_t calls, std::size_t sample) {
    return std::getenv("ZEBX_EVERY_FAULT") ? 1 : std::max<std::size_t>(1, calls / sample);
}

} // namespace AppTest
