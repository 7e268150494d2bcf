#include "app/grid/GridView.h"

#include <algorithm>
#include <vector>

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include "app/grid/CellWords.h"
#include "app/grid/GridClipboard.h"
#include "app/grid/GridColours.h"
#include "app/grid/GridColumns.h"
#include "app/grid/GridDelegate.h"
#include "app/grid/GridGuide.h"
#include "app/grid/GridHeader.h"
#include "app/grid/PlainToolTip.h"
#include "app/grid/RowNumbers.h"
#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr int kRowMargin = 5;

/// True for the time of a block.
class Flag {
  public:
    explicit Flag(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~Flag() { flag_ = before_; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace

GridView::GridView(grid::ResultGrid& grid, QWidget* parent)
    : QTableView(parent),
      grid_(grid),
      model_(new GridModel(grid)),
      delegate_(new GridDelegate(*model_, this)),
      header_(new GridHeader(grid, this)) {
    model_->setParent(this);
    SetUpHeaders();
    setModel(model_);
    setItemDelegate(delegate_);
    for (int column = 1; column <= grid::kColumnCount; ++column) {
        setColumnHidden(column - 1, grid_.ColumnHidden(column));
    }
    setShowGrid(false);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectItems);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerItem);
    connect(header_, &QHeaderView::sectionResized, this, [this] {
        if (!fitting_) {
            widthsByUser_ = true;
        }
        header_->viewport()->update();
    });
    header_->onBandClicked = [this](int first, int last) { SelectColumns(first, last); };
    guide_ = new GridGuide(*this, *model_, grid_);
    grid_.Observe(this);
}

GridView::~GridView() {
    grid_.Observe(nullptr);
}

void GridView::SetUpHeaders() {
    setHorizontalHeader(header_);
    setVerticalHeader(new RowNumbers(grid_, this));
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowMargin);
}

// ---- following the grid

void GridView::CellsChanged(const grid::CellRange& range) {
    model_->CellsChanged(range);
}

void GridView::RowCountChanged() {
    Reload();
}

/// Rows are hidden one by one: the list of rows is made anew once they all are.
void GridView::RowsHiddenChanged(int /*first*/, int /*last*/) {
    if (!reloadComing_) {
        reloadComing_ = true;
        QTimer::singleShot(0, this, [this] { Reload(); });
    }
}

void GridView::HeaderChanged() {
    header_->viewport()->update();
}

void GridView::ActiveCellChanged() {
    ShowActiveCell();
}

void GridView::AllChanged() {
    Reload();
    HeaderChanged();
}

void GridView::FocusRequested() {
    setFocus();
}

void GridView::Reload() {
    reloadComing_ = false;
    {
        const Flag following(following_);
        model_->Reload();
    }
    FitColumns();
    ShowActiveCell();
}

void GridView::ShowActiveCell() {
    const QModelIndex active = model_->IndexOf(grid_.ActiveColumn(), grid_.ActiveRow());
    if (!active.isValid() || following_) {
        return;
    }
    const Flag following(following_);
    executeDelayedItemsLayout();
    const bool amid = IsAmidTheSeen(active.row());
    setCurrentIndex(active);
    scrollTo(active);
    if (!amid) {
        verticalScrollBar()->setValue(active.row() - verticalScrollBar()->pageStep() / 3);
    }
}

bool GridView::IsAmidTheSeen(int modelRow) const {
    constexpr int kContext = 2;
    const int first = verticalScrollBar()->value();
    const int behind = first + verticalScrollBar()->pageStep();
    const bool below = modelRow >= first + kContext || first == 0;
    const bool above = modelRow + kContext < behind || behind >= model_->rowCount();
    return modelRow >= first && modelRow < behind && below && above;
}

bool GridView::CloseFindLine() {
    return guide_->CloseFindLine();
}

/// What the user makes the current cell is the grid's active cell.
void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (!following_ && current.isValid()) {
        const Flag following(following_);
        grid_.ActivateCell(current.column() + 1, model_->GridRow(current.row()));
    }
}

// ---- showing

void GridView::paintEvent(QPaintEvent* event) {
    if (!grid_.Repaint()) {
        QPainter(viewport()).fillRect(event->rect(), palette().color(QPalette::Base));
        BlankTheRest();
        return;
    }
    blank_ = false;
    delegate_->SetTopRow(rowAt(0));
    QTableView::paintEvent(event);
}

/// Half a listing would be taken for the whole: what is still on the screen goes too.
void GridView::BlankTheRest() {
    if (!blank_) {
        blank_ = true;
        viewport()->update();
        verticalHeader()->viewport()->update();
    }
}

