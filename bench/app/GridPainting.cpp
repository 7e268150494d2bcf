// The result grid on the screen with up to 200,000 rows: filling, painting one screen, scrolling, hiding
// every second row, selecting everything.  What a user feels begins at about 20 ms.
#include <string>

#include <QApplication>
#include <QScrollBar>
#include <benchmark/benchmark.h>

#include "app/FormFont.h"
#include "app/grid/GridView.h"
#include "app/logic/GridCommands.h"

namespace {

using namespace tavrel;

void Fill(grid::ResultGrid& grid, int rows) {
    grid.SetRepaint(false);
    grid.SetRowCount(0);
    grid.SetRowCount(rows);
    for (int row = 1; row <= rows; ++row) {
        const std::string table = "거래처테이블" + std::to_string(row / 40);
        const std::string field = "field_" + std::to_string(row);
        for (const int offset : {0, grid::kSideBOffset}) {
            grid.PutText(offset + 1, row, table);
            grid.PutText(offset + 5, row, field);
            grid.PutText(offset + 6, row, "Text");
            grid.PutText(offset + 7, row, 50);
            grid.PutText(offset + 9, row, "O");
            grid.PutText(offset + 10, row, "X");
        }
        grid.PutText(grid::kCompareColumn, row, row % 2 == 0 ? "!" : "");
    }
    grid.SetRepaint(true);
}

/// A view of a full-screen window, filled.
class Screen {
  public:
    explicit Screen(int rows) : view_(grid_, nullptr) {
        app::InitGrid(grid_);
        app::LockCells(grid_);
        view_.setFont(app::FormFont());
        view_.resize(1920, 1000);
        view_.show();
        Fill(grid_, rows);
        QApplication::processEvents();
    }
    grid::ResultGrid& Grid() { return grid_; }
    app::GridView& View() { return view_; }
    void Paint() { view_.viewport()->repaint(); }

  private:
    grid::ResultGrid grid_;
    app::GridView view_;
};

int Rows(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

void BM_Fill(benchmark::State& state) {
    Screen screen(0);
    for (auto _ : state) {
        Fill(screen.Grid(), Rows(state));
    }
}

void BM_PaintScreen(benchmark::State& state) {
    Screen screen(Rows(state));
    for (auto _ : state) {
        screen.Paint();
    }
}

void BM_ScrollPage(benchmark::State& state) {
    Screen screen(Rows(state));
    QScrollBar& bar = *screen.View().verticalScrollBar();
    for (auto _ : state) {
        const int next = bar.value() + bar.pageStep();
        bar.setValue(next > bar.maximum() ? 0 : next);
        screen.Paint();
    }
}

void BM_RepaintOffAndOn(benchmark::State& state) {
    Screen screen(Rows(state));
    for (auto _ : state) {
        screen.Grid().SetRepaint(false);
        screen.Grid().SetRepaint(true);
        screen.Paint();
    }
}

void BM_HideHalf(benchmark::State& state) {
    Screen screen(Rows(state));
    grid::ResultGrid& grid = screen.Grid();
    for (auto _ : state) {
        state.PauseTiming();
        grid.SetFormatRow(-1);
        grid.SetRowHidden(false);
        QApplication::processEvents();
        state.ResumeTiming();
        grid.SetRepaint(false);
        for (int row = 1; row <= grid.RowCount(); row += 2) {
            grid.SetFormatRow(row);
            grid.SetRowHidden(true);
        }
        grid.SetRepaint(true);
        screen.Paint();
    }
}

void BM_SelectAll(benchmark::State& state) {
    Screen screen(Rows(state));
    for (auto _ : state) {
        screen.View().selectAll();
        screen.Paint();
    }
}

BENCHMARK(BM_Fill)->Arg(2000)->Arg(200000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PaintScreen)->Arg(2000)->Arg(200000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScrollPage)->Arg(2000)->Arg(200000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RepaintOffAndOn)->Arg(2000)->Arg(200000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_HideHalf)->Arg(2000)->Arg(200000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SelectAll)->Arg(2000)->Arg(200000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
