#include "app/grid/GridGuide.h"

#include <QAbstractButton>
#include <QEvent>
#include <QShortcut>
#include <QTableView>

#include "app/grid/FindLine.h"
#include "app/grid/GridZoom.h"
#include "app/grid/OverviewBar.h"
#include "app/grid/PlaceCorner.h"
#include "app/grid/TableChooser.h"

namespace tavrel::app {

GridGuide::GridGuide(QTableView& view, const GridModel& model, grid::ResultGrid& grid)
    : QObject(&view),
      view_(view),
      model_(model),
      grid_(grid),
      marks_(model),
      find_(new FindLine(model, &view)) {
    view.setVerticalScrollBar(new OverviewBar(grid, marks_, &view));
    if (auto* corner = view.findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        place_ = new PlaceCorner(*corner);
    }
    find_->onHit = [this](const Hit& hit) { GoTo(hit.modelRow, hit.column); };
    find_->onClose = [this] { CloseFindLine(); };
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { ListingChanged(); });
    connect(&model, &QAbstractItemModel::dataChanged, this, [this] { ListingChanged(); });
    connect(view.selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { CurrentChanged(); });
    view.viewport()->installEventFilter(this);
    AddKeys();
    new GridZoom(view);
}

void GridGuide::AddKeys() {
    const auto add = [this](const QKeySequence& key, Qt::ShortcutContext context,
                            void (GridGuide::*action)()) {
        connect(new QShortcut(key, &view_, nullptr, nullptr, context), &QShortcut::activated, this, action);
    };
    add(QKeySequence::Find, Qt::WindowShortcut, &GridGuide::OpenFindLine);
    add(Qt::CTRL | Qt::Key_T, Qt::WindowShortcut, &GridGuide::ChooseTable);
    const auto step = [this](Qt::Key key, int by) {
        connect(new QShortcut(Qt::CTRL | key, &view_, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, [this, by] { StepTable(by); });
    };
    step(Qt::Key_Down, 1);
    step(Qt::Key_Up, -1);
}

void GridGuide::ListingChanged() {
    marks_.Forget();
    find_->Forget();
    CurrentChanged();
}

/// The current row is marked on both sides, so the whole of what is seen is drawn anew.
void GridGuide::CurrentChanged() {
    if (!grid_.Repaint()) {
        return;
    }
    if (place_ != nullptr) {
        place_->Show(marks_, view_.currentIndex().row());
    }
    view_.viewport()->update();
    view_.verticalScrollBar()->update();
}

bool GridGuide::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        PlaceFindLine();
    }
    return QObject::eventFilter(watched, event);
}

void GridGuide::OpenFindLine() {
    find_->Open(view_.currentIndex().row());
    PlaceFindLine();
}

bool GridGuide::CloseFindLine() {
    if (find_->isHidden()) {
        return false;
    }
    find_->hide();
    view_.setFocus();
    return true;
}

void GridGuide::PlaceFindLine() {
    const QRect hit = view_.visualRect(view_.currentIndex()).translated(view_.viewport()->pos());
    find_->Place(view_.viewport()->geometry(), hit);
}

void GridGuide::GoTo(int modelRow, int column) {
    grid_.ActivateCell(column, model_.GridRow(modelRow));
    PlaceFindLine();
}

void GridGuide::StepTable(int by) {
    if (const auto row = TableFrom(TablesOf(model_), view_.currentIndex().row(), by)) {
        GoTo(*row, grid::cell::kTable);
    }
}

void GridGuide::ChooseTable() {
    OpenTableChooser(view_, TablesOf(model_), view_.currentIndex().row(), [this](int modelRow) {
        GoTo(modelRow, grid::cell::kTable);
        view_.setFocus();
    });
}

}  // namespace tavrel::app
