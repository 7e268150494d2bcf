#include "app/grid/GridDelegate.h"

#include <QPainter>

#include "app/QtText.h"
#include "app/grid/GridColours.h"

namespace tavrel::app {

namespace {

constexpr int kSignBar = 3;

void DrawText(QPainter& painter, const QStyleOptionViewItem& option, int column, const QString& text) {
    const QRect room = option.rect.adjusted(kCellMargin, 0, -kCellMargin - 1, -1);
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

GridDelegate::GridDelegate(const GridModel& model, QObject* parent)
    : QAbstractItemDelegate(parent), model_(model) {}

bool GridDelegate::MergesWithAbove(int column, int modelRow) const {
    const grid::ResultGrid& grid = model_.Grid();
    if (grid.ColumnMerge(column) != 1 || modelRow < 1 || modelRow >= model_.rowCount()) {
        return false;
    }
    const int row = model_.GridRow(modelRow);
    const int above = model_.GridRow(modelRow - 1);
    const grid::TextId text = grid.Id(column, row);
    return text != grid::kEmptyText && text == grid.Id(column, above) &&
           grid.BackColor(column, row) == grid.BackColor(column, above);
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const grid::ResultGrid& grid = model_.Grid();
    const int column = index.column() + 1;
    const int row = model_.GridRow(index.row());
    CellLook look = LookOf(grid.BackColor(column, row), grid.TextColor(column), option.palette);
    if ((option.state & QStyle::State_Selected) != 0) {
        look = Selected(look, option.palette);
    }
    const QRect& rect = option.rect;
    painter->fillRect(rect, look.back);
    painter->setPen(GridLineColour(option.palette));
    painter->drawLine(rect.topRight(), rect.bottomRight());
    if (!MergesWithAbove(column, index.row() + 1)) {
        painter->drawLine(rect.bottomLeft(), rect.bottomRight());
    }
    if (look.sign == CellSign::Bar) {
        painter->fillRect(QRect(rect.left(), rect.top(), kSignBar, rect.height() - 1), look.text);
    }
    const std::string_view text = grid.Text(column, row);
    if (!text.empty() && (index.row() == topRow_ || !MergesWithAbove(column, index.row()))) {
        QFont font = option.font;
        font.setBold(look.sign == CellSign::Bold);
        painter->setFont(font);
        painter->setPen(look.text);
        QStyleOptionViewItem room = option;
        room.rect.setLeft(rect.left() + (look.sign == CellSign::Bar ? kSignBar : 0));
        DrawText(*painter, room, column, ToQt(text));
    }
    if ((option.state & QStyle::State_HasFocus) != 0) {
        painter->setPen(look.text);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(rect.adjusted(0, 0, -2, -2));
    }
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int width = option.fontMetrics.horizontalAdvance(model_.data(index).toString());
    return {width + 2 * kCellMargin + 1, option.fontMetrics.height() + 4};
}

}  // namespace tavrel::app
