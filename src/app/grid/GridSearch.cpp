#include "app/grid/GridSearch.h"

#include <array>

#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr std::array<int, 4> kSearched = {grid::cell::kTable, grid::cell::kField,
                                          grid::cell::kTable + grid::kSideBOffset,
                                          grid::cell::kField + grid::kSideBOffset};

bool IsTable(int column) {
    return column == grid::cell::kTable || column == grid::cell::kTable + grid::kSideBOffset;
}

/// Looks at each text of the grid once, however many cells show it.
class TextMatcher {
  public:
    TextMatcher(const grid::ResultGrid& grid, const QString& text)
        : grid_(grid), text_(text), known_(grid.IdLimit(), Answer::Unknown) {}

    bool Matches(int column, int row) {
        Answer& answer = known_[grid_.Id(column, row)];
        if (answer == Answer::Unknown) {
            const bool holds = ToQt(grid_.Text(column, row)).contains(text_, Qt::CaseInsensitive);
            answer = holds ? Answer::Yes : Answer::No;
        }
        return answer == Answer::Yes;
    }

  private:
    enum class Answer : char { Unknown, Yes, No };
    const grid::ResultGrid& grid_;
    QString text_;
    std::vector<Answer> known_;  ///< by the number of the text
};

}  // namespace

std::vector<Hit> FindHits(const GridModel& model, const QString& text) {
    std::vector<Hit> hits;
    const grid::ResultGrid& grid = model.Grid();
    TextMatcher matcher(grid, text);
    for (int modelRow = 0; modelRow < model.rowCount() && !text.isEmpty(); ++modelRow) {
        const int row = model.GridRow(modelRow);
        const int above = model.GridRow(modelRow - 1);
        for (const int column : kSearched) {
            const bool repeated =
                IsTable(column) && above != 0 && grid.Id(column, row) == grid.Id(column, above);
            if (!repeated && matcher.Matches(column, row)) {
                hits.push_back({modelRow, column});
                break;
            }
        }
    }
    return hits;
}

}  // namespace tavrel::app
