// SPDX-License-Identifier: MIT
// What the tests of the manager's operations start from: the process's one manager over the
// scripted plug-in, a strict backend behind it, an empty workstation, and the lines of the
// workspace log.
#pragma once

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "client/manager/FileManagers.h"
#include "client/manager/Installation.h"
#include "client/manager/MockBackend.h"
#include "client/manager/ScriptedPlugin.h"
#include "platform/os/Module.h"
#include "platform/text/Fill.h"
#include "support/WorkspaceLines.h"

#include <boost/make_shared.hpp>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>

// Loads a copy of the scripted plug-in and gives it its script.
inline void GivePluginItsScript(const CString& path, PluginScript& script) {
    const auto module = Platform::LoadModule(path);
    const auto set =
        reinterpret_cast<SetPluginScriptFunction>(Platform::FindExport(module, "SetPluginScript"));
    ASSERT_TRUE(set);
    set(&script);
}

// The script of the plug-in that the process's manager holds.
inline PluginScript& ScriptOfTheProcess() {
    static PluginScript script;
    return script;
}

// Builds the manager at the first call, from an installation that is gone afterwards.
inline Repository::CRepositoryStorageManager& ManagerOfTheProcess() {
    static Repository::CRepositoryStorageManager* const manager = [] {
        const Installation installation;
        installation.Add(ZEBX_GISCORE_MODULE, "ZEBXGisCore.arx");
        GivePluginItsScript(
            installation.Add(ZEBX_SCRIPTED_PLUGIN, "ZEBXRepositoryClientPlugin_Scripted.arx"),
            ScriptOfTheProcess());
        testing::NiceMock<MockBackend> backend;
        ScriptOfTheProcess().backend = &backend;
        auto* const built = Repository::CRepositoryStorageManager::Instance();
        ScriptOfTheProcess().backend = nullptr;
        return built;
    }();
    return *manager;
}

// A file manager whose calls a test expects.
class MockFileManager : public Repository::IFileManager {
    using Files = Repository::RepositoryFiles;

public:
    virtual ~MockFileManager() = default;
    MOCK_METHOD(void, GetFiles, (Files&, const char16_t*), (override));
    MOCK_METHOD(void, PutFiles, (Files&, int, const void*), (override));
    CString GetId() override { return id; }

    CString id;
};

class ManagerTest : public testing::Test {
protected:
    using Lines = std::vector<WorkspaceLines::Line>;
    using File = boost::shared_ptr<Repository::CRepositoryFile>;

    ManagerTest()
        : m_ncfKinds(manager.GetNCFMetadata()), m_focKinds(manager.GetFOCMetadata()),
          m_fileManagers(FileManagersOf(manager)) {
        ScriptOfTheProcess().backend = &backend;
    }
    ~ManagerTest() override {
        ScriptOfTheProcess().backend = nullptr;
        manager.GetNCFMetadata() = m_ncfKinds;
        manager.GetFOCMetadata() = m_focKinds;
        FileManagersOf(manager) = m_fileManagers;
    }

    // Replaces the built-in kinds by none.
    void ForgetKinds() {
        manager.GetNCFMetadata().clear();
        manager.GetFOCMetadata().clear();
    }

    // Registers a file manager of the test, in the place of one that is there.
    boost::shared_ptr<testing::StrictMock<MockFileManager>> ReplaceFileManager(const CString& id) {
        const auto fileManager = boost::make_shared<testing::StrictMock<MockFileManager>>();
        fileManager->id = id;
        FileManagersOf(manager).erase(id);
        manager.RegisterFileManager(fileManager);
        return fileManager;
    }

    // The text of the family's message table.
    static CString Msg(int number) {
        return ZEBGis::CModuleConfiguration::Instance()->GetMsg(number);
    }
    static WorkspaceLines::Line Failure(int number, CStringView what) {
        return {4, Platform::Fill(u"%s - %s", {Msg(number), what})};
    }
    static WorkspaceLines::Line Success(CStringView what) { return {1, CString(what)}; }

    // A stored file as a backend hands it out.
    static File Stored(const char16_t* name, std::string_view bytes) {
        const auto file = boost::make_shared<Repository::CRepositoryFile>();
        file->SetFileName(name);
        file->SetFileContent(
            Repository::Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
        return file;
    }
    static std::string BytesOf(const File& file) {
        return Repository::Base64Decode(file->GetFileContent());
    }
    static std::vector<CString> NamesOf(const Repository::RepositoryFiles& files) {
        std::vector<CString> names;
        for (const File& file : files)
            names.push_back(file->GetFileName());
        return names;
    }

    std::filesystem::path SupportFolder() const {
        return Platform::NativePath(workstation.Support());
    }
    static void Write(const std::filesystem::path& path, std::string_view bytes) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }
    // What the file holds; "(no file)" when there is none.
    static std::string Read(const std::filesystem::path& path) {
        std::ifstream stream(path, std::ios::binary);
        if (!stream || !std::filesystem::is_regular_file(path))
            return "(no file)";
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    Repository::CRepositoryStorageManager& manager = ManagerOfTheProcess();
    Installation workstation;
    testing::StrictMock<MockBackend> backend;
    WorkspaceLines log;

private:
    const Repository::CRepositoryStorageManager::NCFKinds m_ncfKinds;
    const Repository::CRepositoryStorageManager::FOCKinds m_focKinds;
    const Repository::CRepositoryStorageManager::FileManagers m_fileManagers;
};
