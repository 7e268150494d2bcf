// How a view learns what changed in the grid.
#pragma once

namespace tavrel::grid {

/// Rows and columns from `first` to `last`, both included.
struct CellRange {
    int firstColumn = 0;
    int firstRow = 0;
    int lastColumn = 0;
    int lastRow = 0;
};

/// Called after each change while Repaint is on.  While it is off nothing is called but FocusRequested;
/// switching it on again calls AllChanged once.  The grid must not be changed from within a call.
class GridObserver {
  public:
    virtual ~GridObserver() = default;
    virtual void CellsChanged(const CellRange&) {}
    virtual void RowCountChanged() {}
    /// Hidden state of the rows first to last.
    virtual void RowsHiddenChanged(int /*first*/, int /*last*/) {}
    virtual void HeaderChanged() {}
    /// The active cell is to be shown.
    virtual void ActiveCellChanged() {}
    /// Anything may be different: texts, colours, hidden rows, header, active cell.
    virtual void AllChanged() {}
    /// The grid is to take the keyboard focus.
    virtual void FocusRequested() {}
};

}  // namespace tavrel::grid
