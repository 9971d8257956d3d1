// SPDX-License-Identifier: MIT
#include "storage/WindowModule.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/Module.h"
#include "platform/text/Utf8.h"
#include "storage/sqlite/SqliteError.h"

namespace Storage {
namespace {

constexpr const char16_t* kWindowModule = u"ZEBXRepositoryConnectionWindow.arx";

[[noreturn]] void ThrowNoModule(const CString& path, const CString& reason) {
    throw StorageError(Problem::Configuration, MessageNumber::NoWindowModule,
                       {ShownPath(path), reason});
}

// An export of the module, which is loaded when it is not yet.
template<typename Function>
Function FindExport(const CString& path, const char* name) {
    CString reason;
    const auto module = Platform::LoadModule(path, &reason);
    if (!module)
        ThrowNoModule(path, reason);
    void* found = Platform::FindExport(module, name);
    if (!found)
        ThrowNoModule(path, Platform::FromUtf8(name));
    return reinterpret_cast<Function>(found);
}

} // namespace

std::optional<Connection> EditInWindow(IConnectionParameters& parameters) {
    const CString path =
        ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install") + kWindowModule;
    const auto whyNoWindows = FindExport<WhyNoWindowsFunction>(path, "WhyNoWindows");
    const auto edit =
        FindExport<EditRepositoryConnectionFunction>(path, "EditRepositoryConnection");
    CString reason;
    whyNoWindows(reason);
    if (!reason.empty())
        throw StorageError(Problem::Configuration, MessageNumber::NoWindows, {reason});
    Connection edited;
    if (!edit(parameters, edited))
        return std::nullopt;
    return edited;
}

} // namespace Storage
