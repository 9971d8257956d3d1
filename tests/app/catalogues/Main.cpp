// SPDX-License-Identifier: MIT
// zebx_convert_catalogues SOURCES SUPPORT_FOLDER: real catalogues to try zebx with.
#include "SourceCatalogues.h"

#include <cstdio>
#include <stdexcept>

int main(int count, char** arguments) try {
    if (count != 3) {
        std::fprintf(stderr, "usage: zebx_convert_catalogues SOURCES SUPPORT_FOLDER\n");
        return 2;
    }
    // The library counts from the root or from the folder of its settings.
    const auto support = std::filesystem::absolute(arguments[2]);
    std::printf("%zu items\n", AppTest::ConvertCatalogues(arguments[1], support));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
