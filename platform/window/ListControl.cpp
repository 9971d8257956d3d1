// SPDX-License-Identifier: MIT
#include "platform/window/ListControl.h"

#include "platform/window/Dialog.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

namespace Platform {
namespace {

constexpr int kSpaceInRow = 4;

// Rows are all of one height, which no text and no box of a row fills.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static int Height(const QWidget& list) {
        const int box = list.style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, &list);
        return std::max({list.fontMetrics().height(), box, kIconSize}) + kSpaceInRow;
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), option.widget ? Height(*option.widget) : size.height()};
    }

private:
    static constexpr int kIconSize = 16;
};

// Laying out a text takes long: of a longer list, only longer texts than before are measured.
constexpr int kRowsToMeasure = 1000;

} // namespace

ListControl::ListControl(QWidget* parent) : QTreeView(parent) {
    setModel(&m_model);
    setItemDelegate(new RowDelegate(this));
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideRight);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setHighlightSections(false);
}

void ListControl::SetStyle(unsigned style) {
    m_model.SetHasCheckBoxes((style & ListView::CheckBoxes) != 0);
    m_hasGridLines = (style & ListView::GridLines) != 0;
    viewport()->update();
}

void ListControl::SizeColumn(int column) {
    if (column < 0 || column >= m_model.columnCount())
        return;
    m_columns.resize(m_model.columnCount());
    Column& sized = m_columns[column];
    const int before = sized.width;
    if (sized.width == 0)
        sized.width = header()->sectionSizeHint(column);
    for (; sized.measured < m_model.rowCount(); ++sized.measured) {
        const std::size_t length = m_model.TextLength(sized.measured, column);
        if (sized.measured >= kRowsToMeasure && length <= sized.longest)
            continue;
        sized.longest = std::max(sized.longest, length);
        sized.width = std::max(sized.width, CellWidth(sized.measured, column));
    }
    if (sized.width == before)
        return;
    header()->resizeSection(column, sized.width);
    FillWidth();
}

int ListControl::CellWidth(int row, int column) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    return itemDelegate()->sizeHint(option, m_model.index(row, column)).width();
}

// The last column takes what the others leave, and no less than its texts ask for.
void ListControl::FillWidth() {
    const int last = m_model.columnCount() - 1;
    if (last < 0)
        return;
    int others = 0;
    for (int column = 0; column < last; ++column)
        others += header()->sectionSize(column);
    const std::size_t known = m_columns.size();
    const int wanted = static_cast<std::size_t>(last) < known ? m_columns[last].width
                                                              : header()->sectionSizeHint(last);
    header()->resizeSection(last, std::max(wanted, viewport()->width() - others));
}

std::vector<int> ListControl::SelectedRows() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void ListControl::ScrollToRow(int row) {
    if (!m_model.HasRow(row))
        return;
    m_rowToShow = row;
    scheduleDelayedItemsLayout();
}

bool ListControl::IsAtEnd() const {
    const int rows = m_model.rowCount();
    if (rows == 0 || m_rowToShow == rows - 1)
        return true;
    // Rows that were just added are not laid out yet.
    const int shown = viewport()->height() / RowDelegate::Height(*this);
    return verticalScrollBar()->value() + shown >= rows;
}

void ListControl::Clear() {
    m_model.Clear();
    m_columns.clear();
    m_rowToShow = -1;
}

void ListControl::doItemsLayout() {
    QTreeView::doItemsLayout();
    if (m_rowToShow < 0 || !isVisible())
        return;
    scrollTo(m_model.index(m_rowToShow, 0));
    m_rowToShow = -1;
}

void ListControl::updateGeometries() {
    QTreeView::updateGeometries();
    FillWidth();
}

// Hidden, it had not its size yet.
void ListControl::showEvent(QShowEvent* event) {
    QTreeView::showEvent(event);
    if (m_rowToShow >= 0)
        scheduleDelayedItemsLayout();
}

void ListControl::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier)
        m_model.Toggle(currentIndex().row());
    else if (event->matches(QKeySequence::Copy))
        event->ignore();
    else
        QTreeView::keyPressEvent(event);
}

void ListControl::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    QTreeView::drawRow(painter, option, index);
    if (!m_hasGridLines)
        return;
    painter->save();
    painter->setPen(palette().color(QPalette::Midlight));
    const QRect& row = option.rect;
    painter->drawLine(row.bottomLeft(), row.bottomRight());
    for (int column = 0; column < m_model.columnCount(); ++column) {
        const int right = columnViewportPosition(column) + columnWidth(column) - 1;
        painter->drawLine(right, row.top(), right, row.bottom());
    }
    painter->restore();
}

} // namespace Platform
