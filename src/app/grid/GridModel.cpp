#include "app/grid/GridModel.h"

#include <algorithm>

#include "app/text/QtText.h"
#include "compare/ComparisonResult.h"
#include "report/ComparisonReport.h"

namespace tavrel::app {

Qt::Alignment AlignmentOf(int gridColumn) {
    switch (grid::LayoutOf(gridColumn).align) {
        case grid::Align::Left:
            return Qt::AlignLeft | Qt::AlignVCenter;
        case grid::Align::Right:
            return Qt::AlignRight | Qt::AlignVCenter;
        case grid::Align::Centre:
            break;
    }
    return Qt::AlignCenter;
}

GridModel::GridModel(const grid::ResultGrid& grid) : grid_(grid) {
    ListRows();
}

void GridModel::ListRows() {
    rows_.clear();
    rows_.reserve(static_cast<std::size_t>(grid_.RowCount()));
    for (int row = 1; row <= grid_.RowCount(); ++row) {
        if (!grid_.RowHidden(row)) {
            rows_.push_back(row);
        }
    }
}

void GridModel::Reload() {
    beginResetModel();
    ListRows();
    endResetModel();
}

void GridModel::CellsChanged(const grid::CellRange& range) {
    const auto first = std::ranges::lower_bound(rows_, range.firstRow);
    const auto behind = std::ranges::upper_bound(rows_, range.lastRow);
    if (first < behind) {
        emit dataChanged(index(static_cast<int>(first - rows_.begin()), range.firstColumn - 1),
                         index(static_cast<int>(behind - rows_.begin()) - 1, range.lastColumn - 1));
    }
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : grid::kColumnCount;
}

int GridModel::GridRow(int modelRow) const {
    const bool there = modelRow >= 0 && modelRow < rowCount();
    return there ? rows_[static_cast<std::size_t>(modelRow)] : 0;
}

int GridModel::ModelRow(int gridRow) const {
    const auto found = std::ranges::lower_bound(rows_, gridRow);
    return found != rows_.end() && *found == gridRow ? static_cast<int>(found - rows_.begin()) : -1;
}

QModelIndex GridModel::IndexOf(int gridColumn, int gridRow) const {
    return index(ModelRow(gridRow), gridColumn - 1);
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    const int column = index.column() + 1;
    const int row = GridRow(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return ToQt(grid_.Text(column, row));
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(AlignmentOf(column));
        case Qt::AccessibleTextRole:
            return AccessibleText(column, row);
        default:
            return {};
    }
}

QString GridModel::AccessibleText(int column, int row) const {
    const QString text = ToQt(grid_.Text(column, row));
    if (column == grid::kCompareColumn) {
        const compare::ComparisonResult result(grid_, 0);
        return text.isEmpty() || row < 1
                   ? text
                   : ToQt(report::DifferenceInWords(result.Row(static_cast<std::size_t>(row - 1))));
    }
    const bool marked = grid_.Mark(column, row) != grid::CellMark::None;
    return marked ? text + QStringLiteral(" (다름)") : text;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) {
        return {};
    }
    if (orientation == Qt::Vertical) {
        return GridRow(section);
    }
    return ToQt(grid_.Text(section + 1, grid::kCaptionHeaderRow));
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

}  // namespace tavrel::app
