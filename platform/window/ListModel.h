// SPDX-License-Identifier: MIT
// The rows behind a ListView; made for many of them, and for one more at any time.
#pragma once

#include "platform/text/Text.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QString>
#include <functional>
#include <map>
#include <vector>

namespace Platform {

class ListModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void SetHasCheckBoxes(bool has);
    int AddColumn(const CString& header);
    int AddRow(std::vector<CString> texts, const void* data, const char16_t* icon, int iconColumn);
    void Clear();
    bool HasRow(int row) const { return row >= 0 && row < static_cast<int>(m_rows.size()); }
    CString Text(int row, int column) const;
    std::size_t TextLength(int row, int column) const;
    const void* Data(int row) const;
    int CheckState(int row) const;
    void SetCheckState(int row, int state);
    void SetAllCheckStates(int state);
    // As the user does it: a row that is not wholly ticked gets its tick.
    void Toggle(int row);
    // Called after the user changed a tick.
    std::function<void()> onTicked;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Row {
        std::vector<CString> texts;
        const void* data;
        const QIcon* icon;
        int iconColumn;
        int checkState;
    };

    const QIcon* Icon(const char16_t* resource);

    bool m_hasCheckBoxes = false;
    std::vector<CString> m_headers;
    std::vector<Row> m_rows;
    std::map<CString, QIcon> m_icons;
};

} // namespace Platform
