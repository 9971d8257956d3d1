// SPDX-License-Identifier: MIT
// The program as a CAD host: loads the module, runs a registered command, and passes on what
// commands print.
#pragma once

#include "platform/host/Application.h"
#include "platform/host/CommandRegistry.h"

#include <iosfwd>
#include <vector>

namespace App {

// The module ZEBXRepositoryClient of the installation, told that it was loaded, and told that
// it is given up when this ends.  Throws AppError (Configuration) where it cannot be used.
class HostedModule {
public:
    HostedModule();
    ~HostedModule();
    HostedModule(const HostedModule&) = delete;
    HostedModule& operator=(const HostedModule&) = delete;

private:
    AcrxEntryPoint m_entry = nullptr;
};

// What commands print goes to `out` as long as this stands.
class PromptGuard {
public:
    explicit PromptGuard(std::ostream& out);
    ~PromptGuard();
    PromptGuard(const PromptGuard&) = delete;
    PromptGuard& operator=(const PromptGuard&) = delete;

    const CString& Shown() const { return m_shown; }

private:
    CString m_shown;
};

// The registry that modules put their commands into.
Platform::CommandRegistry& RequireCommandRegistry();

// The names by which users call the commands, in order of registration.
std::vector<CString> LocalNames(const Platform::CommandRegistry& registry);

} // namespace App
