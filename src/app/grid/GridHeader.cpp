#include "app/grid/GridHeader.h"

#include <algorithm>

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>

#include "app/grid/PlainToolTip.h"
#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr int kTextMargin = 3;
constexpr int kHeaderMargin = 7;

bool Covers(const grid::JoinedCells& join, int column, int row) {
    return column >= join.column && column < join.column + join.columns && row >= join.row &&
           row < join.row + join.rows;
}

}  // namespace

GridHeader::GridHeader(const grid::ResultGrid& grid, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), grid_(grid) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setSectionResizeMode(QHeaderView::Interactive);
    setMinimumSectionSize(12);
}

int GridHeader::RowHeight() const {
    return fontMetrics().height() + kHeaderMargin;
}

QSize GridHeader::sizeHint() const {
    return {QHeaderView::sizeHint().width(), 2 * RowHeight()};
}

/// Every cell of both rows, the joined ones once.
std::vector<grid::JoinedCells> GridHeader::Layout() const {
    std::vector<grid::JoinedCells> layout;
    for (const grid::JoinedCells& join : grid_.Joins()) {
        if (join.column >= 1) {  // column 0 is the corner's
            layout.push_back(join);
        }
    }
    const std::vector<grid::JoinedCells> joins = layout;
    for (const int row : {grid::kTopHeaderRow, grid::kCaptionHeaderRow}) {
        for (int column = 1; column <= grid::kColumnCount; ++column) {
            const auto covers = [=](const grid::JoinedCells& join) { return Covers(join, column, row); };
            if (std::ranges::none_of(joins, covers)) {
                layout.push_back({column, row, 1, 1});
            }
        }
    }
    return layout;
}

QRect GridHeader::RectOf(const grid::JoinedCells& cells) const {
    int width = 0;
    for (int i = 0; i < cells.columns; ++i) {
        width += sectionSize(cells.column - 1 + i);  // 0 for a hidden one
    }
    const int top = (cells.row - grid::kTopHeaderRow) * RowHeight();
    return {sectionViewportPosition(cells.column - 1), top, width, cells.rows * RowHeight()};
}

/// The text of a joined cell stands in its first part that has any.
QString GridHeader::TextOf(const grid::JoinedCells& cells) const {
    for (int i = 0; i < cells.rows; ++i) {
        const std::string_view text = grid_.Text(cells.column, cells.row + i);
        if (!text.empty()) {
            return ToQt(text);
        }
    }
    return {};
}

std::vector<GridHeader::Cell> GridHeader::VisibleCells() const {
    std::vector<Cell> visible;
    for (const grid::JoinedCells& cells : Layout()) {
        const QRect rect = RectOf(cells);
        if (rect.width() > 0 && rect.intersects(viewport()->rect())) {
            visible.push_back({cells, rect, TextOf(cells)});
        }
    }
    return visible;
}

void GridHeader::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Button));
    for (const Cell& cell : VisibleCells()) {
        if (cell.rect.intersects(event->rect())) {
            PaintCell(painter, cell);
        }
    }
}

/// The text of a band stays in view, that of a column moves with it.
QRect GridHeader::TextRoom(const Cell& cell) const {
    return cell.cells.columns > 1 ? cell.rect & viewport()->rect() : cell.rect;
}

QString GridHeader::Fitting(const Cell& cell) const {
    const int width = TextRoom(cell).width() - 2 * kTextMargin;
    const Qt::TextElideMode mode = cell.cells.columns > 1 ? Qt::ElideMiddle : Qt::ElideRight;
    return fontMetrics().elidedText(cell.text, mode, width);
}

void GridHeader::PaintCell(QPainter& painter, const Cell& cell) const {
    QStyleOptionHeader option;
    option.initFrom(this);
    option.state &= ~QStyle::State_MouseOver;
    option.state |= QStyle::State_Horizontal | QStyle::State_Raised;
    option.orientation = Qt::Horizontal;
    option.section = cell.cells.column - 1;
    option.position = QStyleOptionHeader::Middle;
    option.rect = cell.rect;
    painter.save();
    painter.setClipRect(cell.rect);
    style()->drawControl(QStyle::CE_HeaderSection, &option, &painter, this);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.setFont(font());
    painter.drawText(TextRoom(cell).adjusted(kTextMargin, 0, -kTextMargin, 0),
                     Qt::AlignCenter | Qt::TextSingleLine, Fitting(cell));
    painter.restore();
}

const GridHeader::Cell* GridHeader::At(const std::vector<Cell>& cells, const QPoint& position) const {
    const auto found =
        std::ranges::find_if(cells, [&](const Cell& cell) { return cell.rect.contains(position); });
    return found == cells.end() ? nullptr : &*found;
}

void GridHeader::mousePressEvent(QMouseEvent* event) {
    const std::vector<Cell> cells = VisibleCells();
    const Cell* cell = At(cells, event->position().toPoint());
    const bool onBand = cell != nullptr && cell->cells.columns > 1 && event->button() == Qt::LeftButton;
    if (onBand && onBandClicked) {
        onBandClicked(cell->cells.column, cell->cells.column + cell->cells.columns - 1);
        return;
    }
    QHeaderView::mousePressEvent(event);
}

bool GridHeader::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QHeaderView::viewportEvent(event);
    }
    auto* help = static_cast<QHelpEvent*>(event);
    const std::vector<Cell> cells = VisibleCells();
    const Cell* cell = At(cells, help->pos());
    const bool cut = cell != nullptr && Fitting(*cell) != cell->text;
    ShowPlainToolTip(*help, cut ? cell->text : QString(), viewport());
    return true;
}

}  // namespace tavrel::app
