// SPDX-License-Identifier: MIT
// The module's application object: registers its one command at load and removes it at
// unload.  Everything else waits for the first call of the storage manager.
#pragma once

#include "platform/host/Application.h"

namespace Repository {

class CRepositoryClientApp : public AcRxArxApp {
public:
    Platform::HostResult OnLoad(void* packet) override;
    Platform::HostResult OnUnload(void* packet) override;
    void RegisterServerComponents() override;

protected:
    std::span<const Platform::CommandEntry> Commands() const override;
    const Platform::StringResources& Strings() const override;
};

} // namespace Repository
