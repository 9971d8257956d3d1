// SPDX-License-Identifier: MIT
// A workstation and its repository in a known state, put back as often as a test likes, and
// what stands there afterwards: every file of every kind comes in two generations.
#pragma once

#include "app/Station.h"

#include <optional>
#include <set>

namespace AppTest {

using Files = std::map<std::string, std::string>; // path below the support folder: bytes

// The files of generation 1 or 2.  The same names, other bytes and sizes.
Files Generation(int generation);

// Writes them to a support folder.
void WriteFiles(const fs::path& support, const Files& files);

// What of them lies there; a file of another name is there, too.
Files FilesIn(const fs::path& support);

// What the repository holds of them, read without this system; a database that is not whole
// throws.
Files FilesOf(const fs::path& repository);

// Why the files are not each wholly of one of the generations (or missing, where that is
// allowed); empty when they are.
std::string WhyNotWhole(const Files& files, bool mayMiss);

// Why the kinds are not each wholly of one generation, or missing as a whole; empty when they
// are.
std::string WhyHalfACall(const Files& files, bool mayMiss);

// A copy of a workstation's folder, to be put back.
class Snapshot {
public:
    explicit Snapshot(const Station& station);
    void PutBack() const;

private:
    const Station& m_station;
    TemporaryFolder m_copy;
};

// How far apart the calls are that a test tries, so that it takes a few seconds; 1, every
// one, when ZEBX_EVERY_FAULT is set.
std::size_t StepThrough(std::size_t calls, std::size_t sample);

} // namespace AppTest
