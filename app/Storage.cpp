// SPDX-License-Identifier: MIT
#include "app/Storage.h"

#include "app/CatalogueFiles.h"
#include "app/Texts.h"

namespace App {

using Storage::Problem;

Repository::StorageBackend& OpenStorage::Backend() const {
    return *static_cast<Repository::StorageBackend*>(manager.GetStorage().get());
}

OpenStorage RequireStorage() {
    auto* manager = Repository::CRepositoryStorageManager::Instance();
    StoragePlugin plugin = FindStoragePlugin();
    if (!manager->IsInitialized())
        throw AppError(ExitStatus::Configuration, WhyNoPlugin(plugin));
    RegisterCatalogueFileManagers(*manager);
    return {*manager, plugin};
}

Storage::RepositoryAdministration& RequireAdministration(const OpenStorage& storage) {
    if (!storage.plugin.administration)
        throw AppError(ExitStatus::Configuration,
                       Text(Message::NoAdministration, {storage.plugin.file}));
    return *storage.plugin.administration;
}

Storage::RepositoryState StateOf(Storage::RepositoryAdministration& administration) {
    auto state = administration.State();
    if (state.problem != Problem::None)
        throw AppError(StatusOf(state.problem), state.problemText);
    return state;
}

void RequireRepository(const OpenStorage& storage) {
    // The administration is asked first: what it tells, the backend does not log once more.
    if (storage.plugin.administration)
        StateOf(*storage.plugin.administration);
    if (!storage.manager.IsRepositoryAccessible())
        throw AppError(ExitStatus::NotReachable,
                       Text(Message::NotReachable, {storage.manager.GetRepositroyStorageName()}));
}

OpenStorage RequireStorageFor(const std::vector<Selected>& selection) {
    auto& manager = *Repository::CRepositoryStorageManager::Instance();
    CheckKindsAreKnown(selection, manager);
    CheckKindsAreOn(selection, manager);
    const OpenStorage storage = RequireStorage();
    RequireRepository(storage);
    CheckGsNames(selection, manager);
    return storage;
}

void RequireRights(const OpenStorage& storage) {
    if (storage.manager.AmIAdmin())
        return;
    auto* administration = storage.plugin.administration;
    const CString address = administration ? administration->State().address
                                           : storage.manager.GetRepositroyStorageName();
    throw AppError(ExitStatus::NotAllowed, Text(Message::MayNotWrite, {address}));
}

ExitStatus StatusOf(Problem problem) {
    switch (problem) {
    case Problem::Configuration:
        return ExitStatus::Configuration;
    case Problem::Missing:
    case Problem::NotARepository:
    case Problem::NewerVersion:
    case Problem::Unreachable:
    case Problem::Busy:
    case Problem::ServerFull:
        return ExitStatus::NotReachable;
    case Problem::NotAllowed:
        return ExitStatus::NotAllowed;
    case Problem::Integrity:
        return ExitStatus::Integrity;
    case Problem::Full:
        return ExitStatus::LocalFile;
    case Problem::Internal:
        return ExitStatus::Internal;
    case Problem::Interrupted:
        return ExitStatus::Interrupted;
    case Problem::None:
    case Problem::Refused:
        break;
    }
    return ExitStatus::SomeFailed;
}

} // namespace App
