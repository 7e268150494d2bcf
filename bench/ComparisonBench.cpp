// Filling the grid and comparing two snapshots in it, at 1k, 10k and 100k rows a side.  What counts is
// "row_ns", the time for one row: it must stay the same whatever the number of rows.
#include <string>

#include <benchmark/benchmark.h>

#include "workbench/StructureComparison.h"

namespace {

using namespace tavrel;

constexpr int kFieldsOfTable = 40;
constexpr int kManyRows = 100000;

struct SilentBar : platform::ProgressBar {
    int value = 0;
    void SetMaximum(int) override {}
    void SetValue(int newValue) override { value = newValue; }
    [[nodiscard]] int Value() const override { return value; }
    void SetVisible(bool) override {}
};

struct Option : platform::OptionBox {
    int value = 0;
    [[nodiscard]] int Value() const override { return value; }
};

struct SilentMessages : platform::MessageBox {
    platform::MessageAnswer Show(const platform::Message&) override { return platform::MessageAnswer::Ok; }
};

/// Writes field number `n` of a made-up database as the next row of a side.
void PutField(grid::ResultGrid& grid, int offset, int row, int n, const char* tablePrefix) {
    if (row > grid.RowCount()) {
        grid.SetRowCount(row);
    }
    const std::string table = tablePrefix + std::to_string(n / kFieldsOfTable);
    const std::string field = "field_" + std::to_string(n % kFieldsOfTable);
    grid.PutText(offset + 1, row, table);
    grid.PutText(offset + 5, row, field);
    grid.PutText(offset + 11, row, table + "." + field);
    grid.PutText(offset + 6, row, "Text");
    grid.PutText(offset + 7, row, 50);
    grid.PutText(offset + 10, row, "O");
    grid.PutText(offset + 8, row, "");
    grid.PutText(offset + 9, row, "X");
}

enum Shape { Identical, EverySecondMissing, OneSideEmpty, NothingInCommon };

void FillBoth(grid::ResultGrid& grid, int rows, Shape shape) {
    for (int n = 0; n < rows; ++n) {
        PutField(grid, 0, n + 1, n, "Table");
    }
    const int step = shape == EverySecondMissing ? 2 : 1;
    const int last = shape == OneSideEmpty ? 0 : rows;
    for (int n = 0, row = 1; n < last; n += step, ++row) {
        PutField(grid, grid::kSideBOffset, row, n, shape == NothingInCommon ? "Other" : "Table");
    }
}

void ReportRows(benchmark::State& state) {
    state.counters["row"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Compare(benchmark::State& state, Shape shape, bool dropOneSided) {
    grid::ResultGrid grid;
    std::array<SilentBar, 2> bars;
    std::array<Option, 3> options;
    options[0].value = dropOneSided ? 1 : 0;
    options[2].value = 1;
    SilentMessages messages;
    workbench::WorkbenchControls controls{.Check1 = {&options[0], &options[1], &options[2]},
                                          .ProgressBar1 = {&bars[0], &bars[1]},
                                          .messages = &messages,
                                          .spList = &grid,
                                          .AppCode = {}};
    for (auto _ : state) {
        state.PauseTiming();
        grid.SetRowCount(0);
        FillBoth(grid, static_cast<int>(state.range(0)), shape);
        state.ResumeTiming();
        benchmark::DoNotOptimize(workbench::CompareSnapshots(controls));
    }
    ReportRows(state);
}

void FillGrid(benchmark::State& state) {
    grid::ResultGrid grid;
    for (auto _ : state) {
        grid.SetRowCount(0);
        FillBoth(grid, static_cast<int>(state.range(0)), Identical);
    }
    ReportRows(state);
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(1000, kManyRows)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(Compare, identical, Identical, false)->Apply(Sizes);
BENCHMARK_CAPTURE(Compare, every_second_missing, EverySecondMissing, false)->Apply(Sizes);
BENCHMARK_CAPTURE(Compare, every_second_dropped, EverySecondMissing, true)->Apply(Sizes);
BENCHMARK_CAPTURE(Compare, one_side_empty, OneSideEmpty, false)->Apply(Sizes);
BENCHMARK_CAPTURE(Compare, nothing_in_common, NothingInCommon, false)->Apply(Sizes);
BENCHMARK_CAPTURE(Compare, nothing_in_common_dropped, NothingInCommon, true)->Apply(Sizes);
BENCHMARK(FillGrid)->Apply(Sizes);

}  // namespace
