// SPDX-License-Identifier: MIT
// What a CAD host and its application modules say to each other: the messages, the
// entry point that every module exports, and the base classes of a module's
// application object.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>
#include <map>
#include <span>

namespace Platform {

// Messages of the host to a module.
enum class HostMessage : std::int32_t {
    Load = 1,         // the module was loaded
    Unload = 2,       // the module is about to be given up
    OpenDocument = 3, // a drawing document was opened
    CloseDocument = 4,
    OpenDatabase = 5, // a drawing database was opened
    CloseDatabase = 6,
    Quit = 7 // the host is about to end
};

// A module's answer to a message.
enum class HostResult : std::int32_t { Ok = 0, Error = 1 };

using CommandHandler = void (*)();

// Flags of a command.
inline constexpr std::int32_t kCommandModal = 1;

// One row of a module's command table.
struct CommandEntry {
    const char16_t* group;
    const char16_t* globalName;
    const char16_t* localName; // null: the module's string resource `localNameId`
    std::int32_t localNameId;
    std::int32_t flags;
    CommandHandler handler;
};

// A module's numbered texts.
using StringResources = std::map<std::int32_t, CString>;

} // namespace Platform

// Base of every application object: takes the host's messages apart.
class ZEBX_EXPORT AcRxDbxApp {
public:
    virtual ~AcRxDbxApp() = default;

    // Gives `message` to its handler and returns the handler's result.  A message
    // that has no handler is answered with Ok.
    Platform::HostResult EntryPoint(Platform::HostMessage message, void* packet);

    // The default of every handler does nothing and returns Ok.
    virtual Platform::HostResult OnLoad(void* packet);
    virtual Platform::HostResult OnUnload(void* packet);
    virtual Platform::HostResult OnOpenDocument(void* packet);
    virtual Platform::HostResult OnCloseDocument(void* packet);
    virtual Platform::HostResult OnOpenDatabase(void* packet);
    virtual Platform::HostResult OnCloseDatabase(void* packet);
    virtual Platform::HostResult OnQuit(void* packet);

    // Registers what the module offers to other programs; called at load.
    virtual void RegisterServerComponents() = 0;
};

// Base of a module with commands: registers its command table at load, in the service
// "ACAD_REGISTERED_COMMANDS", and removes the table's groups at unload.
class ZEBX_EXPORT AcRxArxApp : public AcRxDbxApp {
public:
    Platform::HostResult OnLoad(void* packet) override;
    Platform::HostResult OnUnload(void* packet) override;

protected:
    // The module's command table and string resources; both live as long as the module.
    virtual std::span<const Platform::CommandEntry> Commands() const = 0;
    virtual const Platform::StringResources& Strings() const = 0;
};

// Exported by every application module under this name.
using AcrxEntryPoint = Platform::HostResult (*)(Platform::HostMessage message, void* packet);
