// SPDX-License-Identifier: MIT
// The plug-in module's exports; everything else is in the library under it.
#include "storage/Administration.h"
#include "storage/SqlBackend.h"

#include <boost/make_shared.hpp>

namespace {

using Storage::RepositoryAccess;

// Closes the connection when the process ends, whoever still holds the backend then: the
// last one to close writes what is in the "-wal" file into the repository's own.
struct Plugin : Repository::IPluginInfo {
    ~Plugin() { access->Disconnect(); }

    void GetStorageBackend(boost::shared_ptr<void>& given) override { given = backend; }
    void SetMsgProvider(Repository::IMsgProvider* provider) override {
        access->SetMsgProvider(provider);
    }

    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>();
    boost::shared_ptr<Repository::StorageBackend> backend =
        boost::make_shared<Storage::SqlBackend>(access);
    Storage::Administration administration{access};
};

// Null when there is no memory.
Plugin* ThePlugin() noexcept {
    try {
        static Plugin plugin;
        return &plugin;
    } catch (...) {
        return nullptr;
    }
}

} // namespace

extern "C" ZEBX_EXPORT Repository::IPluginInfo* GetPluginInfo() {
    return ThePlugin();
}

extern "C" ZEBX_EXPORT Storage::RepositoryAdministration* GetRepositoryAdministration() {
    Plugin* plugin = ThePlugin();
    return plugin ? &plugin->administration : nullptr;
}
