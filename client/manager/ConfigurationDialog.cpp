// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "TransferSteps.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "client/util/Border.h"
#include "platform/host/DocumentManager.h"
#include "platform/os/Module.h"
#include "platform/text/Fill.h"

namespace Repository {
namespace {

constexpr const char16_t* kDialogModule = u"ZEBXRepositoryClientDialog.arx";
constexpr const char* kDialogExport = "ShowNetworkRepositoryConfiguration";
constexpr int kMsgDialogModuleMissing = 22000;

// This module's instance handle: the document manager only tells modules apart by it.
constexpr char kModuleInstance = 0;

// Makes this module's resources current for as long as it lives.
class OwnResources {
public:
    OwnResources() { Platform::DocumentManager::Instance()->PushResources(&kModuleInstance); }
    ~OwnResources() { Platform::DocumentManager::Instance()->PopResources(); }
    OwnResources(const OwnResources&) = delete;
    OwnResources& operator=(const OwnResources&) = delete;
};

// The dialog lies in a module of its own, so that a server without a screen needs no
// window system; null, and the reason, when that module cannot be used.
void (*FindDialog(const CString& path, CString& reason))() {
    const auto module = Platform::LoadModule(path, &reason);
    if (!module)
        return nullptr;
    reason = u"ShowNetworkRepositoryConfiguration";
    return reinterpret_cast<void (*)()>(Platform::FindExport(module, kDialogExport));
}

} // namespace

void CRepositoryStorageManager::ShowConfigurationDialog() {
    AtBorder([] {
        const OwnResources resources;
        const auto configuration = ZEBGis::CModuleConfiguration::Instance();
        const CString path = configuration->GetPath(u"install") + kDialogModule;
        CString reason;
        if (const auto show = FindDialog(path, reason))
            show();
        else
            LogLine(ZEBGis::Workspace::MessageFailure,
                    Platform::Fill(configuration->GetMsg(kMsgDialogModuleMissing), {path, reason}));
    });
}

} // namespace Repository
