// SPDX-License-Identifier: MIT
#include "platform/window/Dialog.h"
#include "platform/window/ListControl.h"

#include <utility>

namespace Platform {
namespace {

ListControl* Of(void* list) {
    return static_cast<ListControl*>(list);
}

} // namespace

void ListView::SetStyle(unsigned style) {
    if (m_list)
        Of(m_list)->SetStyle(style);
}

int ListView::InsertColumn(const CString& header) {
    return m_list ? Of(m_list)->Model().AddColumn(header) : -1;
}

void ListView::SizeColumnToHeader(int column) {
    if (m_list)
        Of(m_list)->SizeColumn(column);
}

int ListView::AddRow(std::vector<CString> texts, const void* data, const char16_t* icon,
                     int iconColumn) {
    return m_list ? Of(m_list)->Model().AddRow(std::move(texts), data, icon, iconColumn) : -1;
}

void ListView::DeleteAllRows() {
    if (m_list)
        Of(m_list)->Clear();
}

int ListView::RowCount() const {
    return m_list ? Of(m_list)->Model().rowCount() : 0;
}

CString ListView::Text(int row, int column) const {
    return m_list ? Of(m_list)->Model().Text(row, column) : CString();
}

const void* ListView::Data(int row) const {
    return m_list ? Of(m_list)->Model().Data(row) : nullptr;
}

int ListView::CheckState(int row) const {
    return m_list ? Of(m_list)->Model().CheckState(row) : 0;
}

void ListView::SetCheckState(int row, int state) {
    if (m_list)
        Of(m_list)->Model().SetCheckState(row, state);
}

void ListView::SetAllCheckStates(int state) {
    if (m_list)
        Of(m_list)->Model().SetAllCheckStates(state);
}

std::vector<int> ListView::SelectedRows() const {
    return m_list ? Of(m_list)->SelectedRows() : std::vector<int>();
}

void ListView::SelectAll() {
    if (m_list)
        Of(m_list)->selectAll();
}

void ListView::ScrollTo(int row) {
    if (m_list)
        Of(m_list)->ScrollToRow(row);
}

bool ListView::IsAtEnd() const {
    return !m_list || Of(m_list)->IsAtEnd();
}

} // namespace Platform
