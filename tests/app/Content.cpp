// SPDX-License-Identifier: MIT
#include "Content.h"

#include <algorithm>
#include <array>

namespace AppTest {
namespace {

constexpr std::array kDrawingFolders = {"label", "nodes", "PipeCatalogueBlocks", "symbol", "GPE"};

constexpr std::array kConfigurationFiles = {
    "ZEBXCurveCatalog.xml",    "ZEBXTerrainType.cfg",       "importMappings_Manhole.xml",
    "importMappings_Pipe.xml", "topologyConfiguration.xml", "AxisPreviews.xml",
    "GeoLabelDef.xml",         "GPEConfiguration.xml"};

constexpr std::size_t kLargeFileBytes = 5 * 1000 * 1000;

// Bytes that look like nothing in particular, the same for the same seed.
std::string Noise(std::size_t size, unsigned seed) {
    std::string bytes(size, '\0');
    std::uint32_t state = seed * 2654435761u + 1u;
    for (char& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

std::vector<fs::path> FilesBelow(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

Made GenerateContent(const fs::path& support) {
    const std::array names = {"plain.dwg",         "with blanks.dwg",  "a, b, and c.dwg",
                              "UPPER.DWG",         "Šaht čvor žđ.dwg", "ČĆŽŠĐ.Dwg",
                              "semi;colon #1.dwg", "100%$@|.dwg"};
    Made made;
    for (const char* folder : kDrawingFolders) {
        for (const char* name : names) {
            const unsigned seed = unsigned(made.drawings++);
            Write(support / folder / name, Noise(1000 + 37u * seed, seed));
        }
    }
    Write(support / "symbol" / "empty.dwg", "");
    Write(support / "nodes" / "large.dwg", Noise(kLargeFileBytes, 77));
    made.drawings += 2;
    for (const char* name : kConfigurationFiles)
        Write(support / name, std::string("<x name=\"") + name + "\">čćžšđ</x>\r\n" +
                                  Noise(256, unsigned(++made.configurations)));
    Write(support / "GeneralSettings.xml", GeneralSettings());
    return made;
}

int CopyRealDrawings(const fs::path& data, const fs::path& support) {
    int drawings = 0;
    for (const fs::path& drawing : FilesBelow(data / "drawings")) {
        const char* folder = kDrawingFolders[std::size_t(drawings++) % kDrawingFolders.size()];
        Write(support / folder / drawing.filename(), Bytes(drawing));
    }
    return drawings;
}

int CopyRealConfigurations(const fs::path& data, std::size_t first, const fs::path& support) {
    const std::vector<fs::path> files = FilesBelow(data / "config");
    int configurations = 0;
    for (const char* name : kConfigurationFiles) {
        if (first < files.size()) {
            Write(support / name, Bytes(files[first++]));
            ++configurations;
        }
    }
    return configurations;
}

std::string GeneralSettings() {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
           "<settings town=\"Đurđevac\" street=\"Čiče Šišića\" note=\"čćđšž ČĆĐŠŽ áéíóöőúüű "
           "ľščťžýáí łąęśźżćń ăâîșț\"/>\n";
}

std::map<std::string, std::string> Tree(const fs::path& folder) {
    std::map<std::string, std::string> tree;
    for (const fs::path& file : FilesBelow(folder))
        tree[file.lexically_relative(folder).string()] = Bytes(file);
    return tree;
}

std::size_t BytesOf(const std::map<std::string, std::string>& tree) {
    std::size_t bytes = 0;
    for (const auto& [path, content] : tree)
        bytes += content.size();
    return bytes;
}

} // namespace AppTest
