// Finding one's way in the grid: where the differences are, which one is current, going to a table or field.
#pragma once

#include <QObject>

#include "app/grid/RowMarks.h"

class QTableView;

namespace tavrel::app {

class FindLine;
class PlaceCorner;

/// Adds to a view of the grid: the overview beside its scroll bar, the place in its corner, Ctrl+F, Ctrl+T,
/// and, while it has the focus, Ctrl+Up and Ctrl+Down.
class GridGuide : public QObject {
  public:
    /// To be made when the view has its model and headers; belongs to the view.  Going to a row makes it the
    /// grid's active one.
    GridGuide(QTableView& view, const GridModel& model, grid::ResultGrid& grid);

    /// False: it was not open.
    bool CloseFindLine();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void AddKeys();
    void ListingChanged();
    void CurrentChanged();
    void OpenFindLine();
    void PlaceFindLine();
    void GoTo(int modelRow, int column);
    void StepTable(int by);
    void ChooseTable();

    QTableView& view_;
    const GridModel& model_;
    grid::ResultGrid& grid_;
    RowMarks marks_;
    PlaceCorner* place_ = nullptr;
    FindLine* find_;
};

}  // namespace tavrel::app
