// SPDX-License-Identifier: MIT
// The repository that verbs work with, and the conditions that they make.
#pragma once

#include "app/AppError.h"
#include "app/Selection.h"
#include "app/StoragePlugin.h"

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "ZEBXRepositoryClient/StorageBackend.h"

namespace App {

struct OpenStorage {
    Repository::CRepositoryStorageManager& manager;
    StoragePlugin plugin;

    // The plug-in's own object; the manager holds it.
    Repository::StorageBackend& Backend() const;
};

// The manager with its storage.  Throws AppError (Configuration) without a plug-in.
OpenStorage RequireStorage();

// The administration; throws AppError (Configuration) when the plug-in offers none.
Storage::RepositoryAdministration& RequireAdministration(const OpenStorage& storage);

// The state of the repository; throws when it could not be read.
Storage::RepositoryState StateOf(Storage::RepositoryAdministration& administration);

// Throws AppError when the repository cannot be used now, with the plug-in's own words.
void RequireRepository(const OpenStorage& storage);

// The storage with a repository that can be used now, for a transfer of what is selected;
// throws AppError for that and for a selection that cannot be transferred.
OpenStorage RequireStorageFor(const std::vector<Selected>& selection);

// Throws AppError (NotAllowed) when this user may only read.
void RequireRights(const OpenStorage& storage);

// The exit status that tells of a repository's problem; nothing of its own: SomeFailed.
ExitStatus StatusOf(Storage::Problem problem);

} // namespace App
