#include "app/grid/CellWords.h"

#include "app/text/QtText.h"
#include "compare/ComparisonResult.h"
#include "report/ComparisonReport.h"

namespace tavrel::app {

namespace {

constexpr qsizetype kLongestValue = 300;  ///< characters of a value; what is longer is cut

QString Value(const grid::ResultGrid& grid, int column, int row) {
    const QString text = ToQt(grid.Text(column, row));
    if (text.isEmpty()) {
        return QStringLiteral("(없음)");
    }
    return text.size() > kLongestValue ? text.left(kLongestValue) + QStringLiteral("…") : text;
}

/// `column` is of side A.
QString BothValues(const grid::ResultGrid& grid, int column, int row) {
    return QStringLiteral("%1\n  A: %2\n  B: %3")
        .arg(ToQt(grid::LayoutOf(column).caption), Value(grid, column, row),
             Value(grid, column + grid::kSideBOffset, row));
}

QString WordsForRow(const grid::ResultGrid& grid, int row) {
    const compare::ResultRow result =
        compare::ComparisonResult(grid, 0).Row(static_cast<std::size_t>(row - 1));
    QString words = ToQt(report::DifferenceInWords(result));
    for (int column = 1; column < grid::kSideColumns && result.a && result.b; ++column) {
        if (result.Differs(static_cast<std::size_t>(column - 1))) {
            words += QLatin1Char('\n') + BothValues(grid, column, row);
        }
    }
    return words;
}

}  // namespace

QString WordsForCell(const grid::ResultGrid& grid, int column, int row) {
    const grid::CellMark mark = grid.Mark(column, row);
    if (column == grid::kCompareColumn && !grid.Text(column, row).empty()) {
        return WordsForRow(grid, row);
    }
    if (mark == grid::CellMark::OneSided) {
        return column > grid::kCompareColumn ? QStringLiteral("B에만 있음") : QStringLiteral("A에만 있음");
    }
    if (mark == grid::CellMark::Differs) {
        return BothValues(grid, column > grid::kCompareColumn ? column - grid::kSideBOffset : column, row);
    }
    return {};
}

}  // namespace tavrel::app