/// The texts of merged cells wander with the upper edge, so their columns are drawn anew.
void GridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    if (dx != 0) {
        header_->viewport()->update();
    }
    for (int column = 1; dy != 0 && column <= grid::kColumnCount; ++column) {
        if (grid_.ColumnMerge(column) == 1) {
            viewport()->update(columnViewportPosition(column - 1), 0, columnWidth(column - 1),
                               viewport()->height());
        }
    }
}

void GridView::FitColumns() {
    if (widthsByUser_) {
        return;
    }
    const Flag fitting(fitting_);
    const int room = viewport()->width() + verticalHeader()->width();
    const ColumnWidths widths = WidthsFor(font(), room, grid_.RowCount());
    verticalHeader()->setFixedWidth(widths[0]);
    for (int column = 1; column <= grid::kColumnCount; ++column) {
        if (!grid_.ColumnHidden(column)) {
            setColumnWidth(column - 1, widths[static_cast<std::size_t>(column)]);
        }
    }
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    if (!fitting_) {
        FitColumns();
    }
}

void GridView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowMargin);
        FitColumns();
    }
}

/// The column's widest text, in whatever row; each text is measured once in each type.
int GridView::sizeHintForColumn(int column) const {
    const QFontMetrics metrics[] = {QFontMetrics(font()), QFontMetrics(CellFont(font(), CellSign::Bold))};
    std::vector<bool> measured[] = {std::vector<bool>(grid_.IdLimit()), std::vector<bool>(grid_.IdLimit())};
    int width = 0;
    for (int modelRow = 0; modelRow < model_->rowCount(); ++modelRow) {
        const int row = model_->GridRow(modelRow);
        const grid::TextId id = grid_.Id(column + 1, row);
        const CellSign sign = SignOf(grid_.Role(column + 1, row));
        const std::size_t type = IsBold(sign) ? 1 : 0;
        if (!measured[type][id]) {
            measured[type][id] = true;
            const int text = metrics[type].horizontalAdvance(ToQt(grid_.Text(column + 1, row)));
            width = std::max(width, CellWidth(text, column + 1, sign));
        }
    }
    return width;
}

QString GridView::ToolTipOf(const QModelIndex& index) const {
    if (!index.isValid() || !grid_.Repaint()) {
        return {};
    }
    const QString words = WordsForCell(grid_, index.column() + 1, model_->GridRow(index.row()));
    return words.isEmpty() ? CutText(index) : words;
}

QString GridView::CutText(const QModelIndex& index) const {
    const QString text = model_->data(index).toString();
    const int column = index.column() + 1;
    const CellSign sign = SignOf(grid_.Role(column, model_->GridRow(index.row())));
    const int room = TextRoom(visualRect(index), column, sign).width();
    return QFontMetrics(CellFont(font(), sign)).horizontalAdvance(text) > room ? text : QString();
}

bool GridView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QTableView::viewportEvent(event);
    }
    auto* help = static_cast<QHelpEvent*>(event);
    ShowPlainToolTip(*help, ToolTipOf(indexAt(help->pos())), viewport());
    return true;
}

// ---- keyboard and mouse

void GridView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        CopySelection();
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_C && event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
        CopyWithHeaders();
        return;
    }
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        ShowMenuAtCell();
        return;
    }
    QTableView::keyPressEvent(event);
}

void GridView::CopySelection() const {
    CopyToClipboard(SelectionText(*model_, selectionModel()->selection()));
}

void GridView::CopyWithHeaders() const {
    CopyToClipboard(SelectionTextWithHeaders(*model_, selectionModel()->selection()));
}

void GridView::CopyDiffering() const {
    CopyToClipboard(SelectionText(*model_, DifferingPart(*model_, selectionModel()->selection())));
}

void GridView::CopyCell() const {
    CopyToClipboard(model_->data(currentIndex()).toString());
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) {
        ShowMenuAtCell();
    } else if (onContextMenu) {
        onContextMenu(event->globalPos());
    }
}

/// Below the current cell, as far as that is in view.
void GridView::ShowMenuAtCell() {
    if (onContextMenu) {
        const QRect seen = visualRect(currentIndex()) & viewport()->rect();
        onContextMenu(viewport()->mapToGlobal(seen.isEmpty() ? QPoint(0, 0) : seen.bottomLeft()));
    }
}

void GridView::SelectColumns(int first, int last) {
    if (model_->rowCount() == 0) {
        return;
    }
    const QItemSelection block(model_->index(0, first - 1), model_->index(model_->rowCount() - 1, last - 1));
    selectionModel()->select(block, QItemSelectionModel::ClearAndSelect);
    setFocus();
}

}  // namespace tavrel::app
