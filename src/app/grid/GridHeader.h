// The two header rows of the result grid, with their joined cells.
#pragma once

#include <functional>
#include <vector>

#include <QHeaderView>

#include "grid/ResultGrid.h"

namespace tavrel::app {

class GridHeader : public QHeaderView {
  public:
    /// The grid must outlive the header.
    GridHeader(const grid::ResultGrid& grid, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

    /// A cell of the header, which may be joined of several.
    struct Cell {
        grid::JoinedCells cells;
        QRect rect;  ///< in the viewport
        QString text;
    };
    /// The cells that can be seen.
    [[nodiscard]] std::vector<Cell> VisibleCells() const;

    /// Called with the first and last grid column of a joined cell that was clicked.
    std::function<void(int, int)> onBandClicked;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;

  private:
    [[nodiscard]] int RowHeight() const;
    [[nodiscard]] QRect RectOf(const grid::JoinedCells& cells) const;
    [[nodiscard]] QString TextOf(const grid::JoinedCells& cells) const;
    [[nodiscard]] std::vector<grid::JoinedCells> Layout() const;
    void PaintCell(QPainter& painter, const Cell& cell) const;
    [[nodiscard]] QRect TextRoom(const Cell& cell) const;
    /// The text, with its middle (of a band) or its end left out where it does not fit.
    [[nodiscard]] QString Fitting(const Cell& cell) const;
    [[nodiscard]] const Cell* At(const std::vector<Cell>& cells, const QPoint& position) const;

    const grid::ResultGrid& grid_;
};

}  // namespace tavrel::app
