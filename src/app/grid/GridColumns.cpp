#include "app/grid/GridColumns.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include <QFontMetrics>

#include "app/grid/GridDelegate.h"
#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

/// What of its width a free column keeps at first, and what it keeps when the others have nothing to give.
constexpr double kComfortable = 0.75;
constexpr double kReadable = 0.5;

/// A grid unit is a digit and the blank that a grid of characters leaves between two of them.
double UnitWidth(const QFontMetrics& metrics) {
    return metrics.horizontalAdvance(QLatin1Char('0')) + 0.5;
}

/// Type in the window and, of a cell that differs, in bold.
struct Metrics {
    explicit Metrics(const QFont& font) : plain(font), differing(CellFont(font, CellSign::Corner)) {}
    QFontMetrics plain;
    QFontMetrics differing;
};

int NeededWidth(const Metrics& metrics, int column) {
    const grid::ColumnLayout& layout = grid::LayoutOf(column);
    int needed = metrics.plain.horizontalAdvance(ToQt(layout.caption)) + 2 * kCellMargin + 2;
    if (!layout.usual.empty()) {
        const int text = metrics.differing.horizontalAdvance(ToQt(layout.usual));
        needed = std::max(needed, CellWidth(text, column, CellSign::Corner));
    }
    return needed;
}

ColumnWidths GivenWidths(const Metrics& metrics, int rowNumbers) {
    ColumnWidths widths{};
    for (int column = 1; column <= grid::kColumnCount; ++column) {
        const grid::ColumnLayout& layout = grid::LayoutOf(column);
        const int given = static_cast<int>(std::lround(layout.width * UnitWidth(metrics.plain)));
        widths[static_cast<std::size_t>(column)] =
            layout.hidden ? 0 : std::max(given, NeededWidth(metrics, column));
    }
    const int digits = metrics.plain.horizontalAdvance(QString::number(std::max(rowNumbers, 1000)));
    widths[0] = digits + 2 * kCellMargin + 4;
    return widths;
}

/// A column that gives room, by its share of what all give, or takes some.
struct Giver {
    int* width;
    int least;
    int share;
};

/// `kept`: the part of its width that each keeps.
std::vector<Giver> FreeColumns(ColumnWidths& widths, const Metrics& metrics, double kept) {
    std::vector<Giver> givers;
    for (int column = 1; column <= grid::kColumnCount; ++column) {
        if (const int share = grid::LayoutOf(column).freeShare; share > 0) {
            int& width = widths[static_cast<std::size_t>(column)];
            const int least = std::max(static_cast<int>(width * kept), NeededWidth(metrics, column));
            givers.push_back({&width, least, share});
        }
    }
    return givers;
}

/// The other columns, by what they have and do not need.
std::vector<Giver> GivenColumns(ColumnWidths& widths, const Metrics& metrics) {
    std::vector<Giver> givers;
    for (int column = 1; column <= grid::kColumnCount; ++column) {
        int& width = widths[static_cast<std::size_t>(column)];
        const int least = NeededWidth(metrics, column);
        if (width > least && grid::LayoutOf(column).freeShare == 0) {
            givers.push_back({&width, least, width - least});
        }
    }
    return givers;
}

/// Takes what is missing from the columns; a column at its least leaves its part to the others.  Both sides
/// give alike, so a few pixels more may be taken than asked.  Returns what is still missing.
int Take(std::vector<Giver> givers, int missing) {
    while (missing > 0 && !givers.empty()) {
        int shares = 0;
        for (const Giver& giver : givers) {
            shares += giver.share;
        }
        const double one = static_cast<double>(missing) / shares;
        for (const Giver& giver : givers) {
            const int part = std::min(static_cast<int>(std::ceil(one * giver.share)),
                                      std::max(*giver.width - giver.least, 0));
            *giver.width -= part;
            missing -= part;
        }
        std::erase_if(givers, [](const Giver& giver) { return *giver.width <= giver.least; });
    }
    return missing;
}

void Give(const std::vector<Giver>& takers, int over) {
    int shares = 0;
    for (const Giver& taker : takers) {
        shares += taker.share;
    }
    for (const Giver& taker : takers) {
        *taker.width += over * taker.share / shares;
    }
}

}  // namespace

ColumnWidths WidthsFor(const QFont& font, int room, int rowNumbers) {
    const Metrics metrics(font);
    ColumnWidths widths = GivenWidths(metrics, rowNumbers);
    const int over = room - std::accumulate(widths.begin(), widths.end(), 0);
    if (over >= 0) {
        Give(FreeColumns(widths, metrics, 1), over);
    } else {
        const int others = Take(FreeColumns(widths, metrics, kComfortable), -over);
        const int last = Take(GivenColumns(widths, metrics), others);
        Take(FreeColumns(widths, metrics, kReadable / kComfortable), last);
    }
    return widths;
}

}  // namespace tavrel::app
