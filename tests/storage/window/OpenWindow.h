// SPDX-License-Identifier: MIT
// The connection window as a user has it before him: its controls by their identifiers.
#pragma once

#include "storage/window/ConnectionDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

namespace Storage {

using Id = ConnectionDialog::Id;

class OpenWindow {
public:
    // The one that is shown; null when none is.
    OpenWindow() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->findChild<QWidget*>(QString::number(Id::Report)))
                m_window = window;
    }
    explicit operator bool() const { return m_window; }
    QWidget* Widget() const { return m_window; }

    template<class Control = QWidget>
    Control* Find(int id) const {
        auto* const control = m_window->findChild<Control*>(QString::number(id));
        if (!control)
            throw std::runtime_error("no control " + std::to_string(id));
        return control;
    }

    void Click(int id) const { QTest::mouseClick(Find(id), Qt::LeftButton); }
    // A click on the middle of a wide radio button or box would miss it.
    void Tick(int id) const { Find<QAbstractButton>(id)->click(); }
    bool IsTicked(int id) const { return Find<QAbstractButton>(id)->isChecked(); }
    bool IsEnabled(int id) const { return Find(id)->isEnabled(); }

    std::string Text(int id) const { return Find<QLineEdit>(id)->text().toStdString(); }
    void Type(int id, const std::string& text) const {
        auto* const field = Find<QLineEdit>(id);
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QString::fromStdString(text));
    }
    std::string Report() const {
        return Find<QPlainTextEdit>(Id::Report)->toPlainText().toStdString();
    }
    std::vector<std::string> ReportLines() const {
        std::vector<std::string> lines;
        for (const QString& line : QString::fromStdString(Report()).split(u'\n'))
            lines.push_back(line.toStdString());
        return lines;
    }
    std::string Tls() const { return Find<QComboBox>(Id::Tls)->currentText().toStdString(); }
    void ChooseTls(int entry) const {
        auto* const list = Find<QComboBox>(Id::Tls);
        list->setFocus();
        list->setCurrentIndex(0);
        for (int i = 0; i < entry; ++i)
            QTest::keyClick(list, Qt::Key_Down);
    }

private:
    QWidget* m_window = nullptr;
};

} // namespace Storage
