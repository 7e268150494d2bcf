// What a cell looks like in a light and in a dark desktop.
#pragma once

#include <QColor>
#include <QPalette>

#include "grid/ResultGrid.h"

namespace tavrel::app {

/// A second sign beside the colour, for those who cannot tell the colours apart.
enum class CellSign {
    None,
    Bold,    ///< the mark
    Corner,  ///< differs: bold, and a corner that an empty cell has too
    Bar      ///< stands on one side only: a bar at the cell's left edge
};

inline bool IsBold(CellSign sign) {
    return sign == CellSign::Bold || sign == CellSign::Corner;
}

struct CellLook {
    QColor back;
    QColor text;
    CellSign sign = CellSign::None;
};

bool IsDark(const QPalette& palette);

/// What a cell of this role is told by beside the colour.
CellSign SignOf(grid::CellRole role);

/// The look of a cell of this role.  A plain cell takes the desktop's colours; the text can be read on the
/// back (contrast of 4.5 at least, but for the compare column's given pair).
CellLook LookOf(grid::CellRole role, const QPalette& palette);
/// The same of a cell of the grid; one that was given a colour of its own shows that.
CellLook LookOf(const grid::ResultGrid& grid, int column, int row, const QPalette& palette);

/// The look of a selected cell: the selection's colour, through which a painted cell can still be told.
CellLook Selected(const CellLook& look, const QPalette& palette);

QColor GridLineColour(const QPalette& palette);

/// Contrast of two colours, 1 to 21.
double Contrast(const QColor& a, const QColor& b);

}  // namespace tavrel::app
