#include <gtest/gtest.h>

#include "FakeControls.h"
#include "LiteralComparison.h"
#include "SnapshotSides.h"
#include "workbench/StructureComparison.h"

namespace tavrel::workbench {
namespace {

/// Everything that a comparison leaves behind, a line a row.
std::string Picture(const FakeWindow& window) {
    const grid::ResultGrid& grid = window.grid;
    std::string picture;
    for (int row = 1; row <= grid.RowCount(); ++row) {
        for (int column = 1; column <= grid::kColumnCount; ++column) {
            picture.append(grid.Text(column, row)).append("|");
            const grid::Colour colour = grid.BackColor(column, row);
            picture += colour == 255 ? "red|" : colour == 0xFFC0C0 ? "blue|" : "";
        }
        picture += grid.RowHidden(row) ? "hidden\n" : "\n";
    }
    for (const FakeBar& bar : window.bars) {
        picture += "bar " + std::to_string(bar.value) + " of " + std::to_string(bar.maximum) + "\n";
    }
    picture += "active " + std::to_string(grid.ActiveColumn()) + "," + std::to_string(grid.ActiveRow());
    picture += " focused " + std::to_string(window.observer.focused) + "\n";
    for (const std::string& text : window.messages.texts) {
        picture += text;
    }
    return picture;
}

TEST(StructureComparison, GivesWhatTheStepsGive) {
    for (unsigned seed = 1; seed <= 10000; ++seed) {
        Dice dice(seed);
        const SideRows a = dice.Rows(seed % 50 == 0 ? 60 : 14);
        const SideRows b = dice.OneIn(3) ? dice.Rows(14) : dice.Relative(a);
        FakeWindow fast;
        FakeWindow literal;
        for (FakeWindow* window : {&fast, &literal}) {
            window->Tick(seed % 8);
            Fill(window->grid, a, b);
            if (seed % 7 == 0) {
                window->grid.SetRowCount(window->grid.RowCount() + 3);
            }
        }
        CompareSnapshots(fast.controls);
        LiteralComparison(literal.controls).Run();
        ASSERT_EQ(Picture(fast), Picture(literal)) << "seed " << seed;
    }
}

struct NamedCase {
    const char* name;
    SideRows a;
    SideRows b;
    unsigned ticked;  ///< bit i: Check1(i)
    int differences;
    std::vector<std::string>
        expected;  ///< "A key|mark|B key", "*" at a blue field name, "type!" at a red type
};

std::string Brief(const grid::ResultGrid& grid, int row) {
    const auto side = [&](int offset) {
        std::string text(grid.Text(offset + 11, row));
        text += grid.BackColor(offset + 5, row) == 0xFFC0C0 ? "*" : "";
        return text + (grid.BackColor(offset + 6, row) == 255 ? " type!" : "");
    };
    return side(0) + "|" + std::string(grid.Text(12, row)) + "|" + side(12);
}

class NamedComparison : public ::testing::TestWithParam<NamedCase> {};

TEST_P(NamedComparison, Holds) {
    const NamedCase& named = GetParam();
    FakeWindow window;
    window.Tick(named.ticked);
    Fill(window.grid, named.a, named.b);
    EXPECT_EQ(CompareSnapshots(window.controls), named.differences);
    std::vector<std::string> rows;
    for (int row = 1; row <= window.grid.RowCount(); ++row) {
        rows.push_back(Brief(window.grid, row));
    }
    EXPECT_EQ(rows, named.expected);
    EXPECT_EQ(window.bars[1].value, 5);
    const std::string count = std::to_string(named.differences) + "건의 다른곳이 발견 되었습니다.";
    EXPECT_EQ(window.messages.texts,
              std::vector<std::string>{named.differences == 0 ? "두 DB의 구조가 일치 합니다." : count});
    EXPECT_EQ(window.observer.focused, named.differences == 0 ? 0 : 1);
}

const SideRows kAbc = RowsOf({"customer.a", "customer.b", "customer.c"});
const SideRows kAxbc = RowsOf({"customer.a", "customer.x", "customer.b", "customer.c"});
const SideRows kTwoOrders = RowsOf({"orders.a", "orders.b"});
const SideRows kInvoices = RowsOf({"invoices.a", "invoices.c", "invoices.d"});

INSTANTIATE_TEST_SUITE_P(
    Cases, NamedComparison,
    ::testing::Values(
        NamedCase{"Identical",
                  kAbc,
                  kAbc,
                  0,
                  0,
                  {"customer.a||customer.a", "customer.b||customer.b", "customer.c||customer.c"}},
        NamedCase{"BothEmpty", {}, {}, 7, 0, {}},
        NamedCase{
            "FieldMissingOnA",
            kAbc,
            kAxbc,
            0,
            1,
            {"customer.a||customer.a", "|!|customer.x*", "customer.b||customer.b", "customer.c||customer.c"}},
        NamedCase{"TableMissingOnA",
                  RowsOf({"t1.a", "t3.a"}),
                  RowsOf({"t1.a", "t2.a", "t2.b", "t3.a"}),
                  0,
                  2,
                  {"t1.a||t1.a", "|!|t2.a*", "|!|t2.b*", "t3.a||t3.a"}},
        NamedCase{"NothingInCommon",
                  kTwoOrders,
                  kInvoices,
                  0,
                  3,
                  {"orders.a|!|invoices.a", "orders.b|!|invoices.c", "|!|invoices.d"}},
        NamedCase{"NothingInCommonDropped", kTwoOrders, kInvoices, 1, 0, {}},
        NamedCase{"OneSidedDropped",
                  kAbc,
                  kAxbc,
                  1,
                  0,
                  {"customer.a||customer.a", "customer.b||customer.b", "customer.c||customer.c"}},
        NamedCase{
            "TypeChanged", {RowOf("t.a", "Long")}, {RowOf("t.a", "Double")}, 0, 1, {"t.a type!|!|t.a type!"}},
        NamedCase{"TypeIsNoIndex", {RowOf("t.a", "Long")}, {RowOf("t.a", "Double")}, 2, 0, {"t.a||t.a"}},
        NamedCase{
            "KeysDifferInCaseOnly", {RowOf("t.a", "Long")}, {RowOf("T.A", "Double")}, 0, 1, {"t.a|!|T.A"}},
        NamedCase{"CaseNeverCounts", {RowOf("t.a", "LONG")}, {RowOf("T.A", "long")}, 0, 0, {"t.a||T.A"}},
        NamedCase{"ShorterSide",
                  kAbc,
                  RowsOf({"customer.a"}),
                  0,
                  2,
                  {"customer.a||customer.a", "customer.b|!|", "customer.c|!|"}},
        NamedCase{"PassEndGrows",
                  RowsOf({"t.b", "t.c", "t.a"}),
                  RowsOf({"t.a", "t.b", "t.c"}),
                  0,
                  2,
                  {"|!|t.a*", "t.b||t.b", "t.c||t.c", "t.a|!|"}}),
    [](const auto& info) { return info.param.name; });

TEST(StructureComparison, HidesUnmarkedRowsAndActivatesTheFirstMarked) {
    FakeWindow window;
    window.Tick(4);
    Fill(window.grid, kAbc, kAxbc);
    CompareSnapshots(window.controls);
    EXPECT_TRUE(window.grid.RowHidden(1) && window.grid.RowHidden(3) && window.grid.RowHidden(4));
    EXPECT_FALSE(window.grid.RowHidden(2));
    EXPECT_EQ(window.grid.ActiveRow(), 2);
    EXPECT_EQ(window.grid.ActiveColumn(), 12);
}

TEST(StructureComparison, CountsBeyondSixteenBitsAndCallsTheBarSparingly) {
    constexpr int kRows = 70000;
    FakeWindow window;
    window.grid.SetRowCount(kRows);
    for (int row = 1; row <= kRows; ++row) {
        window.grid.PutText(11, row, "t." + std::to_string(row));
    }
    EXPECT_EQ(CompareSnapshots(window.controls), kRows);
    EXPECT_EQ(window.messages.texts.front(), "70000건의 다른곳이 발견 되었습니다.");
    EXPECT_EQ(window.bars[0].value, kRows);
    EXPECT_LT(window.bars[0].calls, 1000);
}

}  // namespace
}  // namespace tavrel::workbench
