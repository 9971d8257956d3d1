// SPDX-License-Identifier: MIT
#include "app/StoragePlugin.h"

#include "app/AppError.h"
#include "app/Print.h"
#include "app/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "platform/os/FileSearch.h"
#include "platform/os/Module.h"
#include "platform/text/Utf8.h"

namespace App {
namespace {

CString& ApplicationName() {
    static CString name;
    return name;
}

template<typename Function>
Function ExportOf(Platform::ModuleHandle module, const char* name) {
    return reinterpret_cast<Function>(Platform::FindExport(module, name));
}

void TryFile(const CString& name, StoragePlugin& plugin) {
    CString reason;
    const auto module = Platform::LoadModule(plugin.folder + name, &reason);
    if (!module) {
        plugin.useless.push_back({name, reason});
        return;
    }
    if (!ExportOf<Repository::GetPluginInfoFunction>(module, "GetPluginInfo")) {
        plugin.useless.push_back({name, Text(Message::PluginWithoutEntry)});
        return;
    }
    const auto administration = ExportOf<Storage::GetRepositoryAdministrationFunction>(
        module, "GetRepositoryAdministration");
    plugin.file = name;
    plugin.administration = administration ? administration() : nullptr;
    if (plugin.administration && !ApplicationName().empty())
        plugin.administration->SetApplication(ApplicationName());
}

} // namespace

void NameApplication(const CString& name) {
    ApplicationName() = name;
}

StoragePlugin FindStoragePlugin() {
    StoragePlugin plugin;
    plugin.folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install");
    plugin.pattern = u"ZEBXRepositoryClientPlugin_*.arx";
    std::error_code error;
    for (const CString& name : Platform::FindFiles(plugin.folder + plugin.pattern, &error))
        TryFile(name, plugin);
    // A folder that is missing holds no plug-in; another failure says nothing of what it holds.
    if (error && error != std::errc::no_such_file_or_directory)
        throw AppError(ExitStatus::Configuration,
                       Text(Message::FolderNotRead,
                            {ShownPath(plugin.folder), Platform::FromUtf8(error.message())}));
    return plugin;
}

CString WhyNoPlugin(const StoragePlugin& plugin) {
    const bool nothing = plugin.file.empty() && plugin.useless.empty();
    CString text = Text(nothing ? Message::NoPluginFile : Message::NoPluginLoads,
                        {ShownPath(plugin.folder), plugin.pattern});
    for (const auto& useless : plugin.useless)
        text += u"\n  " + useless.file + u": " + useless.reason;
    if (!plugin.file.empty())
        text += u"\n  " + plugin.file + u": " + Text(Message::PluginWithoutStorage);
    return text + u"\n" + Text(Message::PluginHint);
}

} // namespace App
