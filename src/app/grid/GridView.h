// The result grid on the window.
#pragma once

#include <functional>

#include <QTableView>

#include "app/grid/GridModel.h"
#include "grid/GridObserver.h"

namespace tavrel::app {

class GridDelegate;
class GridGuide;
class GridHeader;

/// Shows a ResultGrid and follows it.  While the grid's Repaint is off nothing of the grid is read for
/// painting.
class GridView : public QTableView, private grid::GridObserver {
  public:
    /// The grid must outlive the view and has no other observer.
    GridView(grid::ResultGrid& grid, QWidget* parent);
    ~GridView() override;

    [[nodiscard]] const GridModel& Model() const { return *model_; }
    [[nodiscard]] GridHeader& Header() const { return *header_; }
    /// False: no line was open over the grid.
    bool CloseFindLine();
    /// The selected cells go to the clipboard as tab-separated text: as they are, below their columns'
    /// captions, those of marked rows only; the text of the current cell as it is.
    void CopySelection() const;
    void CopyWithHeaders() const;
    void CopyDiffering() const;
    void CopyCell() const;

    /// Called for a right click, the menu key or Shift+F10, with the place on the screen.
    std::function<void(const QPoint&)> onContextMenu;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    [[nodiscard]] int sizeHintForColumn(int column) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

  private:
    void CellsChanged(const grid::CellRange& range) override;
    void RowCountChanged() override;
    void RowsHiddenChanged(int first, int last) override;
    void HeaderChanged() override;
    void ActiveCellChanged() override;
    void AllChanged() override;
    void FocusRequested() override;

    void SetUpHeaders();
    void BlankTheRest();
    void ShowMenuAtCell();
    void Reload();
    void ShowActiveCell();
    /// The row is on screen, with others above and below it.
    [[nodiscard]] bool IsAmidTheSeen(int modelRow) const;
    void FitColumns();
    void SelectColumns(int first, int last);
    /// What differs there, in words, and the cell's whole text when it does not fit into the cell.
    [[nodiscard]] QString ToolTipOf(const QModelIndex& index) const;
    [[nodiscard]] QString CutText(const QModelIndex& index) const;

    grid::ResultGrid& grid_;
    GridModel* model_;
    GridDelegate* delegate_;
    GridHeader* header_;
    GridGuide* guide_ = nullptr;
    bool following_ = false;     ///< the view takes the active cell from the grid, not the other way
    bool fitting_ = false;       ///< widths are being set by FitColumns
    bool widthsByUser_ = false;  ///< a column was dragged: widths stay from then on
    bool reloadComing_ = false;
    bool blank_ = false;  ///< Repaint is off, and nothing of an older listing is left
};

}  // namespace tavrel::app
