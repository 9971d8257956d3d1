// SPDX-License-Identifier: MIT
// The configuration dialog with the log's window beside it, as "zebx dialog" shows them, on the
// display of the environment.
//
// usage: zebx_bench_dialog open   from the call to the painted window, with 1,000 kinds of
//                                 drawings and 500 catalogues registered
//        zebx_bench_dialog load   from the click on the drawings' "Load all" to its end
// Prints the seconds.
#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/ConfigurationDialog.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabWidget>
#include <boost/make_shared.hpp>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>

namespace {

using Clock = std::chrono::steady_clock;
using Repository::CRepositoryStorageManager;

constexpr int kKinds = 1000;
constexpr int kCatalogues = 500;
constexpr int kDrawingsPage = 3;

double SecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

void DeclareCatalogues() {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"support");
    std::string text = "<catalogues>\n";
    for (int i = 0; i < kCatalogues; ++i) {
        const std::string number = std::to_string(i);
        text.append("<catalogue reference=\"BENCH_").append(number);
        text.append("\"><name language=\"en\">Catalogue ").append(number);
        text.append("</name></catalogue>\n");
    }
    Platform::CreateFolderChain(folder, Platform::Access::Private);
    Platform::ReplaceFile(folder + u"Catalogues.xml", text + "</catalogues>\n",
                          Platform::Access::Private);
}

void RegisterKinds(CRepositoryStorageManager& manager) {
    for (int i = 0; i < kKinds; ++i) {
        const CString id = u"BENCH_" + Platform::ToText(i);
        manager.RegisterNCFMetadata(boost::make_shared<Repository::CNCFMetadata>(
            id.c_str(), 350, Repository::BaseFolderSupport, id.c_str(), Repository::NCFTypePattern,
            u"*.dwg", 0));
    }
}

QWidget* Dialog() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->findChild<QTabWidget*>())
            return window;
    }
    return nullptr;
}

// Waits for the dialog to be painted and then works on it.
class Watcher : public QObject {
public:
    explicit Watcher(std::function<void(QWidget*)> work) : m_work(std::move(work)) {
        m_isPainted.setSingleShot(true);
        connect(&m_isPainted, &QTimer::timeout, this, [this] { m_work(Dialog()); });
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && object == Dialog() &&
            !std::exchange(m_hasBegun, true))
            m_isPainted.start();
        return false;
    }

private:
    std::function<void(QWidget*)> m_work;
    QTimer m_isPainted;
    bool m_hasBegun = false;
};

void Press(QWidget* parent, const char* button) {
    parent->findChild<QPushButton*>(button)->click();
}

} // namespace

int main(int argc, char** argv) {
    const bool opens = argc == 2 && std::strcmp(argv[1], "open") == 0;
    if (!opens && (argc != 2 || std::strcmp(argv[1], "load") != 0)) {
        std::fputs("usage: zebx_bench_dialog open|load\n", stderr);
        return 2;
    }
    if (opens)
        DeclareCatalogues();
    auto& manager = *CRepositoryStorageManager::Instance();
    if (opens)
        RegisterKinds(manager);
    auto begin = Clock::now();
    if (!Repository::WhyNoConfigurationDialog().empty())
        return 1;
    double seconds = 0;
    Watcher watcher([&](QWidget* dialog) {
        if (!opens) {
            auto* tabs = dialog->findChild<QTabWidget*>();
            tabs->setCurrentIndex(kDrawingsPage);
            begin = Clock::now();
            Press(tabs->currentWidget(), "115");
        }
        seconds = SecondsSince(begin);
        Press(dialog, "1");
    });
    qApp->installEventFilter(&watcher);
    ZEBGis::Workspace::CWsManager::Instance()->ShowWindow(nullptr);
    manager.ShowConfigurationDialog();
    std::printf("%.4f\n", seconds);
    return 0;
}
