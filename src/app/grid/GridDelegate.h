// Draws the cells of the result grid: colours, signs, merged texts and the lines between them.
#pragma once

#include <QAbstractItemDelegate>

#include "app/grid/GridColours.h"
#include "app/grid/GridModel.h"

namespace tavrel::app {

/// Blank pixels left and right of a cell's text.
inline constexpr int kCellMargin = 3;

/// Where a cell's text is drawn: beside the cell's sign when it begins at the left.
QRect TextRoom(const QRect& rect, int gridColumn, CellSign sign);

/// The type of a cell's text.
QFont CellFont(const QFont& font, CellSign sign);
/// The least width of a cell in which a text that is `textWidth` wide is shown whole.
int CellWidth(int textWidth, int gridColumn, CellSign sign);

class GridDelegate : public QAbstractItemDelegate {
  public:
    /// The model must outlive the delegate.
    GridDelegate(const GridModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// The topmost row in view: a merged text that began above it is shown there.
    void SetTopRow(int modelRow) { topRow_ = modelRow; }

  private:
    /// The cell of this model row and the one above it are parts of one merged cell.
    [[nodiscard]] bool MergesWithAbove(int column, int modelRow) const;

    const GridModel& model_;
    int topRow_ = 0;
};

}  // namespace tavrel::app
