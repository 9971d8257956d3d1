// SPDX-License-Identifier: MIT
// What the tests of the manager's operations start from: the process's one manager over the
// scripted plug-in, a strict backend behind it, an empty workstation, and the lines of the
// workspace log.
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "client/manager/FileManagers.h"
#include "client/manager/Installation.h"
#include "client/manager/MockBackend.h"
#include "client/manager/ScriptedPlugin.h"
#include "support/WorkspaceLines.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <memory>

// Loads a copy of the scripted plug-in and gives it its script.
void GivePluginItsScript(const CString& path, PluginScript& script);

// The script of the plug-in that the process's manager holds.
PluginScript& ScriptOfTheProcess();

// The text of the family's message table.
CString Msg(int number);

// A file manager whose calls a test expects.
class MockFileManager : public Repository::IFileManager {
    using Files = Repository::RepositoryFiles;

public:
    MockFileManager();
    virtual ~MockFileManager();
    MOCK_METHOD(void, GetFiles, (Files&, const char16_t*), (override));
    MOCK_METHOD(void, PutFiles, (Files&, int, const void*), (override));
    CString GetId() override { return id; }

    CString id;
};

class ManagerTest : public testing::Test {
protected:
    using Lines = std::vector<WorkspaceLines::Line>;
    using File = boost::shared_ptr<Repository::CRepositoryFile>;

    ManagerTest();
    ~ManagerTest() override;

    // Replaces the built-in kinds by none.
    void ForgetKinds();

    // Registers a file manager of the test, in the place of one that is there; every call
    // to it must be expected.
    boost::shared_ptr<MockFileManager> ReplaceFileManager(const CString& id);

    // Lines of the workspace log.
    static WorkspaceLines::Line Failure(int number, CStringView what);
    static WorkspaceLines::Line Success(CStringView what) { return {1, CString(what)}; }

    // A stored file as a backend hands it out.
    static File Stored(const char16_t* name, std::string_view bytes);
    static std::string BytesOf(const File& file);
    static std::vector<CString> NamesOf(const Repository::RepositoryFiles& files);

    std::filesystem::path SupportFolder() const;
    // Makes the file and its folder.
    static void Write(const std::filesystem::path& path, std::string_view bytes);
    // What the file holds; "(no file)" when there is none.
    static std::string Read(const std::filesystem::path& path);

private:
    const std::unique_ptr<MockBackend> m_backend;

protected:
    Repository::CRepositoryStorageManager& manager;
    Installation workstation;
    MockBackend& backend; // strict: every call must be expected
    WorkspaceLines log;

private:
    const Repository::CRepositoryStorageManager::NCFKinds m_ncfKinds;
    const Repository::CRepositoryStorageManager::FOCKinds m_focKinds;
    const Repository::CRepositoryStorageManager::FileManagers m_fileManagers;
};
