// SPDX-License-Identifier: MIT
#include "platform/window/ListModel.h"

#include "platform/window/Icons.h"
#include "platform/window/QtText.h"

#include <algorithm>
#include <utility>

namespace Platform {
namespace {

constexpr int kTicked = 1;
constexpr int kPartlyTicked = 2;

Qt::CheckState ToQt(int state) {
    if (state == kPartlyTicked)
        return Qt::PartiallyChecked;
    return state == kTicked ? Qt::Checked : Qt::Unchecked;
}

} // namespace

void ListModel::SetHasCheckBoxes(bool has) {
    beginResetModel();
    m_hasCheckBoxes = has;
    endResetModel();
}

int ListModel::AddColumn(const CString& header) {
    const int column = static_cast<int>(m_headers.size());
    beginInsertColumns({}, column, column);
    m_headers.push_back(header);
    endInsertColumns();
    return column;
}

int ListModel::AddRow(std::vector<CString> texts, const void* data, const char16_t* icon,
                      int iconColumn) {
    const int row = static_cast<int>(m_rows.size());
    beginInsertRows({}, row, row);
    m_rows.push_back({std::move(texts), data, Icon(icon), iconColumn, 0});
    endInsertRows();
    return row;
}

void ListModel::Clear() {
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

CString ListModel::Text(int row, int column) const {
    if (!HasRow(row))
        return {};
    const std::vector<CString>& texts = m_rows[row].texts;
    return column >= 0 && column < static_cast<int>(texts.size()) ? texts[column] : CString();
}

std::size_t ListModel::TextLength(int row, int column) const {
    if (!HasRow(row))
        return 0;
    const std::vector<CString>& texts = m_rows[row].texts;
    return column >= 0 && column < static_cast<int>(texts.size()) ? texts[column].size() : 0;
}

const void* ListModel::Data(int row) const {
    return HasRow(row) ? m_rows[row].data : nullptr;
}

int ListModel::CheckState(int row) const {
    return HasRow(row) ? m_rows[row].checkState : 0;
}

void ListModel::SetCheckState(int row, int state) {
    if (!HasRow(row))
        return;
    m_rows[row].checkState = std::clamp(state, 0, kPartlyTicked);
    const QModelIndex cell = index(row, 0);
    Q_EMIT dataChanged(cell, cell, {Qt::CheckStateRole});
}

void ListModel::SetAllCheckStates(int state) {
    if (m_rows.empty())
        return;
    for (Row& row : m_rows)
        row.checkState = std::clamp(state, 0, kPartlyTicked);
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
}

void ListModel::Toggle(int row) {
    if (!m_hasCheckBoxes || !HasRow(row))
        return;
    SetCheckState(row, CheckState(row) == kTicked ? 0 : kTicked);
    if (onTicked)
        onTicked();
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (!HasRow(index.row()))
        return {};
    const Row& row = m_rows[index.row()];
    if (role == Qt::DisplayRole)
        return OneLine(Text(index.row(), index.column()));
    if (role == Qt::DecorationRole && row.icon && index.column() == row.iconColumn)
        return *row.icon;
    if (role == Qt::CheckStateRole && m_hasCheckBoxes && index.column() == 0)
        return static_cast<int>(ToQt(row.checkState));
    return {};
}

bool ListModel::setData(const QModelIndex& index, const QVariant&, int role) {
    if (role != Qt::CheckStateRole || index.column() != 0)
        return false;
    Toggle(index.row());
    return true;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(OneLine(m_headers[section])) : QVariant();
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (m_hasCheckBoxes && index.column() == 0)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

const QIcon* ListModel::Icon(const char16_t* resource) {
    if (!resource)
        return nullptr;
    const auto [found, isNew] = m_icons.try_emplace(resource);
    if (isNew)
        found->second = IconFor(resource);
    return &found->second;
}

} // namespace Platform
