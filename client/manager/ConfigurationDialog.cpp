// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/ConfigurationDialog.h"

#include "TransferSteps.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "client/util/Border.h"
#include "platform/host/DocumentManager.h"
#include "platform/os/Module.h"
#include "platform/os/Path.h"
#include "platform/text/Fill.h"
#include "platform/text/Utf8.h"

namespace Repository {
namespace {

using Platform::DocumentManager;
using ZEBGis::CModuleConfiguration;

constexpr const char16_t* kDialogModule = u"ZEBXRepositoryClientDialog.arx";
constexpr const char* kShow = "ShowNetworkRepositoryConfiguration";
constexpr const char* kWhyNoWindows = "WhyNoWindows";
constexpr int kMsgDialogModuleMissing = 22000;
constexpr int kMsgNoStoragePlugin = 22006;
constexpr int kMsgNoWindows = 22007;

// This module's instance handle: the document manager only tells modules apart by it.
constexpr char kModuleInstance = 0;

// Makes this module's resources current and keeps the drawing from being changed for as long
// as it lives.
class ModalToTheHost {
public:
    ModalToTheHost() {
        DocumentManager::Instance()->PushResources(&kModuleInstance);
        DocumentManager::Instance()->LockDocument();
    }
    ~ModalToTheHost() {
        DocumentManager::Instance()->UnlockDocument();
        DocumentManager::Instance()->PopResources();
    }
    ModalToTheHost(const ModalToTheHost&) = delete;
    ModalToTheHost& operator=(const ModalToTheHost&) = delete;
};

CString Msg(int number, std::initializer_list<CStringView> values) {
    return Platform::Fill(CModuleConfiguration::Instance()->GetMsg(number), values);
}

CString ShownPath(CStringView path) {
    return Platform::FromUtf8(Platform::NativePath(path));
}

// The dialog lies in a module of its own, so that a server without a screen needs no window
// system.
struct DialogModule {
    ShowConfigurationFunction show = nullptr;
    CString whyNot; // what is missing; empty when the dialog can be shown
};

DialogModule NoDialog(int msgNum, std::initializer_list<CStringView> values) {
    return {nullptr, Msg(msgNum, values)};
}

DialogModule FindDialogModule(const CString& path) {
    CString reason;
    const auto module = Platform::LoadModule(path, &reason);
    if (!module)
        return NoDialog(kMsgDialogModuleMissing, {ShownPath(path), reason});
    for (const char* name : {kShow, kWhyNoWindows})
        if (!Platform::FindExport(module, name))
            return NoDialog(kMsgDialogModuleMissing, {ShownPath(path), Platform::FromUtf8(name)});
    reinterpret_cast<WhyNoWindowsFunction>(Platform::FindExport(module, kWhyNoWindows))(reason);
    if (!reason.empty())
        return NoDialog(kMsgNoWindows, {reason});
    return {reinterpret_cast<ShowConfigurationFunction>(Platform::FindExport(module, kShow)), {}};
}

DialogModule FindDialog() {
    const CString folder = CModuleConfiguration::Instance()->GetPath(u"install");
    auto* const manager = CRepositoryStorageManager::Instance();
    if (!manager || !manager->IsInitialized())
        return NoDialog(kMsgNoStoragePlugin, {ShownPath(folder)});
    return FindDialogModule(folder + kDialogModule);
}

} // namespace

CString WhyNoConfigurationDialog() {
    // A text so short needs no memory.
    return AtBorder(CString(u"memory"), [] { return FindDialog().whyNot; });
}

void CRepositoryStorageManager::ShowConfigurationDialog() {
    AtBorder([] {
        const DialogModule dialog = FindDialog();
        if (!dialog.show) {
            LogLine(ZEBGis::Workspace::MessageFailure, dialog.whyNot);
            return;
        }
        const ModalToTheHost modal;
        dialog.show();
    });
}

} // namespace Repository
