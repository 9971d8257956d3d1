// SPDX-License-Identifier: MIT
#include "platform/host/CommandRegistry.h"

#include "platform/text/CaseFold.h"

#include <algorithm>

namespace Platform {
namespace {

bool IsSameName(CStringView left, CStringView right) {
    return FoldCase(left) == FoldCase(right);
}

} // namespace

bool CommandRegistry::AddCommand(const RegisteredCommand& command) {
    if (command.group.empty() || command.globalName.empty() || command.localName.empty() ||
        !command.handler)
        return false;
    const bool taken = std::any_of(m_commands.begin(), m_commands.end(), [&](const auto& other) {
        return IsSameName(other.group, command.group) &&
               IsSameName(other.globalName, command.globalName);
    });
    if (!taken)
        m_commands.push_back(command);
    return !taken;
}

bool CommandRegistry::RemoveGroup(CStringView group) {
    return std::erase_if(m_commands, [&](const RegisteredCommand& command) {
               return IsSameName(command.group, group);
           }) > 0;
}

std::optional<RegisteredCommand> CommandRegistry::Find(CStringView name) const {
    for (const RegisteredCommand& command : m_commands)
        if (IsSameName(command.localName, name) || IsSameName(command.globalName, name))
            return command;
    return std::nullopt;
}

CommandRegistry* FindService(CStringView name) {
    static CommandRegistry registry;
    return name == kRegisteredCommandsService ? &registry : nullptr;
}

} // namespace Platform
