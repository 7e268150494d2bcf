#include "app/grid/GridColumns.h"

#include <algorithm>
#include <cmath>

#include "app/QtText.h"
#include "app/grid/GridDelegate.h"

namespace tavrel::app {

namespace {

namespace cell = grid::cell;

/// Columns of free text: they give and take room, by these shares.
struct FreeColumn {
    int column;  ///< of side A
    int share;
};
constexpr std::array<FreeColumn, 3> kFree = {{{cell::kTable, 4}, {cell::kField, 4}, {cell::kDefault, 2}}};
constexpr int kBothShares = 20;

/// Texts that are common and longer than their columns' captions.
struct UsualText {
    int column;  ///< of side A
    const char* text;
};
constexpr std::array<UsualText, 2> kUsual = {{{cell::kType, "Currency"}, {cell::kDefault, "False"}}};

/// A free column never gives more than this part of its width.
constexpr double kMostGiven = 0.25;

/// A grid unit is a digit and the blank that a grid of characters leaves between two of them.
double UnitWidth(const QFontMetrics& metrics) {
    return metrics.horizontalAdvance(QLatin1Char('0')) + 0.5;
}

int NeededWidth(const QFontMetrics& metrics, int column) {
    int text = metrics.horizontalAdvance(ToQt(grid::LayoutOf(column).caption));
    for (const UsualText& usual : kUsual) {
        if (column == usual.column || column == usual.column + grid::kSideBOffset) {
            text = std::max(text, metrics.horizontalAdvance(QString::fromLatin1(usual.text)));
        }
    }
    return text + 2 * kCellMargin + 2;
}

ColumnWidths GivenWidths(const QFontMetrics& metrics, int rowNumbers) {
    ColumnWidths widths{};
    for (int column = 1; column <= grid::kColumnCount; ++column) {
        const grid::ColumnLayout& layout = grid::LayoutOf(column);
        const int given = static_cast<int>(std::lround(layout.width * UnitWidth(metrics)));
        widths[static_cast<std::size_t>(column)] =
            layout.hidden ? 0 : std::max(given, NeededWidth(metrics, column));
    }
    const int digits = metrics.horizontalAdvance(QString::number(std::max(rowNumbers, 1000)));
    widths[0] = digits + 2 * kCellMargin + 4;
    return widths;
}

}  // namespace

ColumnWidths WidthsFor(const QFontMetrics& metrics, int room, int rowNumbers) {
    ColumnWidths widths = GivenWidths(metrics, rowNumbers);
    int over = room;
    for (const int width : widths) {
        over -= width;
    }
    for (const FreeColumn& free : kFree) {
        for (const int column : {free.column, free.column + grid::kSideBOffset}) {
            int& width = widths[static_cast<std::size_t>(column)];
            const int least =
                std::max(static_cast<int>(width * (1 - kMostGiven)), NeededWidth(metrics, column));
            const double share = static_cast<double>(over) * free.share / kBothShares;
            width = std::max(width + static_cast<int>(std::floor(share)), least);
        }
    }
    return widths;
}

}  // namespace tavrel::app
