// SPDX-License-Identifier: MIT
// The repository goes away while the open dialog loads everything, at each line of the log in
// turn: the dialog lives on, and what was loaded stays.
#include "app/Station.h"
#include "app/Storage.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"

#include "ZEBXRepositoryClient/ConfigurationDialog.h"
#include "ZEBXWorkspaceCore/WsManager.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <algorithm>
#include <boost/make_shared.hpp>
#include <functional>
#include <gtest/gtest.h>
#include <stdlib.h>

namespace {

namespace fs = std::filesystem;
using AppTest::Bytes;
using AppTest::Station;
using namespace ZEBGis::Workspace;

constexpr const char* kLoadEverything = "111";
constexpr const char* kClose = "1";

const fs::path kSample = fs::path(ZEBX_SOURCE_DIR) / "examples/installation";

// Keeps the lines' kinds, and does something once at one of them.
class Watch : public IWsSink {
public:
    Watch(int line, std::function<void()> act) : m_line(line), m_act(std::move(act)) {}
    void Write(const CWsMessage& message) override {
        kinds.push_back(message.type);
        if (static_cast<int>(kinds.size()) == m_line)
            m_act();
    }
    std::vector<int> kinds;

private:
    int m_line;
    std::function<void()> m_act;
};

void Click(const char* button) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* found = window->findChild<QPushButton*>(button);
        if (found && window->isVisible() && window->findChild<QWidget*>(kLoadEverything))
            found->click();
    }
}

// The sample, sent by one workstation, and another that shall load it.
class VanishingRepository : public testing::Test {
protected:
    VanishingRepository() {
        const std::string address = "sqlite:" + Repository().string();
        GiveOwnInstallation(m_sender);
        EXPECT_EQ(m_sender.Zebx({"init"}).status, 0);
        const auto options = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
        fs::copy(kSample / "support", m_sender.Support(), options);
        fs::copy(kSample / "install", m_sender.Folder() / "install", options);
        EXPECT_EQ(m_sender.Zebx({"connect", "--create", address}).status, 0);
        EXPECT_EQ(m_sender.Zebx({"push"}).status, 0);
    }

    fs::path Repository() const { return m_sender.Folder() / "shared/network.db"; }

    static void GiveOwnInstallation(Station& station) {
        fs::create_directories(station.Folder() / "install");
        for (const auto& entry : fs::directory_iterator(ZEBX_BUILD_DIR "/lib/zebx"))
            fs::create_symlink(entry.path(),
                               station.Folder() / "install" / entry.path().filename());
        station.Set("ZEBX_INSTALL", (station.Folder() / "install").string());
    }

    // A new workstation that is connected.
    std::unique_ptr<Station> Receiver() const {
        auto station = std::make_unique<Station>();
        GiveOwnInstallation(*station);
        EXPECT_EQ(station->Zebx({"init"}).status, 0);
        EXPECT_EQ(station->Zebx({"connect", "sqlite:" + Repository().string()}).status, 0);
        return station;
    }

    // Opens the dialog there, loads everything, loses the repository at that line, and closes
    // the dialog.  Call in a child process: the storage manager exists once.
    static std::vector<int> LoadEverything(const Station& station, int line,
                                           const std::function<void()>& lose) {
        for (const auto& [name, value] : station.Variables())
            setenv(name.c_str(), value.c_str(), 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        const auto watch = boost::make_shared<Watch>(line, lose);
        auto* log = CWsManager::Instance();
        const App::OpenStorage storage = App::RequireStorage();
        EXPECT_EQ(Repository::WhyNoConfigurationDialog(), u"");
        QMetaObject::invokeMethod(
            qApp,
            [&] {
                log->AddSink(watch);
                Click(kLoadEverything);
                log->RemoveSink(watch);
                Click(kClose);
            },
            Qt::QueuedConnection);
        storage.manager.ShowConfigurationDialog();
        return watch->kinds;
    }

    // Every file that the receiver has is the sender's.
    void ExpectWhatIsThereIsWhole(const Station& receiver) const {
        for (const auto& entry : fs::recursive_directory_iterator(receiver.Support())) {
            const fs::path name = fs::relative(entry.path(), receiver.Support());
            if (!entry.is_regular_file() || name.string().starts_with("Catalogues/"))
                continue; // a catalogue is written anew, with what was here
            EXPECT_EQ(Bytes(entry.path()), Bytes(m_sender.Support() / name)) << name;
        }
    }

    static void OpenToOthers(const Station& station) {
        fs::permissions(station.Folder(), fs::perms::all);
        for (const auto& entry : fs::recursive_directory_iterator(station.Folder()))
            if (!entry.is_symlink())
                fs::permissions(entry.path(), fs::perms::all);
    }

    // How many lines a load has that nothing disturbs.
    int UndisturbedLines() const {
        const auto receiver = Receiver();
        EXPECT_TRUE(PassesInAChildProcess([&] {
            const std::vector<int> kinds = LoadEverything(*receiver, 0, [] {});
            EXPECT_EQ(std::ranges::count(kinds, MessageFailure), 0);
            AppTest::Write(receiver->Folder() / "lines", std::to_string(kinds.size()));
        }));
        ExpectWhatIsThereIsWhole(*receiver);
        return std::stoi(Bytes(receiver->Folder() / "lines"));
    }

    Station m_sender;
};

} // namespace

TEST_F(VanishingRepository, RemovedAtAnyLineItStopsTheLoadAndTheDialogLivesOn) {
    const std::string whole = Bytes(Repository());
    const int lines = UndisturbedLines();
    ASSERT_GT(lines, 20);
    for (int line = 1; line < lines; ++line) {
        SCOPED_TRACE(line);
        AppTest::Write(Repository(), whole);
        const auto receiver = Receiver();
        EXPECT_TRUE(PassesInAChildProcess([&] {
            const auto kinds = LoadEverything(*receiver, line, [&] { fs::remove(Repository()); });
            // The storage says once what is wrong; whoever was under way may say so as well.
            ASSERT_GE(static_cast<int>(kinds.size()), line);
            const std::vector<int> later(kinds.begin() + line, kinds.end());
            EXPECT_GE(std::ranges::count(later, MessageFailure), 1);
            EXPECT_EQ(std::ranges::count(later, MessageSuccess), 0);
        }));
        ExpectWhatIsThereIsWhole(*receiver);
    }
}

TEST_F(VanishingRepository, WhoMayNotReadItAnyMoreKeepsWhatWasLoaded) {
    const int lines = UndisturbedLines();
    for (int line = 1; line < lines; line += 5) {
        SCOPED_TRACE(line);
        const auto receiver = Receiver();
        OpenToOthers(*receiver);
        EXPECT_TRUE(PassesInAChildProcess([&] {
            const auto kinds = LoadEverything(*receiver, line, [&] {
                fs::permissions(Repository(), fs::perms::none);
                fs::permissions(Repository().parent_path(), fs::perms::none);
                BecomeOrdinaryUser();
            });
            // It came to the line at which the rights went, and all before it had worked.
            ASSERT_GE(static_cast<int>(kinds.size()), line);
            EXPECT_EQ(std::count(kinds.begin(), kinds.begin() + line, MessageSuccess), line);
        }));
        fs::permissions(Repository().parent_path(), fs::perms::owner_all);
        fs::permissions(Repository(), fs::perms::owner_read | fs::perms::owner_write);
        ExpectWhatIsThereIsWhole(*receiver);
    }
}
