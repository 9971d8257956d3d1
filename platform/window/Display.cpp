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

QString XcbProblem() {
    const QString display = Variable("DISPLAY");
    if (display.isEmpty())
        return QStringLiteral("DISPLAY is not set");
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool answers = connection && xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
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
QString Problem(const QString& platform) {
    const QString name = platform.section(u':', 0, 0);
    QString problem;
    if (name == u"xcb")
        problem = XcbProblem();
    else if (name.startsWith(u"wayland"))
        problem = WaylandProblem();
    return problem.isEmpty() ? PluginProblem(name) : problem;
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
        const QString problem = Problem(candidate);
        if (problem.isEmpty())
            return {candidate, {}};
        problems << problem;
    }
    if (problems.isEmpty())
        problems << QStringLiteral("neither DISPLAY nor WAYLAND_DISPLAY is set");
    return {{}, problems.join(QStringLiteral("; "))};
}

} // namespace Platform
