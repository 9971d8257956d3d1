// SPDX-License-Identifier: MIT
// The host's system registry of services and its service of registered commands.
#pragma once

#include "platform/Export.h"
#include "platform/host/Application.h"

#include <optional>
#include <vector>

namespace Platform {

struct RegisteredCommand {
    CString group;
    CString globalName;
    CString localName;
    std::int32_t flags = 0;
    CommandHandler handler = nullptr;
};

// Commands by group and name.  Names are compared without regard to case.
class ZEBX_EXPORT CommandRegistry {
public:
    // False, and nothing changed, when the group has a command of that global name,
    // a name is empty or the handler is null.
    bool AddCommand(const RegisteredCommand& command);

    // False when there is no such group.
    bool RemoveGroup(CStringView group);

    // The first command, in order of registration, whose local or global name is `name`.
    std::optional<RegisteredCommand> Find(CStringView name) const;

    // All commands, in order of registration.
    const std::vector<RegisteredCommand>& Commands() const { return m_commands; }

private:
    std::vector<RegisteredCommand> m_commands;
};

inline constexpr const char16_t* kRegisteredCommandsService = u"ACAD_REGISTERED_COMMANDS";

// The host's service of that name; null when there is none.
ZEBX_EXPORT CommandRegistry* FindService(CStringView name);

} // namespace Platform
