// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QClipboard>
#include <QLibraryInfo>
#include <QProcess>

using namespace Platform;

namespace {

struct Ended {
    int status;
    QString output;
};

// The probe in a process whose environment says so much of a display.
Ended Probe(const std::map<QString, QString>& display) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    for (const auto& [name, value] : display)
        environment.insert(name, value);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(ZEBX_WINDOW_PROBE, QStringList());
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.readAllStandardError(), "");
    return {process.exitCode(), process.readAllStandardOutput().trimmed()};
}

class TheWindowSystem : public WindowTest {};

TEST_F(TheWindowSystem, SaysThatNoDisplayIsSet) {
    const Ended ended = Probe({});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "neither DISPLAY nor WAYLAND_DISPLAY is set");
}

TEST_F(TheWindowSystem, SaysThatADisplayDoesNotAnswer) {
    for (const std::map<QString, QString>& display :
         {std::map<QString, QString>{{"DISPLAY", ":4711"}},
          {{"DISPLAY", ":4711"}, {"QT_QPA_PLATFORM", "xcb"}}}) {
        const Ended ended = Probe(display);
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.output, "DISPLAY=:4711: no X server answers");
    }
    EXPECT_EQ(Probe({{"DISPLAY", "not a display"}}).status, 1);
    EXPECT_EQ(Probe({{"DISPLAY", ""}, {"QT_QPA_PLATFORM", "xcb"}}).output, "DISPLAY is not set");
}

TEST_F(TheWindowSystem, SaysThatAWaylandSocketIsNotThere) {
    const Ended ended = Probe({{"WAYLAND_DISPLAY", "wayland-4711"}});
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.output.startsWith("WAYLAND_DISPLAY=wayland-4711: no socket "))
        << ended.output.toStdString();
}

TEST_F(TheWindowSystem, SaysWhichPlugInOfQtIsNotInstalled) {
    const Ended ended = Probe({{"QT_QPA_PLATFORM", "nosuch"}});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "Qt platform plugin \"nosuch\" (libqnosuch.so) is not installed");
}

TEST_F(TheWindowSystem, TakesTheFirstPlatformOfAListThatWorks) {
    EXPECT_EQ(Probe({{"DISPLAY", ":4711"}, {"QT_QPA_PLATFORM", "xcb;offscreen"}}).status, 0);
}

TEST_F(TheWindowSystem, EndsInPeaceWithWindowsLeftOver) {
    const Ended ended = Probe({{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(ended.status, 0);
}

TEST_F(TheWindowSystem, LeavesTheFormOfNumbersAlone) {
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(TheWindowSystem, StartsOnce) {
    const QCoreApplication* const first = QCoreApplication::instance();
    EXPECT_EQ(WhyNoWindows(u"hr"), u"");
    EXPECT_EQ(QCoreApplication::instance(), first);
    EXPECT_EQ(QCoreApplication::applicationName(), "zebx");
}

TEST_F(TheWindowSystem, SpeaksTheLanguageThatWasAskedForFirst) {
    EXPECT_EQ(WhyNoWindows(u"hr"), u"");
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Cancel");
    EXPECT_EQ(Probe({{"QT_QPA_PLATFORM", "offscreen"}}).output, "Odustani");
}

TEST_F(TheWindowSystem, PutsATextOnTheClipboard) {
    SetClipboardText(u"two\nlines & more");
    EXPECT_EQ(QApplication::clipboard()->text(), "two\nlines & more");
}

TEST_F(TheWindowSystem, ShowsTheWaitCursorForAsLongAsAsked) {
    {
        const WaitCursor outer;
        const WaitCursor inner;
        ASSERT_TRUE(QApplication::overrideCursor());
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
