// SPDX-License-Identifier: MIT
// The control behind a ListView: whole rows, all of one height.
#pragma once

#include "platform/window/ListModel.h"

#include <QTreeView>
#include <vector>

namespace Platform {

class ListControl : public QTreeView {
public:
    explicit ListControl(QWidget* parent);

    ListModel& Model() { return m_model; }
    void SetStyle(unsigned style);
    void SizeColumn(int column);
    std::vector<int> SelectedRows() const;
    // At the next layout, however many rows were added before it.
    void ScrollToRow(int row);
    bool IsAtEnd() const;
    void Clear();

protected:
    void doItemsLayout() override;
    void updateGeometries() override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;

private:
    struct Column {
        int width = 0;           // that header and texts ask for
        int measured = 0;        // rows
        std::size_t longest = 0; // of their texts
    };

    int CellWidth(int row, int column) const;
    void FillWidth();

    ListModel m_model;
    std::vector<Column> m_columns;
    bool m_hasGridLines = false;
    int m_rowToShow = -1;
};

} // namespace Platform
