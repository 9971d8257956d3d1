// SPDX-License-Identifier: MIT
#include "platform/window/Display.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QLibraryInfo>
#include <QStringList>
#include <xcb/xcb.h>

namespace Platform {
namespace {

QString Variable(const char* name) {
    return qEnvironmentVariable(name);
}

QStringList PluginFolders() {
    QStringList folders;
    const QString own = Variable("QT_QPA_PLATFORM_PLUGIN_PATH");
    for (const QString& folder : own.split(QDir::listSeparator(), Qt::SkipEmptyParts))
        folders << folder << folder + QStringLiteral("/platforms");
    const QString general = Variable("QT_PLUGIN_PATH");
    for (const QString& folder : general.split(QDir::listSeparator(), Qt::SkipEmptyParts))
        folders << folder + QStringLiteral("/platforms");
    return folders << QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms");
}

QString PluginFile(const QString& name) {
    const bool isWayland = name == u"wayland";
    return QStringLiteral("libq%1.so").arg(isWayland ? QStringLiteral("wayland-generic") : name);
}

// Why Qt's plug-in for it cannot be loaded.
QString PluginProblem(const QString& name) {
    const QString file = PluginFile(name);
    for (const QString& folder : PluginFolders()) {
        const QString path = folder + u'/' + file;
        if (!QFileInfo::exists(path))
            continue;
        QLibrary library(path);
        return library.load() ? QString() : library.errorString();
    }
    return QStringLiteral("Qt platform plugin \"%1\" (%2) is not installed").arg(name, file);
}

QString XcbProblem(std::shared_ptr<void>& held) {
    const QString display = Variable("DISPLAY");
    if (display.isEmpty())
        return QStringLiteral("DISPLAY is not set");
    const std::shared_ptr<xcb_connection_t> connection(xcb_connect(nullptr, nullptr),
                                                       xcb_disconnect);
    const bool answers = connection && xcb_connection_has_error(connection.get()) == 0;
    if (answers)
        held = connection;
    return answers ? QString() : QStringLiteral("DISPLAY=%1: no X server answers").arg(display);
}

QString WaylandProblem() {
    const QString display = Variable("WAYLAND_DISPLAY");
    if (display.isEmpty())
        return QStringLiteral("WAYLAND_DISPLAY is not set");
    const QString socket = QDir(Variable("XDG_RUNTIME_DIR")).filePath(display);
    if (!QFileInfo::exists(socket))
        return QStringLiteral("WAYLAND_DISPLAY=%1: no socket %2").arg(display, socket);
    return {};
}

// `platform` as in QT_QPA_PLATFORM: a name, and arguments after a colon.
Display Tried(const QString& platform) {
    const QString name = platform.section(u':', 0, 0);
    Display display = {platform, {}, {}};
    if (name == u"xcb")
        display.problem = XcbProblem(display.connection);
    else if (name.startsWith(u"wayland"))
        display.problem = WaylandProblem();
    if (display.problem.isEmpty())
        display.problem = PluginProblem(name);
    return display;
}

QStringList Candidates() {
    const QString wanted = Variable("QT_QPA_PLATFORM");
    if (!wanted.isEmpty())
        return wanted.split(u';', Qt::SkipEmptyParts);
    QStringList candidates;
    if (!Variable("DISPLAY").isEmpty())
        candidates << QStringLiteral("xcb");
    if (!Variable("WAYLAND_DISPLAY").isEmpty())
        candidates << QStringLiteral("wayland");
    return candidates;
}

} // namespace

Display FindDisplay() {
    QStringList problems;
    for (const QString& candidate : Candidates()) {
        Display display = Tried(candidate);
        if (display.problem.isEmpty())
            return display;
        problems << display.problem;
    }
    if (problems.isEmpty())
        problems << QStringLiteral("neither DISPLAY nor WAYLAND_DISPLAY is set");
    return {{}, problems.join(QStringLiteral("; ")), {}};
}

} // namespace Platform
