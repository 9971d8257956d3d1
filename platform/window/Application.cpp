// SPDX-License-Identifier: MIT
#include "platform/window/Application.h"

#include "platform/window/Busy.h"
#include "platform/window/Display.h"
#include "platform/window/QtText.h"
#include "platform/window/Style.h"
#include "platform/window/WindowSystem.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <locale>
#include <memory>
#include <string>

namespace Platform {
namespace {

bool g_isProcessEnding = false;

// While Qt starts it writes about the machine to standard error; only what ends it matters.
void DropMessages(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg || type == QtCriticalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

// Numbers keep their form: Qt switches the process to the user's locale.
class NumberLocaleGuard {
public:
    NumberLocaleGuard() : m_before(std::setlocale(LC_NUMERIC, nullptr)) {}
    ~NumberLocaleGuard() { std::setlocale(LC_NUMERIC, m_before.c_str()); }
    NumberLocaleGuard(const NumberLocaleGuard&) = delete;
    NumberLocaleGuard& operator=(const NumberLocaleGuard&) = delete;

private:
    std::string m_before;
};

// Neither is ever destroyed: modules loaded later hold windows to the process's end.
void MakeApplication(const QString& platform) {
    static std::string name = "zebx";
    static std::string option = "-platform";
    static std::string value = platform.toStdString();
    static std::array<char*, 4> arguments = {name.data(), option.data(), value.data(), nullptr};
    static int count = 3;
    const NumberLocaleGuard numbers;
    const QtMessageHandler before = qInstallMessageHandler(DropMessages);
    new QApplication(count, arguments.data());
    qInstallMessageHandler(before);
}

void Translate(const QString& language) {
    static bool isTranslated = false;
    if (language.isEmpty() || isTranslated)
        return;
    isTranslated = true;
    QLocale::setDefault(QLocale(language));
    auto* const translator = new QTranslator(qApp);
    if (translator->load(QStringLiteral("qtbase_") + language,
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}

void SetUpApplication() {
    QCoreApplication::setApplicationName(QStringLiteral("zebx"));
    static auto* const style = new Style; // never destroyed, like the application that takes it
    QApplication::setStyle(style);
    // Windows run loops of their own; none of them ends the process.
    QApplication::setQuitOnLastWindowClosed(false);
    StartDroppingInput();
}

QString Start() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        const Display display = FindDisplay();
        if (!display.problem.isEmpty())
            return display.problem;
        MakeApplication(display.platform);
    }
    SetUpApplication();
    return {};
}

} // namespace

bool IsProcessEnding() {
    return g_isProcessEnding;
}

void NoticeTheEnd() {
    std::atexit([] { g_isProcessEnding = true; });
}

CString WhyNoWindows(CStringView language) try {
    static bool hasStarted = false;
    if (!hasStarted) {
        const QString problem = Start();
        if (!problem.isEmpty())
            return FromQt(problem);
        hasStarted = true;
    }
    Translate(ToQt(language));
    return {};
} catch (const std::exception& error) {
    return FromQt(QString::fromUtf8(error.what()));
}

} // namespace Platform
