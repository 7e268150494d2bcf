// Where the differences lie: the marked rows of those shown, and what kind each is of.
#pragma once

#include <vector>

#include "app/grid/GridModel.h"

namespace tavrel::app {

enum class RowTone { Differs, OnlyA, OnlyB };

struct RowMark {
    int modelRow;
    RowTone tone;
};

/// Gathered in one pass over the rows when it is asked for, and kept until Forget.
class RowMarks {
  public:
    /// The model must outlive the marks.
    explicit RowMarks(const GridModel& model) : model_(model) {}

    /// The grid has changed.
    void Forget() { known_ = false; }
    /// From top to bottom.
    [[nodiscard]] const std::vector<RowMark>& List() const;
    /// Number of the row's mark, from 1; 0 when the row has none.
    [[nodiscard]] int PlaceOf(int modelRow) const;
    /// "다름 5, A에만 있음 8, B에만 있음 4"; kinds that are not there are left out.
    [[nodiscard]] QString InWords() const;

  private:
    const GridModel& model_;
    mutable std::vector<RowMark> marks_;
    mutable bool known_ = false;
};

}  // namespace tavrel::app
