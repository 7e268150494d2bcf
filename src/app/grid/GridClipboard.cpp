#include "app/grid/GridClipboard.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QClipboard>
#include <QGuiApplication>
#include <QStringList>

#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

using SelectedColumns = std::array<bool, grid::kColumnCount>;

std::string Quoted(std::string_view text) {
    if (text.find_first_of("\t\r\n\"") == std::string_view::npos) {
        return std::string(text);
    }
    std::string quoted = "\"";
    for (const char character : text) {
        quoted.append(character == '"' ? 2 : 1, character);
    }
    return quoted + "\"";
}

/// Columns of the block: those with a selected cell and those between, hidden ones left out.
std::vector<int> BlockColumns(const GridModel& model, const QItemSelection& selection) {
    int first = grid::kColumnCount;
    int last = -1;
    for (const QItemSelectionRange& range : selection) {
        first = std::min(first, range.left());
        last = std::max(last, range.right());
    }
    std::vector<int> columns;
    for (int column = first; column <= last; ++column) {
        if (!model.Grid().ColumnHidden(column + 1)) {
            columns.push_back(column);
        }
    }
    return columns;
}

SelectedColumns ColumnsOfRow(const std::vector<QItemSelectionRange>& ranges, int row) {
    SelectedColumns selected{};
    for (const QItemSelectionRange& range : ranges) {
        for (int column = range.left();
             row >= range.top() && row <= range.bottom() && column <= range.right(); ++column) {
            selected[static_cast<std::size_t>(column)] = true;
        }
    }
    return selected;
}

void AppendRow(std::string& text, const GridModel& model, int row, const std::vector<int>& columns,
               const SelectedColumns& selected) {
    const int gridRow = model.GridRow(row);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        text += i == 0 ? "" : "\t";
        if (selected[static_cast<std::size_t>(columns[i])]) {
            text += Quoted(model.Grid().Text(columns[i] + 1, gridRow));
        }
    }
    text += '\n';
}

}  // namespace

QString SelectionText(const GridModel& model, const QItemSelection& selection) {
    std::vector<QItemSelectionRange> ranges(selection.begin(), selection.end());
    std::ranges::sort(ranges, {}, &QItemSelectionRange::top);
    const std::vector<int> columns = BlockColumns(model, selection);
    std::string text;
    int next = 0;  // rows above are written
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        for (int row = std::max(next, ranges[i].top()); row <= ranges[i].bottom(); ++row) {
            AppendRow(text, model, row, columns, ColumnsOfRow(ranges, row));
        }
        next = std::max(next, ranges[i].bottom() + 1);
    }
    return ToQt(text);
}

QString SelectionTextWithHeaders(const GridModel& model, const QItemSelection& selection) {
    QStringList captions;
    for (const int column : BlockColumns(model, selection)) {
        const QString caption = ToQt(grid::LayoutOf(column + 1).caption);
        const int place = column + 1 - grid::kCompareColumn;
        captions.append(place == 0  ? caption
                        : place < 0 ? caption + QStringLiteral(" (A)")
                                    : caption + QStringLiteral(" (B)"));
    }
    return captions.isEmpty()
               ? QString()
               : captions.join(QLatin1Char('\t')) + QLatin1Char('\n') + SelectionText(model, selection);
}

QItemSelection DifferingPart(const GridModel& model, const QItemSelection& selection) {
    QItemSelection part;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (model.Grid().Id(grid::kCompareColumn, model.GridRow(row)) != grid::kEmptyText) {
                part.append({model.index(row, range.left()), model.index(row, range.right())});
            }
        }
    }
    return part;
}

void CopyToClipboard(const QString& text) {
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

}  // namespace tavrel::app
