// The numbers of the rows beside the result grid.
#pragma once

#include <QHeaderView>

#include "grid/ResultGrid.h"

namespace tavrel::app {

/// While the grid's Repaint is off there are no rows to be numbered, and none are shown.
class RowNumbers : public QHeaderView {
  public:
    /// The grid must outlive the header.
    RowNumbers(const grid::ResultGrid& grid, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const grid::ResultGrid& grid_;
};

}  // namespace tavrel::app
