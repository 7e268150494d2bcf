#include <fstream>

#include <gtest/gtest.h>

#include "FakeControls.h"
#include "compare/SchemaSnapshot.h"
#include "jet/database/Database.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"
#include "workbench/CompareRun.h"
#include "workbench/Headless.h"

namespace tavrel::workbench {
namespace {

jet::NewColumn Column(const std::string& name, jet::ColumnType type) {
    jet::NewColumn column;
    column.name = name;
    column.type = type;
    return column;
}

jet::NewIndex Index(const std::string& name, const std::vector<std::string>& fields, bool primary) {
    jet::NewIndex index;
    index.name = name;
    for (const std::string& field : fields) {
        index.fields.push_back({field});
    }
    index.primary = index.unique = primary;
    return index;
}

/// Two related tables, with a field of every type that has a cell text of its own.
void MakeShop(const std::string& path) {
    const auto file = jet::Database::Create(path);
    using Type = jet::ColumnType;
    jet::NewColumn name = Column("name", Type::Text);
    name.size = 50;
    name.required = true;
    name.defaultValue = "\"-\"";
    name.zeroLength = jet::NewColumn::ZeroLength::Allowed;
    file->CreateTable(
        {"customer",
         {Column("id", Type::Long), name, Column("small", Type::Byte), Column("memo", Type::Memo)},
         {Index("pk", {"id"}, true), Index("both", {"name", "ID"}, false)}});
    file->CreateTable({"Orders", {Column("id", Type::Double), Column("cust", Type::Long)}, {}});
    jet::RelationInfo relation;
    relation.name = "ordering";
    relation.table = "Orders";
    relation.referencedTable = "customer";
    relation.columns = {"cust"};
    relation.referencedColumns = {"id"};
    file->CreateRelation(relation);
    file->Flush();
}

using Rows = std::vector<std::string>;

/// The rows of a side, their cells with "/" between.
Rows SideTexts(const grid::ResultGrid& grid, int offset) {
    Rows rows;
    for (int row = 1; row <= grid.DataRowCount(); ++row) {
        std::string text;
        for (const std::string_view cell : compare::SideOf(grid, offset, row)) {
            text.append(cell).append("/");
        }
        rows.push_back(text);
    }
    return rows;
}

const Rows kCustomer = {"customer/v//v/id/Long///O//", "customer///v/name/Text/50/\"-\"/X/O/",
                        "customer////small/2///O//", "customer////memo/Memo///O//"};
const Rows kOrders = {"Orders////id/Double///O//", "Orders//v//cust/Long///O//"};

struct FilterCase {
    const char* name;
    const char* filter;
    bool customer;
    bool orders;
};

class Snapshot : public ::testing::TestWithParam<FilterCase> {};

TEST_P(Snapshot, ListsOneSide) {
    const testing::TemporaryFolder folder;
    MakeShop(folder.File("shop.mdb"));
    Rows expected = GetParam().customer ? kCustomer : Rows{};
    expected.insert(expected.end(), kOrders.begin(), GetParam().orders ? kOrders.end() : kOrders.begin());
    FakeWindow window;
    for (const bool sideA : {true, false}) {
        ASSERT_TRUE(compare::LoadSchemaSnapshot({window.grid, window.bars[0], window.messages},
                                                folder.File("shop.mdb"), sideA, "", GetParam().filter));
        EXPECT_EQ(SideTexts(window.grid, sideA ? 0 : 12), expected);
        EXPECT_EQ(window.grid.Text(sideA ? 1 : 13, grid::kTopHeaderRow), folder.File("shop.mdb"));
        EXPECT_EQ(window.bars[0].value, window.bars[0].maximum);
        EXPECT_GT(window.bars[0].maximum, 2);
    }
    if (GetParam().orders) {
        EXPECT_EQ(window.grid.Text(23, window.grid.RowCount()), "Orders.cust");
    }
}

INSTANTIATE_TEST_SUITE_P(Filters, Snapshot,
                         ::testing::Values(FilterCase{"Every", "", true, true},
                                           FilterCase{"OneWhateverItsCase", "ORDERS", false, true},
                                           FilterCase{"NoSuchTable", "order", false, false},
                                           FilterCase{"SystemTable", "MSysObjects", false, false}),
                         [](const auto& info) { return info.param.name; });

TEST(CompareRun, NamesTheMissingPathAndTouchesNothingElse) {
    const testing::TemporaryFolder folder;
    MakeShop(folder.File("shop.mdb"));
    const std::string missing = folder.File("missing.mdb");
    struct Case {
        std::string a, b, message;
        std::size_t focused;
    };
    const std::string noFile = "파일을 찾을 수 없습니다.\r\n\r\n";
    for (const Case& c :
         {Case{"", "", "DataBase 파일을 선택하세요.", 0}, Case{missing, "", noFile + missing, 0},
          Case{folder.File("shop.mdb"), "", "DataBase 파일을 선택하세요.", 1},
          Case{folder.File("shop.mdb"), missing, noFile + missing, 1},
          Case{folder.Path(), missing, noFile + folder.Path(), 0}}) {
        FakeWindow window;
        window.grid.SetRowCount(3);
        window.paths[0].text = c.a;
        window.paths[1].text = c.b;
        CompareRun run(window.controls);
        run.cmdComp_Click();
        EXPECT_EQ(window.messages.texts, Rows{c.message});
        EXPECT_EQ(window.paths[c.focused].focused, 1);
        EXPECT_EQ(window.paths[1 - c.focused].focused, 0);
        EXPECT_EQ(window.pointer.turnedOn, 0);
        EXPECT_EQ(window.grid.RowCount(), 3);
        EXPECT_EQ(run.Outcome(), RunOutcome::Stopped);
    }
}

/// However a run ends, the window can be used afterwards.
void ExpectBusyStateLeft(const FakeWindow& window) {
    EXPECT_EQ(window.pointer.turnedOn, 1);
    EXPECT_FALSE(window.pointer.hourglass);
    EXPECT_TRUE(window.grid.Repaint());
    EXPECT_EQ(window.observer.allChanged, 1);
    EXPECT_FALSE(window.bars[0].visible || window.bars[1].visible);
}

TEST(CompareRun, EndsWithItsMessageWhenASideCannotBeOpened) {
    const testing::TemporaryFolder folder;
    MakeShop(folder.File("shop.mdb"));
    std::ofstream(folder.File("text.mdb")) << std::string(5000, 'x');
    for (const bool goodA : {false, true}) {
        FakeWindow window;
        window.paths[0].text = folder.File(goodA ? "shop.mdb" : "text.mdb");
        window.paths[1].text = folder.File("text.mdb");
        CompareRun run(window.controls);
        run.cmdComp_Click();
        ASSERT_EQ(window.messages.texts.size(), 1U);
        EXPECT_TRUE(window.messages.texts[0].ends_with(") in procedure MyOpenDB of Module modCmpDB"));
        EXPECT_EQ(window.grid.RowCount(), goodA ? 6 : 0);
        EXPECT_EQ(window.bars[1].value, goodA ? 1 : 0);
        ExpectBusyStateLeft(window);
    }
}

TEST(CompareRun, KnowsWhetherTheGridHoldsAComparison) {
    const testing::TemporaryFolder folder;
    MakeShop(folder.File("shop.mdb"));
    std::ofstream(folder.File("text.mdb")) << std::string(5000, 'x');
    FakeWindow window;
    window.paths[0].text = folder.File("shop.mdb");
    window.tables[0].text = "Orders";
    CompareRun run(window.controls);
    for (const std::string b : {"shop.mdb", "missing.mdb", "text.mdb"}) {
        window.paths[1].text = folder.File(b);
        run.cmdComp_Click();
        EXPECT_EQ(run.IsListed(), b != "text.mdb") << b;
        EXPECT_TRUE(!run.IsListed() || run.Differences() > 0) << b;
    }
}

TEST(CompareRun, EndsInOneMessageWhenADatabaseCannotBeRead) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.File("shop.mdb");
    MakeShop(path);
    // The database opens as before; the definition of one of its tables is blank.
    const std::streamoff page = jet::Database::Open(path)->Catalog().FindTable("Orders")->DefinitionPage();
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(page * 4096).write(std::string(4096, '\0').data(), 4096);
    file.close();
    FakeWindow window;
    window.paths[0].text = window.paths[1].text = path;
    CompareRun run(window.controls);
    run.cmdComp_Click();
    ASSERT_EQ(window.messages.texts.size(), 1U);
    EXPECT_TRUE(window.messages.texts[0].starts_with("Error 3428 (")) << window.messages.texts[0];
    EXPECT_TRUE(window.messages.texts[0].ends_with(") in procedure LoadSchemaSnapshot of Form Form1"))
        << window.messages.texts[0];
    ExpectBusyStateLeft(window);
}

struct FakeCopies : WorkingCopies {
    bool answer = true;
    std::string copy;
    bool Prepare(WorkbenchControls&, std::string& pathA, std::string& pathB) override {
        pathA = pathB = copy;
        return answer;
    }
};

TEST(CompareRun, ReadsTheWorkingCopiesOfAProduct) {
    const testing::TemporaryFolder folder;
    MakeShop(folder.File("shop.mdb"));
    MakeShop(folder.File("copy.mdb"));
    for (const bool patched : {true, false}) {
        FakeWindow window;
        window.paths[0].text = window.paths[1].text = folder.File("shop.mdb");
        window.controls.AppCode = "breltII";
        FakeCopies copies;
        copies.answer = patched;
        copies.copy = folder.File("copy.mdb");
        CompareRun run(window.controls, &copies);
        run.cmdComp_Click();
        EXPECT_EQ(run.Outcome(), patched ? RunOutcome::Equal : RunOutcome::Stopped);
        EXPECT_EQ(window.grid.Text(1, grid::kTopHeaderRow), patched ? copies.copy : "");
        EXPECT_EQ(window.messages.texts, patched ? Rows{"두 DB의 구조가 일치 합니다."} : Rows{});
        EXPECT_EQ(window.pointer.turnedOn, patched ? 1 : 0);
    }
}

std::optional<compare::ComparisonResult> CompareFiles(FakeWindow& window, const std::string& a,
                                                      const std::string& b, bool bothOnly) {
    CompareRequest request;
    request.a.path = a;
    request.b.path = b;
    request.bothOnly = bothOnly;
    return CompareDatabases(request, {window.messages, window.bars[0], window.bars[1]});
}

TEST(Headless, ShowsEachKindOfDifference) {
    const testing::TemporaryFolder folder;
    const auto make = [&](const char* name, const std::vector<jet::NewColumn>& columns) {
        const auto file = jet::Database::Create(folder.File(name));
        file->CreateTable({"t", columns, {}});
        file->Flush();
    };
    using Type = jet::ColumnType;
    make("a.mdb", {Column("same", Type::Long), Column("changed", Type::Long), Column("onlyA", Type::Long),
                   Column("last", Type::Long)});
    make("b.mdb", {Column("same", Type::Long), Column("changed", Type::Double), Column("last", Type::Long),
                   Column("onlyB", Type::Long)});
    FakeWindow window;
    const auto result = CompareFiles(window, folder.File("a.mdb"), folder.File("b.mdb"), false);
    ASSERT_TRUE(result && result->RowCount() == 5);
    EXPECT_EQ(result->Differences(), 3);
    EXPECT_EQ(result->Message(), "3건의 다른곳이 발견 되었습니다.");
    EXPECT_EQ(result->PathB(), folder.File("b.mdb"));
    EXPECT_EQ(result->Row(0).mark, "");
    EXPECT_EQ(result->Row(1).DifferingNames(), std::vector<std::string_view>{"type"});
    EXPECT_EQ((*result->Row(1).b)[5], "Double");
    EXPECT_EQ(result->Row(2).OneSidedName(), "a");
    EXPECT_FALSE(result->Row(2).b.has_value());
    EXPECT_EQ((*result->Row(3).a)[4], "last");
    EXPECT_FALSE(result->Row(4).a.has_value());
    EXPECT_EQ(result->Row(4).OneSidedName(), "");
}

/// Real files: with the sides exchanged and one-sided rows left out, as many rows differ; a file equals
/// itself.
TEST(Headless, ComparesSamplesBothWaysAlike) {
    TAVREL_NEEDS_CORPUS();
    const std::vector<std::string> files = testing::CorpusFiles();
    const auto named = [&](const std::string& name) {
        const auto found = std::ranges::find_if(
            files, [&](const std::string& path) { return path.ends_with("/" + name + ".mdb"); });
        return found == files.end() ? std::string() : *found;
    };
    for (const auto& [nameA, nameB] : {std::pair("coal-washing-1", "coal-washing-2"),
                                       {"course-1", "course-2"},
                                       {"airport-tickets", "airport-luggage"}}) {
        const std::string a = named(nameA);
        const std::string b = named(nameB);
        ASSERT_FALSE(a.empty() || b.empty()) << nameA;
        FakeWindow window;
        const auto forth = CompareFiles(window, a, b, true);
        const auto back = CompareFiles(window, b, a, true);
        const auto self = CompareFiles(window, a, a, false);
        ASSERT_TRUE(forth && back && self) << nameA << " " << window.messages.texts.front();
        EXPECT_EQ(forth->Differences(), back->Differences());
        EXPECT_EQ(self->Differences(), 0);
        EXPECT_GT(self->RowCount(), 0U);
    }
}

}  // namespace
}  // namespace tavrel::workbench
