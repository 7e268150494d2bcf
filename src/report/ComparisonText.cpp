#include <array>

#include "grid/GridLayout.h"
#include "report/ComparisonReport.h"
#include "report/DisplayText.h"
#include "report/SideCells.h"

namespace tavrel::report {

namespace {

using compare::kCellCount;

constexpr std::size_t kMarkColumn = kCellCount;
constexpr std::size_t kFirstOfB = kCellCount + 1;
constexpr std::size_t kWordsColumn = 2 * kCellCount + 1;

/// A row of the table; holds the text that is made for it.
class TextRow {
  public:
    /// The captions.
    TextRow() {
        for (std::size_t cell = 0; cell < kCellCount; ++cell) {
            cells_[cell] = {.text = CaptionOf(cell), .paint = Paint::Caption};
            cells_[kFirstOfB + cell] = cells_[cell];
        }
        cells_[kMarkColumn] = {.text = grid::LayoutOf(grid::kCompareColumn).caption, .paint = Paint::Caption};
    }

    explicit TextRow(const compare::ResultRow& row) : words_(DifferenceInWords(row)) {
        PutSide(0, row.a, row, compare::OneSided::A);
        PutSide(kFirstOfB, row.b, row, compare::OneSided::B);
        cells_[kMarkColumn] = {.text = row.mark, .paint = row.mark.empty() ? Paint::None : Paint::Mark};
        cells_[kWordsColumn] = {.text = words_};
    }

    TextRow(const TextRow&) = delete;
    TextRow& operator=(const TextRow&) = delete;

    [[nodiscard]] std::span<const TextCell> Cells() const { return cells_; }

  private:
    void PutSide(std::size_t first, const std::optional<compare::SideCells>& side,
                 const compare::ResultRow& row, compare::OneSided name) {
        for (std::size_t cell = 0; side && cell < kCellCount; ++cell) {
            const bool oneSided = row.oneSided == name && cell == kFieldCell;
            cells_[first + cell] = {.text = (*side)[cell],
                                    .paint = row.Differs(cell) ? Paint::Different
                                             : oneSided        ? Paint::OneSided
                                                               : Paint::None};
        }
    }

    std::string words_;
    std::array<TextCell, kWordsColumn + 1> cells_;
};

}  // namespace

void WriteComparisonText(std::ostream& out, const compare::ComparisonResult& result, const TextStyle& style) {
    TextTable table(kWordsColumn + 1, style);
    const TextRow captions;
    table.Measure(captions.Cells());
    for (std::size_t index = 0; index < result.RowCount(); ++index) {
        if (const compare::ResultRow row = result.Row(index); !row.hidden) {
            table.Measure(TextRow(row).Cells());
        }
    }
    out << "A: " << Printable(result.PathA()) << "\nB: " << Printable(result.PathB()) << "\n\n";
    table.Write(out, captions.Cells());
    table.WriteRule(out);
    for (std::size_t index = 0; index < result.RowCount(); ++index) {
        if (const compare::ResultRow row = result.Row(index); !row.hidden) {
            table.Write(out, TextRow(row).Cells());
        }
    }
    out << '\n' << Painted(result.Message(), Paint::Caption, style) << '\n';
}

}  // namespace tavrel::report
