// SPDX-License-Identifier: MIT
#include "platform/window/Dialog.h"
#include "platform/window/QtText.h"

#include <QComboBox>

namespace Platform {
namespace {

constexpr int kDataRole = Qt::UserRole;
constexpr int kTextRole = Qt::UserRole + 1;

QComboBox* Of(void* list) {
    return static_cast<QComboBox*>(list);
}

} // namespace

int DropDownList::Add(const CString& text, const void* data) {
    if (!m_list)
        return -1;
    QComboBox& list = *Of(m_list);
    const int entry = list.count();
    list.addItem(OneLine(text), QVariant::fromValue(const_cast<void*>(data)));
    list.setItemData(entry, ToQt(text), kTextRole);
    if (entry == 0) // Qt chooses the first by itself
        list.setCurrentIndex(-1);
    return entry;
}

int DropDownList::Count() const {
    return m_list ? Of(m_list)->count() : 0;
}

CString DropDownList::Text(int entry) const {
    return m_list ? FromQt(Of(m_list)->itemData(entry, kTextRole).toString()) : CString();
}

const void* DropDownList::Data(int entry) const {
    return m_list ? Of(m_list)->itemData(entry, kDataRole).value<void*>() : nullptr;
}

int DropDownList::Selected() const {
    return m_list ? Of(m_list)->currentIndex() : -1;
}

void DropDownList::Select(int entry) {
    if (m_list)
        Of(m_list)->setCurrentIndex(entry);
}

} // namespace Platform
