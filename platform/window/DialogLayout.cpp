// SPDX-License-Identifier: MIT
// Where a window's controls are, at its template's size and when it is larger.
#include "platform/window/DialogWindow.h"

#include <QComboBox>
#include <QEvent>
#include <algorithm>

namespace Platform {
namespace {

// A drop-down list's height in its template is that of its open list; closed it has this one.
constexpr int kClosedListHeight = 12;
constexpr int kListLine = 8;

QRect PlaceOf(const ControlTemplate& look, const DialogUnits& units) {
    if (look.kind != ControlClass::DropDownList)
        return units.ToPixels(look.x, look.y, look.width, look.height);
    return units.ToPixels(look.x, look.y, look.width, kClosedListHeight);
}

} // namespace

void DialogWindow::TakeTemplateSize() {
    if (m_host)
        return Layout();
    m_templateSize = DialogUnits(font()).ToPixels(m_dialog->m_look.width, m_dialog->m_look.height);
    setMinimumSize(m_templateSize);
    resize(m_templateSize);
    Layout();
}

// A page grows with the tab control that it is in.
QSize DialogWindow::Growth(const DialogUnits& units) const {
    if (!m_host)
        return size() - m_templateSize;
    for (const Control& control : m_host->m_controls) {
        if (control.look->kind == ControlClass::TabControl)
            return control.widget->size() - PlaceOf(*control.look, units).size();
    }
    return {0, 0};
}

void DialogWindow::Layout() {
    const DialogUnits units(font());
    const QSize growth = Growth(units).expandedTo({0, 0});
    for (const Control& control : m_controls) {
        const ControlTemplate& look = *control.look;
        control.widget->setGeometry(Resized(PlaceOf(look, units), look.onResize, growth));
        if (auto* const dropDown = dynamic_cast<QComboBox*>(control.widget))
            dropDown->setMaxVisibleItems(
                std::max(3, (look.height - kClosedListHeight) / kListLine));
    }
}

void DialogWindow::resizeEvent(QResizeEvent*) {
    Layout();
}

void DialogWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange && m_dialog)
        TakeTemplateSize();
    QWidget::changeEvent(event);
}

} // namespace Platform
