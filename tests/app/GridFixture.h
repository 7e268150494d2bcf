// A result grid on the screen, in the test's hands.
#pragma once

#include <string>

#include <QTest>
#include <gtest/gtest.h>

#include "app/grid/GridHeader.h"
#include "app/grid/GridView.h"
#include "app/logic/GridCommands.h"
#include "app/text/QtText.h"

namespace tavrel::app {

class GridOnScreen : public ::testing::Test {
  protected:
    GridOnScreen() : view(grid, nullptr) {
        InitGrid(grid);
        LockCells(grid);
        view.resize(867, 400);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    /// Rows of `tables` tables by turns of four fields each, every `marked`th with a mark.
    void Fill(int rows, int marked) {
        grid.SetRepaint(false);
        grid.SetRowCount(rows);
        for (int row = 1; row <= rows; ++row) {
            for (const int offset : {0, 12}) {
                grid.PutText(offset + 1, row, "table" + std::to_string((row - 1) / 4));
                grid.PutText(offset + 5, row, "f" + std::to_string(row));
                grid.PutText(offset + 11, row, "key");
            }
            grid.PutText(12, row, row % marked == 0 ? "!" : "");
        }
        grid.SetRepaint(true);
    }
    void HideUnmarked() {
        for (int row = 1; row <= grid.RowCount(); ++row) {
            grid.SetFormatRow(row);
            if (grid.Text(12, row).empty()) {
                grid.SetRowHidden(true);
            }
        }
    }
    void Mark(int column, int row, grid::CellMark mark) {
        grid.SetFormatCol(column);
        grid.SetFormatRow(row);
        grid.SetCellMark(mark);
    }
    QRect CellRect(int column, int row) { return view.visualRect(view.Model().IndexOf(column, row)); }
    QColor ColourAt(const QPoint& point) {
        const QImage image = view.viewport()->grab().toImage();
        return image.pixelColor(point * image.devicePixelRatio());
    }
    /// Pixels of a cell that have neither its back colour nor the lines'.
    int Ink(int column, int row) {
        const QRect rect = CellRect(column, row).adjusted(1, 1, -2, -2);
        const QImage image = view.viewport()->grab(rect).toImage();
        int ink = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                ink += image.pixelColor(x, y).lightness() < 100 ? 1 : 0;
            }
        }
        return ink;
    }
    GridHeader::Cell HeaderCell(int column, int row) {
        for (const GridHeader::Cell& cell : view.Header().VisibleCells()) {
            if (cell.cells.column == column && cell.cells.row == row) {
                return cell;
            }
        }
        return {};
    }

    grid::ResultGrid grid;
    GridView view;
};

}  // namespace tavrel::app
