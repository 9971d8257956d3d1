// SPDX-License-Identifier: MIT
// The version that the backend is told: that of the core library's file in the installation.
#include "client/manager/ManagerTest.h"
#include "support/InAChildProcess.h"

#include <fstream>

using namespace Repository;

namespace {

class Version : public testing::Test {
protected:
    // The version that a manager built from this installation tells its backend.
    void ExpectVersion(const CString& expected) {
        EXPECT_TRUE(PassesInAChildProcess([&] {
            testing::NiceMock<MockBackend> backend;
            PluginScript script;
            script.backend = &backend;
            GivePluginItsScript(
                installation.Add(ZEBX_SCRIPTED_PLUGIN, "ZEBXRepositoryClientPlugin_X.arx"), script);
            EXPECT_CALL(backend, SetVersion(TextIs(expected)));
            ASSERT_TRUE(CRepositoryStorageManager::Instance());
        }));
    }

    Installation installation;
};

} // namespace

TEST_F(Version, OfTheCoreLibraryIsThatOfTheBuild) {
    installation.Add(ZEBX_GISCORE_MODULE, "ZEBXGisCore.arx");
    ExpectVersion(u"" ZEBX_VERSION);
}

// A module with the version 3.20.65535.4 in the core library's place.
TEST_F(Version, HasFourPartsInDecimalsWithoutLeadingZeros) {
    installation.Add(ZEBX_SCRIPTED_PLUGIN, "ZEBXGisCore.arx");
    ExpectVersion(u"3.20.65535.4");
}

TEST_F(Version, IsEmptyWithoutTheFile) {
    ExpectVersion(u"");
}

TEST_F(Version, IsEmptyForAFileWithoutAVersionRecord) {
    std::ofstream(installation.Native() / "ZEBXGisCore.arx") << "no module";
    ExpectVersion(u"");
}
