#include "app/grid/GridDelegate.h"

#include <cmath>

#include <QAbstractItemView>
#include <QPainter>

#include "app/grid/GridColours.h"
#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr int kSignBar = 3;
constexpr int kSignCorner = 6;

/// As many whole pixels of the screen as one of the layout has, so that lines look alike at every scaling.
double LineWidth(const QPainter& painter) {
    const double pixels = painter.device()->devicePixelRatioF();
    return std::floor(pixels) / pixels;
}

void DrawLines(QPainter& painter, const QStyleOptionViewItem& option, bool below) {
    const QRectF rect = option.rect;
    const double width = LineWidth(painter);
    const QColor colour = GridLineColour(option.palette);
    painter.fillRect(QRectF(rect.right() - width, rect.top(), width, rect.height()), colour);
    if (below) {
        painter.fillRect(QRectF(rect.left(), rect.bottom() - width, rect.width(), width), colour);
    }
}

/// What tells a painted cell without its colour, an empty one too.
void DrawSign(QPainter& painter, const QRect& rect, const CellLook& look) {
    if (look.sign == CellSign::Bar) {
        painter.fillRect(QRect(rect.left(), rect.top(), kSignBar, rect.height() - 1), look.text);
    } else if (look.sign == CellSign::Corner) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(look.text);
        const QPoint corner = rect.topLeft();
        painter.drawPolygon(
            QPolygon({corner, corner + QPoint(kSignCorner, 0), corner + QPoint(0, kSignCorner)}));
    }
}

/// A line above and one below the whole current row, so that it is found again on the other side.
void DrawRowMark(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    if (view == nullptr || view->currentIndex().row() != index.row()) {
        return;
    }
    const QRectF rect = option.rect;
    const QColor colour = option.palette.color(QPalette::Highlight);
    const double width = 2 * LineWidth(painter);
    painter.fillRect(QRectF(rect.left(), rect.top(), rect.width(), width), colour);
    painter.fillRect(QRectF(rect.left(), rect.bottom() - width, rect.width(), width), colour);
}

void DrawText(QPainter& painter, const QRect& room, int column, const QString& text) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int width = metrics.horizontalAdvance(text);
    if (width <= room.width()) {
        painter.drawText(room, static_cast<int>(AlignmentOf(column) | Qt::TextSingleLine), text);
    } else {
        // What does not fit begins at its beginning, whatever the alignment.
        painter.drawText(room, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine),
                         metrics.elidedText(text, Qt::ElideRight, room.width()));
    }
}

}  // namespace

QRect TextRoom(const QRect& rect, int gridColumn, CellSign sign) {
    const bool beside = sign != CellSign::None && AlignmentOf(gridColumn).testFlag(Qt::AlignLeft);
    return rect.adjusted(kCellMargin + (beside ? kSignBar : 0), 0, -kCellMargin - 1, -1);
}

QFont CellFont(const QFont& font, CellSign sign) {
    QFont type = font;
    type.setBold(IsBold(sign));
    return type;
}

int CellWidth(int textWidth, int gridColumn, CellSign sign) {
    constexpr int kAny = 100;
    return textWidth + kAny - TextRoom(QRect(0, 0, kAny, 1), gridColumn, sign).width();
}

GridDelegate::GridDelegate(const GridModel& model, QObject* parent)
    : QAbstractItemDelegate(parent), model_(model) {}

bool GridDelegate::MergesWithAbove(int column, int modelRow) const {
    const grid::ResultGrid& grid = model_.Grid();
    if (grid.Merging() != 1 || grid.ColumnMerge(column) != 1 || modelRow < 1 ||
        modelRow >= model_.rowCount()) {
        return false;
    }
    const int row = model_.GridRow(modelRow);
    const int above = model_.GridRow(modelRow - 1);
    const grid::TextId text = grid.Id(column, row);
    return text != grid::kEmptyText && text == grid.Id(column, above) &&
           grid.Role(column, row) == grid.Role(column, above);
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const grid::ResultGrid& grid = model_.Grid();
    const int column = index.column() + 1;
    const int row = model_.GridRow(index.row());
    CellLook look = LookOf(grid, column, row, option.palette);
    if (option.state.testFlag(QStyle::State_Selected)) {
        look = Selected(look, option.palette);
    }
    painter->fillRect(option.rect, look.back);
    DrawLines(*painter, option, !MergesWithAbove(column, index.row() + 1));
    DrawSign(*painter, option.rect, look);
    const std::string_view text = grid.Text(column, row);
    if (!text.empty() && (index.row() == topRow_ || !MergesWithAbove(column, index.row()))) {
        painter->setFont(CellFont(option.font, look.sign));
        painter->setPen(look.text);
        DrawText(*painter, TextRoom(option.rect, column, look.sign), column, ToQt(text));
    }
    DrawRowMark(*painter, option, index);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setPen(look.text);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option.rect.adjusted(0, 0, -2, -2));
    }
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int column = index.column() + 1;
    const CellSign sign = SignOf(model_.Grid().Role(column, model_.GridRow(index.row())));
    const QFontMetrics metrics(CellFont(option.font, sign));
    return {CellWidth(metrics.horizontalAdvance(model_.data(index).toString()), column, sign),
            metrics.height() + 4};
}

}  // namespace tavrel::app
