// SPDX-License-Identifier: MIT
// The main of a target that no fuzzer drives: gives it each file of the corpus folders that
// are named, in the order of their names. A folder that is missing or empty is a failure.
#include "Target.h"
#include "support/Bytes.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {

std::vector<std::filesystem::path> FilesOf(const char* folder) {
    std::vector<std::filesystem::path> files;
    std::error_code noFolder;
    for (const auto& entry : std::filesystem::directory_iterator(folder, noFolder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// From memory that ends where the bytes do, so that a sanitizer sees a step beyond.
void Replay(const std::filesystem::path& file) {
    const std::string bytes = BytesOfFile(file);
    const auto exact = std::make_unique<std::uint8_t[]>(bytes.size());
    std::memcpy(exact.get(), bytes.data(), bytes.size());
    LLVMFuzzerTestOneInput(exact.get(), bytes.size());
}

} // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER...\n", arguments[0]);
        return 2;
    }
    for (int i = 1; i < count; ++i) {
        const auto files = FilesOf(arguments[i]);
        if (files.empty()) {
            std::fprintf(stderr, "no seed in %s\n", arguments[i]);
            return 1;
        }
        for (const auto& file : files) {
            std::printf("%s\n", file.c_str());
            std::fflush(stdout); // names the seed of a crash
            Replay(file);
        }
    }
    return 0;
}
