// "3 / 17" in the header's corner: which difference the current row is, of how many.
#pragma once

#include <QLabel>

#include "app/grid/RowMarks.h"

namespace tavrel::app {

/// Fills the button that the view has in its corner and leaves the mouse to it; the button's tool tip says
/// what the differences are.
class PlaceCorner : public QLabel {
  public:
    explicit PlaceCorner(QWidget& corner);
    void Show(const RowMarks& marks, int currentRow);
};

}  // namespace tavrel::app
