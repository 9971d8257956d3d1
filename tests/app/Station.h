// SPDX-License-Identifier: MIT
// A workstation as its user sees it: folders of its own, and the program run on it as a
// process of its own.
#pragma once

#include "support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace AppTest {

namespace fs = std::filesystem;

// What one run of the program gave.
struct Ended {
    int status = -1; // its exit status; -1 when it did not end by itself
    std::string out;
    std::string err;
};

// Everything that a failing expectation should show.
std::ostream& operator<<(std::ostream& stream, const Ended& run);

// The bytes of a file; a test that asks for one that is not there fails.
std::string Bytes(const fs::path& path);
void Write(const fs::path& path, std::string_view bytes);

class Station {
public:
    Station();

    // Runs build/bin/zebx with these arguments and this workstation's environment.
    Ended Zebx(const std::vector<std::string>& arguments) const;

    // As Zebx, as a user without any rights to others' files.  Needs root; the program
    // and its modules are taken from a copy that this user may read.
    Ended ZebxAsNobody(const std::vector<std::string>& arguments) const;

    // As Zebx, killed when it still runs after so long; the status is -1 then.
    Ended ZebxKilledAfter(std::chrono::microseconds delay,
                          const std::vector<std::string>& arguments) const;

    // As Zebx, with the output going to a file, of which nothing is given back.
    Ended ZebxWritingTo(const fs::path& out, const std::vector<std::string>& arguments) const;

    // As Zebx, with these bytes as its standard input.
    Ended ZebxReading(const std::string& input, const std::vector<std::string>& arguments) const;

    // As Zebx, with the errors going to a terminal.
    Ended ZebxOnATerminal(const std::vector<std::string>& arguments) const;

    void Set(const std::string& variable, const std::string& value) {
        m_variables[variable] = value;
    }

    // Of the program, "NAME=value" each.
    std::vector<std::string> Environment() const;
    const std::map<std::string, std::string>& Variables() const { return m_variables; }

    fs::path Folder() const { return m_folder.Native(); }
    fs::path Support() const { return Folder() / "data/StudioZEB/support"; }
    fs::path Ini() const { return Folder() / "config/StudioZEB/zebx.ini"; }
    // The repository at the default place.
    fs::path Repository() const { return Folder() / "data/StudioZEB/repository.db"; }

private:
    struct Start;
    Start StartOf(const fs::path& program, const std::vector<std::string>& arguments) const;
    static Ended Finish(Start start);

    TemporaryFolder m_folder;
    std::map<std::string, std::string> m_variables;
};

// A second installation that holds the message table alone, to put plug-ins in.
fs::path InstallationWithoutPlugin(const Station& station);

// The texts as execve takes them: pointers, the last one null.
std::vector<char*> Pointers(std::vector<std::string>& texts);

} // namespace AppTest
