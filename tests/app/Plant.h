// SPDX-License-Identifier: MIT
// Changes a repository as no program of ours does.
#pragma once

#include "Station.h"
#include "storage/RawDatabase.h"
#include "support/PageSeals.h"

namespace AppTest {

// Runs the SQL on the repository file, which nobody uses meanwhile, and seals its pages, so
// that what was planted is read and not told as a damaged page.
inline void Plant(const Station& station, const std::string& sql) {
    Storage::RawDatabase(station.Repository().string()).Run(sql);
    SealPages(station.Repository().string());
}

} // namespace AppTest
