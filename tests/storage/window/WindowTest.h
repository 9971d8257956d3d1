// SPDX-License-Identifier: MIT
// The real window over the real plug-in, with a repository and settings of the test's own.
#pragma once

#include "OpenWindow.h"
#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/File.h"
#include "platform/text/Utf8.h"
#include "platform/window/WindowSystem.h"
#include "storage/Administration.h"
#include "storage/SqlBackend.h"
#include "support/Workstation.h"

#include <QTimer>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

namespace Storage {

namespace fs = std::filesystem;

// The texts of messages as the family's modules give them.
class FamilyMessages : public Repository::IMsgProvider {
public:
    virtual ~FamilyMessages() = default;
    CString GetMsg(CString& buffer, int number) override {
        return buffer = ZEBGis::CModuleConfiguration::Instance()->GetMsg(number);
    }
};

class ConnectionWindowTest : public testing::Test {
protected:
    ConnectionWindowTest() {
        SetLanguage("en");
        access->SetMsgProvider(&messages);
        backend.SetSettingsPath(settingsFolder.c_str());
        backend.LoadSettings();
        fs::permissions(folder, fs::perms(0755));
    }
    ~ConnectionWindowTest() override { access->Disconnect(); }
    void SetUp() override { ASSERT_EQ(Platform::WhyNoWindows(u"en"), u""); }

    void SetLanguage(const char* language) {
        workstation.Set("ZEBX_LANGUAGE", language);
        Platform::UserSettings::Instance()->Reset();
    }
    void Connect(const std::string& name) {
        CString text;
        ASSERT_EQ(administration.Connect(Platform::FromUtf8(AddressOf(name)), true, text),
                  Problem::None)
            << Platform::ToUtf8(text);
    }

    // Asks for the window and runs `use` in it; one that is open then is cancelled.  What the
    // backend returned.
    int Edit(const std::function<void(const OpenWindow&)>& use) {
        bool wasShown = false;
        QTimer::singleShot(0, [&] {
            const OpenWindow window;
            wasShown = window && QTest::qWaitForWindowActive(window.Widget());
            if (wasShown)
                use(window);
            if (const OpenWindow open; open)
                open.Click(Platform::kIdCancel);
        });
        const int result = backend.EditConnectionParameters();
        EXPECT_TRUE(wasShown);
        return result;
    }

    std::string PathOf(const std::string& name) const { return (folder / name).string(); }
    std::string AddressOf(const std::string& name) const { return "sqlite:" + PathOf(name); }
    std::string AddressInUse() { return Platform::ToUtf8(administration.State().address); }
    std::string Settings() {
        std::string text;
        return Platform::ReadFile(settingsFile, text) ? "(none)" : text;
    }

    Workstation workstation;
    FamilyMessages messages;
    fs::path folder = workstation.Folder().Native();
    CString settingsFolder = workstation.Folder().Path() + u"settings\\";
    CString settingsFile = settingsFolder + u"ZEBXRepositoryClientPlugin_Sql.ini";
    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>();
    SqlBackend backend{access};
    Administration administration{access};
};

} // namespace Storage
