// SPDX-License-Identifier: MIT
#include "MemoryBackend.h"

#include <boost/make_shared.hpp>

namespace {

class MemoryPluginInfo : public Repository::IPluginInfo {
public:
    void GetStorageBackend(boost::shared_ptr<void>& backend) override { backend = m_backend; }
    void SetMsgProvider(Repository::IMsgProvider*) override {}

private:
    // As the manager will take it back from the untyped handle: a StorageBackend.
    boost::shared_ptr<Repository::StorageBackend> m_backend = boost::make_shared<MemoryBackend>();
};

} // namespace

extern "C" ZEBX_EXPORT Repository::IPluginInfo* GetPluginInfo() {
    static MemoryPluginInfo info;
    return &info;
}
