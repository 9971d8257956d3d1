// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "platform/os/Module.h"
#include "platform/text/Fill.h"

#include <fstream>
#include <iterator>

using Manager = Repository::CRepositoryStorageManager;

namespace {

// Builds the manager at the first call, from an installation that is gone afterwards.
Manager& ManagerOfTheProcess() {
    static Manager* const manager = [] {
        const Installation installation;
        installation.Add(ZEBX_GISCORE_MODULE, "ZEBXGisCore.arx");
        GivePluginItsScript(
            installation.Add(ZEBX_SCRIPTED_PLUGIN, "ZEBXRepositoryClientPlugin_Scripted.arx"),
            ScriptOfTheProcess());
        testing::NiceMock<MockBackend> backend;
        ScriptOfTheProcess().backend = &backend;
        auto* const built = Manager::Instance();
        ScriptOfTheProcess().backend = nullptr;
        return built;
    }();
    return *manager;
}

} // namespace

void GivePluginItsScript(const CString& path, PluginScript& script) {
    const auto module = Platform::LoadModule(path);
    const auto set =
        reinterpret_cast<SetPluginScriptFunction>(Platform::FindExport(module, "SetPluginScript"));
    ASSERT_TRUE(set);
    set(&script);
}

PluginScript& ScriptOfTheProcess() {
    static PluginScript script;
    return script;
}

CString Msg(int number) {
    return ZEBGis::CModuleConfiguration::Instance()->GetMsg(number);
}

MockFileManager::MockFileManager() = default;
MockFileManager::~MockFileManager() = default;

ManagerTest::ManagerTest()
    : m_backend(std::make_unique<testing::StrictMock<MockBackend>>()),
      manager(ManagerOfTheProcess()), backend(*m_backend), m_ncfKinds(manager.GetNCFMetadata()),
      m_focKinds(manager.GetFOCMetadata()), m_fileManagers(FileManagersOf(manager)) {
    ScriptOfTheProcess().backend = &backend;
}

ManagerTest::~ManagerTest() {
    ScriptOfTheProcess().backend = nullptr;
    manager.GetNCFMetadata() = m_ncfKinds;
    manager.GetFOCMetadata() = m_focKinds;
    FileManagersOf(manager) = m_fileManagers;
}

void ManagerTest::ForgetKinds() {
    manager.GetNCFMetadata().clear();
    manager.GetFOCMetadata().clear();
}

boost::shared_ptr<MockFileManager> ManagerTest::ReplaceFileManager(const CString& id) {
    const auto fileManager = boost::make_shared<testing::StrictMock<MockFileManager>>();
    fileManager->id = id;
    FileManagersOf(manager).erase(id);
    manager.RegisterFileManager(fileManager);
    return fileManager;
}

WorkspaceLines::Line ManagerTest::Failure(int number, CStringView what) {
    return {4, Platform::Fill(u"%s - %s", {Msg(number), what})};
}

ManagerTest::File ManagerTest::Stored(const char16_t* name, std::string_view bytes) {
    const auto file = boost::make_shared<Repository::CRepositoryFile>();
    file->SetFileName(name);
    file->SetFileContent(
        Repository::Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
    return file;
}

std::string ManagerTest::BytesOf(const File& file) {
    return Repository::Base64Decode(file->GetFileContent());
}

std::vector<CString> ManagerTest::NamesOf(const Repository::RepositoryFiles& files) {
    std::vector<CString> names;
    for (const File& file : files)
        names.push_back(file->GetFileName());
    return names;
}

std::filesystem::path ManagerTest::SupportFolder() const {
    return Platform::NativePath(workstation.Support());
}

void ManagerTest::Write(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string ManagerTest::Read(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream || !std::filesystem::is_regular_file(path))
        return "(no file)";
    return {std::istreambuf_iterator<char>(stream), {}};
}
