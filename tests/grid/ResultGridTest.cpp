#include <algorithm>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "grid/CellText.h"
#include "grid/ResultGrid.h"

namespace tavrel::grid {
namespace {

/// A column as one word, a letter a cell, "." for an empty one.
std::string Column(const ResultGrid& grid, int column) {
    std::string word;
    for (int row = 1; row <= grid.RowCount(); ++row) {
        word += grid.Text(column, row).empty() ? std::string(".") : std::string(grid.Text(column, row));
    }
    return word;
}

struct MoveCase {
    const char* name;
    int column1, row1, column2, row2, targetColumn, targetRow;
    const char* expected1;  ///< columns 1 to 3 afterwards; before: "abcdef", "ghijkl", "mnopqr"
    const char* expected2;
    const char* expected3;
};

class MoveBlock : public testing::TestWithParam<MoveCase> {};

TEST_P(MoveBlock, LeavesNothingBehind) {
    const MoveCase& move = GetParam();
    ResultGrid grid;
    grid.SetRowCount(6);
    for (int i = 0; i < 18; ++i) {
        grid.PutText(i / 6 + 1, i % 6 + 1, std::string(1, static_cast<char>('a' + i)));
    }
    grid.MoveBlock(move.column1, move.row1, move.column2, move.row2, move.targetColumn, move.targetRow);
    EXPECT_EQ(Column(grid, 1), move.expected1);
    EXPECT_EQ(Column(grid, 2), move.expected2);
    EXPECT_EQ(Column(grid, 3), move.expected3);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MoveBlock,
    testing::Values(MoveCase{"UpOverlapping", 1, 3, 2, 6, 1, 2, "acdef.", "gijkl.", "mnopqr"},
                    MoveCase{"DownOverlapping", 1, 2, 2, 4, 1, 3, "a.bcdf", "g.hijl", "mnopqr"},
                    MoveCase{"DownApart", 2, 1, 2, 2, 2, 5, "abcdef", "..ijgh", "mnopqr"},
                    MoveCase{"DownBeyondTheEnd", 1, 2, 1, 6, 1, 4, "a..bcd", "ghijkl", "mnopqr"},
                    MoveCase{"UpBeyondTheTop", 1, 1, 1, 3, 1, -1, "c..def", "ghijkl", "mnopqr"},
                    MoveCase{"RightOverlapping", 1, 1, 2, 3, 2, 1, "...def", "abcjkl", "ghipqr"},
                    MoveCase{"LeftAndDown", 2, 1, 3, 3, 1, 2, "aghief", ".mnokl", "...pqr"},
                    MoveCase{"ToNowhere", 1, 1, 1, 2, 1, 50, "..cdef", "ghijkl", "mnopqr"},
                    MoveCase{"FromNowhere", 1, 9, 1, 12, 1, 1, "abcdef", "ghijkl", "mnopqr"}),
    [](const auto& info) { return info.param.name; });

TEST(ResultGrid, RowCountDropsWhatLiesBelow) {
    ResultGrid grid;
    grid.SetRowCount(5);
    grid.PutText(5, 4, "x");
    grid.SetFormatRow(4);
    grid.SetFormatCol(5);
    grid.SetCellMark(CellMark::Differs);
    grid.SetRowHidden(true);
    grid.ActivateCell(12, 4);
    EXPECT_EQ(grid.DataRowCount(), 4);
    EXPECT_EQ(grid.BackColor(5, 4), 255U);
    EXPECT_TRUE(grid.RowHidden(4));
    grid.SetRowCount(3);
    EXPECT_EQ(grid.ActiveRow(), 3);
    grid.SetRowCount(5);
    EXPECT_EQ(grid.Text(5, 4), "");
    EXPECT_EQ(grid.BackColor(5, 4), 0xFFFFFFU);
    EXPECT_FALSE(grid.RowHidden(4));
    EXPECT_EQ(grid.DataRowCount(), 0);
    EXPECT_EQ(grid.BackColor(12, 1), 0xFFFF80U);
    EXPECT_EQ(grid.TextColor(12), 0x0000FFU);
}

TEST(ResultGrid, ReadsWhatIsThereAndNothingElse) {
    ResultGrid grid;
    grid.SetRowCount(2);
    grid.PutText(7, 2, 50);
    grid.PutText(13, kTopHeaderRow, "b.mdb");
    grid.PutText(1, 3, "outside");
    grid.PutText(24, 1, "outside");
    std::string text = "before";
    EXPECT_TRUE(grid.GetText(7, 2, text));
    EXPECT_EQ(text, "50");
    EXPECT_TRUE(grid.GetText(13, -1000, text));
    EXPECT_EQ(text, "b.mdb");
    for (const auto& [column, row] : {std::pair(1, 3), {24, 1}, {0, 1}, {1, 0}, {1, -5}}) {
        EXPECT_FALSE(grid.GetText(column, row, text));
        EXPECT_EQ(modCmpDB::GetCellText(grid, column, row), "");
    }
    EXPECT_EQ(grid.Text(17, kCaptionHeaderRow), "필드명");
    grid.SetRowCount(0);
    EXPECT_EQ(grid.Text(13, kTopHeaderRow), "b.mdb");
}

TEST(ResultGrid, FindsWholeCellsInARangeWhateverTheirCase) {
    ResultGrid grid;
    grid.SetRowCount(5);
    const std::vector<std::string> cells = {"cust", "Code", "é가", "CODE", "cod"};
    for (int row = 1; row <= 5; ++row) {
        grid.PutText(5, row, cells[static_cast<std::size_t>(row) - 1]);
    }
    EXPECT_EQ(grid.FindInColumn(5, 0, 5, "code", 0), 2);
    EXPECT_EQ(grid.FindInColumn(5, 2, 5, "code", 0), 4);
    EXPECT_EQ(grid.FindInColumn(5, 2, 3, "code", 0), -1);
    EXPECT_EQ(grid.FindInColumn(5, 4, 500, "COD", 0), 5);
    EXPECT_EQ(grid.FindInColumn(5, 0, 5, "É가", 0), 3);
    EXPECT_EQ(grid.FindInColumn(5, 0, 5, "nowhere", 0), -1);
    EXPECT_EQ(grid.FindInColumn(17, 0, 5, "code", 0), -1);
}

/// The pool against a plain map, over many texts, so that it grows and takes long texts too.
TEST(TextPool, KeepsEveryTextOnceAndFoldsItsCase) {
    TextPool pool;
    std::map<std::string, TextId> known;
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string text(random() % (i % 1000 == 0 ? 100000 : 4), 'a');
        for (char& c : text) {
            c = "aAbBzZ09"[random() % 8];
        }
        const TextId id = pool.Intern(text);
        const auto [entry, isNew] = known.emplace(text, id);
        ASSERT_EQ(entry->second, id);
        ASSERT_EQ(pool.Text(id), text);
        ASSERT_EQ(pool.FindFolded(text), pool.Folded(id));
    }
    for (const auto& [text, id] : known) {
        std::string upper = text;
        std::ranges::transform(upper, upper.begin(),
                               [](char c) { return static_cast<char>(std::toupper(c)); });
        ASSERT_EQ(pool.Folded(id), pool.Intern(upper));
    }
}

TEST(ResultGrid, FormatsTheSelection) {
    ResultGrid grid;
    grid.SetRowCount(4);
    grid.SetFormatCol(-1);
    grid.SetFormatRow(-1);
    grid.SetCellLocked(true);
    grid.SetMerging(1);
    grid.SetFormatCol(17);
    grid.SetFormatCol2(17);
    grid.SetFormatRow(2);
    grid.SetFormatRow2(3);
    grid.SetBlockMode(true);
    grid.SetCellMark(CellMark::OneSided);
    grid.SetBlockMode(false);
    grid.SetColumnMerge(1);
    EXPECT_EQ(grid.BackColor(17, 3), 0xFFC0C0U);
    EXPECT_EQ(grid.Mark(17, 3), CellMark::OneSided);
    EXPECT_EQ(grid.Mark(17, 4), CellMark::None);
    EXPECT_EQ(grid.BackColor(17, 4), 0xFFFFFFU);
    EXPECT_EQ(grid.BackColor(16, 2), 0xFFFFFFU);
    grid.SetFormatRow(3);
    grid.SetCellBackColor(255);
    EXPECT_EQ(grid.BackColor(17, 3), 255U);
    EXPECT_EQ(grid.Role(17, 3), CellRole::OneSided);
    EXPECT_EQ(grid.Role(12, 3), CellRole::Compare);
    EXPECT_TRUE(grid.CellLocked(1, 400));
    EXPECT_EQ(grid.ColumnMerge(17) + 10 * grid.ColumnMerge(16), 1);
    EXPECT_TRUE(grid.ColumnHidden(11) && grid.ColumnHidden(23) && !grid.ColumnHidden(12));
    EXPECT_EQ(grid.ColumnWidth(12), 4.75);
    grid.JoinCells(1, kTopHeaderRow, 11, 1);
    grid.JoinCells(1, kTopHeaderRow, 10, 1);
    EXPECT_EQ(grid.Joins(), (std::vector<JoinedCells>{{1, kTopHeaderRow, 10, 1}}));
}

struct Listener : GridObserver {
    std::string heard;
    void CellsChanged(const CellRange& r) override {
        heard += "cells " + std::to_string(r.firstRow) + "-" + std::to_string(r.lastRow) + ";";
    }
    void RowCountChanged() override { heard += "rows;"; }
    void RowsHiddenChanged(int, int) override { heard += "hidden;"; }
    void HeaderChanged() override { heard += "header;"; }
    void ActiveCellChanged() override { heard += "active;"; }
    void AllChanged() override { heard += "all;"; }
    void FocusRequested() override { heard += "focus;"; }
};

void ChangeEverything(ResultGrid& grid) {
    grid.SetRowCount(4);
    grid.PutText(1, 2, "x");
    grid.MoveBlock(1, 2, 11, 3, 1, 1);
    grid.PutText(1, kTopHeaderRow, "a.mdb");
    grid.SetFormatRow(2);
    grid.SetRowHidden(true);
    grid.ActivateCell(12, 1);
    grid.SetFocus();
}

TEST(ResultGrid, TellsChangesOnlyWhileRepainting) {
    ResultGrid grid;
    Listener listener;
    grid.Observe(&listener);
    ChangeEverything(grid);
    EXPECT_EQ(listener.heard, "rows;cells 2-2;cells 1-3;header;hidden;active;focus;");
    listener.heard.clear();
    grid.SetRepaint(false);
    ChangeEverything(grid);
    grid.SetRepaint(true);
    grid.SetRepaint(true);
    EXPECT_EQ(listener.heard, "focus;all;");
}

}  // namespace
}  // namespace tavrel::grid
