// The result grid as Qt's views see it: the rows that are not hidden, in order.
#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "grid/ResultGrid.h"

namespace tavrel::app {

/// Model rows and columns count from 0: model column c is grid column c + 1; a model row stands for the grid
/// row that GridRow gives.  Hiding rows rebuilds one list of numbers, whatever their count.
class GridModel : public QAbstractTableModel {
  public:
    /// The grid must outlive the model.
    explicit GridModel(const grid::ResultGrid& grid);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    [[nodiscard]] const grid::ResultGrid& Grid() const { return grid_; }
    /// Row of the grid; 0 when there is no such model row.
    [[nodiscard]] int GridRow(int modelRow) const;
    /// Row of the model; -1 when the grid's row is hidden or not there.
    [[nodiscard]] int ModelRow(int gridRow) const;
    [[nodiscard]] QModelIndex IndexOf(int gridColumn, int gridRow) const;

    /// Anything in the grid may be different.
    void Reload();
    void CellsChanged(const grid::CellRange& range);

  private:
    void ListRows();
    [[nodiscard]] QString AccessibleText(int column, int row) const;

    const grid::ResultGrid& grid_;
    std::vector<int> rows_;  ///< grid rows shown, ascending
};

/// How the texts of a grid column are aligned.
Qt::Alignment AlignmentOf(int gridColumn);

}  // namespace tavrel::app
