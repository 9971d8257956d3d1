// SPDX-License-Identifier: MIT
#include "client/manager/ScriptedPlugin.h"

#include <boost/make_shared.hpp>

namespace {

using namespace Repository;

PluginScript* g_script = nullptr;

StorageBackend& Target() {
    return *g_script->backend;
}

// Hands every call to the backend of the script.
class ForwardingBackend : public StorageBackend {
public:
    void SetSettingsPath(const char16_t* folder) override { Target().SetSettingsPath(folder); }
    void SaveSettings() override { Target().SaveSettings(); }
    void LoadSettings() override { Target().LoadSettings(); }
    int GetNameMsgNum() override { return Target().GetNameMsgNum(); }
    int ApplyConnectionParameters() override { return Target().ApplyConnectionParameters(); }
    int HasConnectionParameters() override { return Target().HasConnectionParameters(); }
    void SetVersion(const char16_t* version) override { Target().SetVersion(version); }
    int IsMultipleGSSupported() override { return Target().IsMultipleGSSupported(); }
    int GetAvailableGS(std::vector<CString>& names) override {
        return Target().GetAvailableGS(names);
    }
    int LoadGS(CString& xml, std::vector<CString>& fileIds, const char16_t* name) override {
        return Target().LoadGS(xml, fileIds, name);
    }
    int SaveGS(const char16_t* xml, const RepositoryFiles& files, const char16_t* name) override {
        return Target().SaveGS(xml, files, name);
    }
    boost::shared_ptr<CRepositoryFile> GetRepositoryFile(const char16_t* fileId) override {
        return Target().GetRepositoryFile(fileId);
    }
    int RegisterContent(int contentCode, const char16_t* kindId, int messageNumber) override {
        return Target().RegisterContent(contentCode, kindId, messageNumber);
    }
    int AmIAdmin() override { return Target().AmIAdmin(); }
    int AddRepositoryFiles(const RepositoryFiles& files) override {
        return Target().AddRepositoryFiles(files);
    }
    int GetRepositoryFileIds(int contentCode, const char16_t* kindId,
                             std::vector<CString>& fileIds) override {
        return Target().GetRepositoryFileIds(contentCode, kindId, fileIds);
    }
    int GetRepositoryItems(const char16_t* tag,
                           std::vector<boost::shared_ptr<CNetRepositoryItem>>& items) override {
        return Target().GetRepositoryItems(tag, items);
    }
    int DeleteRepositoryItem(const char16_t* tag, const char16_t* id) override {
        return Target().DeleteRepositoryItem(tag, id);
    }
    int RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                             const char16_t* newName) override {
        return Target().RenameRepositoryItem(tag, id, newName);
    }
    boost::shared_ptr<CNetRepositoryItem>
    GetRepositoryItemById(const char16_t* tag, const char16_t* id, int flag) override {
        return Target().GetRepositoryItemById(tag, id, flag);
    }
    int AddRepositoryItem(const char16_t* tag,
                          const boost::shared_ptr<CNetRepositoryItem>& item) override {
        return Target().AddRepositoryItem(tag, item);
    }
    int GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                             std::vector<boost::shared_ptr<CNetCatalogueItem>>& items,
                             int withFiles) override {
        return Target().GetChildCatalogItems(catalogueTag, parentId, items, withFiles);
    }
    boost::shared_ptr<CNetCatalogueItem>
    GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id, int withFiles) override {
        return Target().GetCatalogItemById(catalogueTag, id, withFiles);
    }
    int AddCatalogItem(boost::shared_ptr<CNetCatalogueItem> item) override {
        return Target().AddCatalogItem(item);
    }
    int DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) override {
        return Target().DeleteCatalogItem(catalogueTag, id);
    }
    int IsRepositoryAccessible() override { return Target().IsRepositoryAccessible(); }
    int EditConnectionParameters() override { return Target().EditConnectionParameters(); }
};

class PluginInfo : public IPluginInfo {
public:
    void GetStorageBackend(boost::shared_ptr<void>& backend) override {
        g_script->onStep("GetStorageBackend");
        if (g_script->backend)
            backend = boost::shared_ptr<StorageBackend>(boost::make_shared<ForwardingBackend>());
    }
    void SetMsgProvider(IMsgProvider* provider) override {
        g_script->onStep("SetMsgProvider");
        g_script->provider = provider;
    }
};

PluginInfo g_info;

} // namespace

extern "C" ZEBX_EXPORT IPluginInfo* GetPluginInfo() {
    if (!g_script)
        return nullptr;
    g_script->onStep("GetPluginInfo");
    return g_script->hasNoInfo ? nullptr : &g_info;
}

extern "C" ZEBX_EXPORT void SetPluginScript(PluginScript* script) {
    g_script = script;
}
