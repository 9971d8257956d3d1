// SPDX-License-Identifier: MIT
// What must hold so that push and pull work, thing by thing.
#pragma once

#include "app/AppError.h"
#include "app/StoragePlugin.h"
#include "app/Texts.h"

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include <functional>
#include <vector>

namespace App {

enum class Health { Ok, Warning, Failure };

// One thing that was looked at.
struct Diagnosis {
    const char* id; // for programs: "support-folder"
    Message label;
    Health health = Health::Ok;
    CString found;
    CString advice = {};                  // what to do; empty when nothing is to be done
    ExitStatus status = ExitStatus::Done; // the status of a failure
};

// What the later checks take over from the earlier ones.
struct Patient {
    Repository::CRepositoryStorageManager& manager;
    StoragePlugin plugin;
    Storage::RepositoryState state;
    bool isReachable = false;
};

// Tells a diagnosis at once, before the next thing is looked at.
using Tell = std::function<void(const Diagnosis&)>;

// Program, folders, settings and texts of this workstation.
void ExamineStation(const Tell& tell);
// What is declared, and whether the local files of it can be read.
void ExamineCatalogues(const Tell& tell);
void ExamineDefinitions(const Tell& tell);
// Plug-in and repository, as far as they can be reached.
void ExamineRepository(Patient& patient, const Tell& tell);
// Room on the disks and the clock; what needs the repository is left out without one.
void ExamineSurroundings(const Patient& patient, const Tell& tell);

} // namespace App
