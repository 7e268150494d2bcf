#include "app/grid/RowMarks.h"

#include <algorithm>
#include <array>

#include <QStringList>

namespace tavrel::app {

namespace {

struct ToneName {
    RowTone tone;
    const char* name;
};
constexpr std::array<ToneName, 3> kToneNames = {
    {{RowTone::Differs, "다름"}, {RowTone::OnlyA, "A에만 있음"}, {RowTone::OnlyB, "B에만 있음"}}};

RowTone ToneOf(const grid::ResultGrid& grid, int row) {
    const auto alone = [&](int offset) {
        return grid.Mark(grid::cell::kField + offset, row) == grid::CellMark::OneSided;
    };
    if (alone(0)) {
        return RowTone::OnlyA;
    }
    return alone(grid::kSideBOffset) ? RowTone::OnlyB : RowTone::Differs;
}

}  // namespace

const std::vector<RowMark>& RowMarks::List() const {
    if (known_) {
        return marks_;
    }
    known_ = true;
    marks_.clear();
    const grid::ResultGrid& grid = model_.Grid();
    for (int modelRow = 0; modelRow < model_.rowCount(); ++modelRow) {
        const int row = model_.GridRow(modelRow);
        if (grid.Id(grid::kCompareColumn, row) != grid::kEmptyText) {
            marks_.push_back({modelRow, ToneOf(grid, row)});
        }
    }
    return marks_;
}

int RowMarks::PlaceOf(int modelRow) const {
    const auto found = std::ranges::lower_bound(List(), modelRow, {}, &RowMark::modelRow);
    return found != List().end() && found->modelRow == modelRow ? static_cast<int>(found - List().begin()) + 1
                                                                : 0;
}

QString RowMarks::InWords() const {
    QStringList words;
    for (const ToneName& name : kToneNames) {
        const auto count = std::ranges::count(List(), name.tone, &RowMark::tone);
        if (count != 0) {
            words.append(QStringLiteral("%1 %2").arg(QString::fromUtf8(name.name)).arg(count));
        }
    }
    return words.join(QStringLiteral(", "));
}

}  // namespace tavrel::app
