// SPDX-License-Identifier: MIT
// Content for a workstation's support folder, generated or from real files, and the
// comparison of two such folders.
#pragma once

#include "Station.h"

namespace AppTest {

// How many files of each group were made.
struct Made {
    int drawings = 0;
    int configurations = 0;
};

// Generates files for every built-in kind and the general settings: names with blanks,
// commas, capitals and Central European letters, every byte value, an empty file, one of
// 5 MB.  The same bytes at each call.
Made GenerateContent(const fs::path& support);

// Copies the real drawings of `data`, in turn, to the drawing kinds' folders; gives their
// number.
int CopyRealDrawings(const fs::path& data, const fs::path& support);

// Copies real configuration files of `data`, from the one of that index on, under the names
// of the configuration kinds, as many as there are names; gives their number.
int CopyRealConfigurations(const fs::path& data, std::size_t first, const fs::path& support);

// A general-settings text with every letter of Croatian and more of Central Europe.
std::string GeneralSettings();

// The files below a folder: relative path to bytes.
std::map<std::string, std::string> Tree(const fs::path& folder);

// The files' sizes together.
std::size_t BytesOf(const std::map<std::string, std::string>& tree);

} // namespace AppTest
