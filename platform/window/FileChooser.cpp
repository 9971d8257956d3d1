// SPDX-License-Identifier: MIT
#include "platform/window/Busy.h"
#include "platform/window/QtText.h"
#include "platform/window/WindowSystem.h"

#include <QApplication>
#include <QFileDialog>

namespace Platform {
namespace {

void SetUp(QFileDialog& chooser, const FileQuestion& question) {
    // The system's own chooser depends on what is installed.
    chooser.setOption(QFileDialog::DontUseNativeDialog);
    chooser.setWindowModality(Qt::WindowModal);
    chooser.setAcceptMode(question.isForSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    chooser.setFileMode(question.isForSaving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!question.folder.empty())
        chooser.setDirectory(ToQt(question.folder).replace(u'\\', u'/'));
    if (!question.filter.empty())
        chooser.setNameFilter(ToQt(question.filter));
    chooser.selectFile(ToQt(question.name));
}

} // namespace

std::optional<CString> ChooseFile(const FileQuestion& question) try {
    if (!WhyNoWindows({}).empty())
        return {};
    const QWidget* const working = WorkingWindow();
    QWidget* const parent = working ? const_cast<QWidget*>(working) : QApplication::activeWindow();
    QFileDialog chooser(parent, OneLine(question.title));
    SetUp(chooser, question);
    const OpenedWindow opened(chooser);
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty())
        return {};
    return FromQt(chooser.selectedFiles().constFirst());
} catch (...) {
    return {};
}

} // namespace Platform
