// Rows in numbers: trees of several levels, maps beyond one row, and refusals that leave the table as it was.
#include <algorithm>

#include <gtest/gtest.h>

#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using namespace std::string_literals;
using jet::Null;
using jet::Value;

class BulkRows : public ::testing::Test {
  protected:
    /// The level byte of an index's root: 0 when it is a leaf.
    [[nodiscard]] unsigned RootLevel(jet::Database& database, const std::string& table,
                                     std::size_t index) const {
        const auto* object = database.Catalog().FindTable(table);
        const auto& definition = database.Catalog().Definition(object->DefinitionPage());
        return database.Pager().Read(definition.realIndexes[index].root).Bytes()[0x1A];
    }
    [[nodiscard]] std::size_t RowCount(jet::Database& database, const std::string& table) const {
        const auto* object = database.Catalog().FindTable(table);
        return database.Catalog().Definition(object->DefinitionPage()).rowCount;
    }
    TemporaryFolder folder_;
    DatabaseBuilder builder_{folder_.File("a.mdb")};
};

TEST_F(BulkRows, AHundredThousandRowsWithThreeIndexes) {
    constexpr int kRows = 100000;
    builder_.Add(Table("매출")
                     .Counter("번호")
                     .Text("고객", 40)
                     .Column("금액", jet::ColumnType::Currency)
                     .Column("날짜", jet::ColumnType::Date)
                     .Key({"번호"})
                     .Index("고객별", {"고객", "날짜"})
                     .Index("금액별", {"금액"}));
    {
        const auto writer = builder_.Database().Append("매출");
        for (int i = 0; i < kRows; ++i) {
            writer->Append({Null{}, "고객 " + std::to_string(i * 7919 % 5000),
                            jet::Currency{i * 7919LL % 1000003},
                            i % 10 == 0 ? Value{Null{}} : Value{jet::Date{40000.0 + i % 365}}});
        }
        writer->Finish();
    }
    const std::string path = builder_.Finish();
    const auto database = jet::Database::Open(path);
    EXPECT_EQ(RowCount(*database, "매출"), std::size_t{kRows});
    EXPECT_GE(RootLevel(*database, "매출", 1), 1U);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    EXPECT_EQ(TableOf(DumpOf(path), "매출")["row_count"], kRows);
}

TEST_F(BulkRows, LongKeysMakeTreesOfFourLevelsInSeveralSteps) {
    builder_.Add(Table("t").Text("a").Column("b", jet::ColumnType::Binary, 200).Key({"a"}).Index("b", {"b"}));
    for (int step = 0; step < 3; ++step) {
        std::vector<std::vector<Value>> rows;
        for (int i = step; i < 4500; i += 3) {
            // The number stands at both ends, so that neither shared fronts nor short keys make pages hold
            // more.
            const std::string number = std::to_string(10000 + i * 7 % 4500);
            rows.push_back({number + std::string(240, 'x') + number,
                            jet::ByteVector(200, static_cast<std::uint8_t>(i))});
        }
        builder_.Rows("t", rows);
    }
    const std::string path = builder_.Finish();
    const auto database = jet::Database::Open(path);
    EXPECT_EQ(RowCount(*database, "t"), 4500U);
    EXPECT_GE(RootLevel(*database, "t", 0), 3U);
    EXPECT_GE(RootLevel(*database, "t", 1), 2U);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

TEST_F(BulkRows, FilesOfThousandsOfPagesUseBitmapPages) {
    builder_.Add(Table("t").Counter("a").Memo("b").Text("c").Key({"a"}));
    std::vector<std::vector<Value>> rows;
    for (int i = 0; i < 3000; ++i) {
        rows.push_back(
            {Null{}, std::string(1500 + i % 700, 'm'), std::string(255, static_cast<char>('a' + i % 26))});
    }
    rows.push_back({Null{}, std::string(3000000, 'z'), "끝"s});
    builder_.Rows("t", rows);
    builder_.Add(Table("나중").Long("a").Key({"a"}));  // all its pages lie behind the first 512
    builder_.Rows("나중", {{Int(1)}, {Int(2)}});
    const std::string path = builder_.Finish();
    EXPECT_GT(jet::Database::Open(path)->FileBytes(), 2000U * jet::kPageSize);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    EXPECT_EQ(TableOf(DumpOf(path), "t")["row_count"], 3001);
}

TEST_F(BulkRows, DuplicatesLeaveTheTableAsItWas) {
    builder_.Add(Table("t").Long("a").Memo("b").Key({"a"}).Unique("u", {"b"}));
    const std::vector<std::vector<Value>> good = {{Int(1), "하나"s}, {Int(2), Null{}}, {Int(3), Null{}}};
    builder_.Rows("t", good);
    std::vector<std::vector<Value>> more;
    for (int i = 10; i < 2000; ++i) {
        more.push_back({Int(i), std::string(70, 'x') + std::to_string(i)});
    }
    more.push_back({Int(2), Null{}});
    EXPECT_EQ(ErrorOf([&] { builder_.Rows("t", more); }), errors::kDuplicateKey);
    EXPECT_TRUE(ReadRows(builder_.Database(), "t") == good);
    more.back() = {Int(5), std::string(70, 'X') + "10"};  // letter case makes no difference
    EXPECT_EQ(ErrorOf([&] { builder_.Rows("t", more); }), errors::kDuplicateKey);
    more.pop_back();
    builder_.Rows("t", more);
    const std::string path = builder_.Finish();
    EXPECT_EQ(RowCount(*jet::Database::Open(path), "t"), 3U + 1990U);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

TEST_F(BulkRows, RowsThatAreRefusedLeaveNothingBehind) {
    using enum jet::ColumnType;
    Table table("t");
    table.Long("a").Text("b", 5).Required().ZeroLength(false).Memo("c").Column("d", Date).Column("e", Byte);
    table.Column("f", Numeric).Digits(3, 0).Key({"a"}).Index("b", {"b"});
    std::vector<Value> tooLong;
    for (int i = 0; i < 20; ++i) {
        table.Text("t" + std::to_string(i)).Uncompressed();
        tooLong.emplace_back(std::string(255, 'x'));
    }
    builder_.Add(table);
    const auto row = [](Value a, Value b, Value c, Value d, Value e, Value f) {
        std::vector<Value> values = {std::move(a), std::move(b), std::move(c),
                                     std::move(d), std::move(e), std::move(f)};
        values.resize(26);
        return values;
    };
    const std::string memo(5000, 'm');
    std::vector<Value> wide = row(Int(1), "x"s, memo, Null{}, Null{}, Null{});
    std::ranges::copy(tooLong, wide.begin() + 6);
    const struct {
        std::vector<Value> row;
        int error;
    } cases[] = {
        {{Int(1)}, 3346},
        {wide, 3047},
        {row(Null{}, "x"s, memo, Null{}, Null{}, Null{}), 3058},
        {row(Int(1), "123456"s, memo, Null{}, Null{}, Null{}), 3163},
        {row(Int(1), Null{}, memo, Null{}, Null{}, Null{}), 3314},
        {row(Int(1), ""s, memo, Null{}, Null{}, Null{}), 3315},
        {row(Int(1LL << 31), "x"s, memo, Null{}, Null{}, Null{}), 3349},
        {row(Int(1), "x"s, memo, jet::Date{3e6}, Null{}, Null{}), 3349},
        {row(Int(1), "x"s, memo, Null{}, Int(256), Null{}), 3349},
        {row(Int(1), "x"s, memo, Null{}, Null{}, Int(1000)), 3349},
        {row("1"s, "x"s, memo, Null{}, Null{}, Null{}), 3464},
        {row(Int(1), Int(1), memo, Null{}, Null{}, Null{}), 3464},
        {row(Int(1), "x"s, jet::ByteVector{1}, Null{}, Null{}, Null{}), 3464},
        {row(Int(1), "漢"s, memo, Null{}, Null{}, Null{}), 3990},
    };
    const auto writer = builder_.Database().Append("t");
    for (const auto& c : cases) {
        EXPECT_EQ(ErrorOf([&] { writer->Append(c.row); }), c.error);
    }
    writer->Append(row(Int(1), "x"s, memo, Null{}, Null{}, Null{}));
    writer->Finish();
    const std::string path = builder_.Finish();
    EXPECT_EQ(RowCount(*jet::Database::Open(path), "t"), 1U);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

TEST_F(BulkRows, AWriterThatIsNotFinishedIsHeardOf) {
    builder_.Add(Table("t").Long("a").Key({"a"}));
    {
        const auto writer = builder_.Database().Append("t");
        EXPECT_EQ(ErrorOf([&] { builder_.Database().Append("T"); }), 3211);
        EXPECT_EQ(ErrorOf([&] { builder_.Database().Flush(); }), 3211);
        writer->Append({Int(1)});
    }  // finishes by itself
    builder_.Database().Flush();
    EXPECT_EQ(ReadRows(builder_.Database(), "t").size(), 1U);
    {
        const auto writer = builder_.Database().Append("t");
        writer->Append({Int(1)});
    }  // a duplicate that nobody was told of
    EXPECT_EQ(ErrorOf([&] { builder_.Database().Flush(); }), errors::kDamaged);
    EXPECT_EQ(ErrorOf([&] { builder_.Database().Append("없음"); }), errors::kNoSuchTable);
}

TEST_F(BulkRows, SevenHundredLongValueMapsNeedSeveralMapPages) {
    Table table("t");
    std::vector<Value> row;
    for (int i = 0; i < 255; ++i) {
        table.Memo("m" + std::to_string(i));
        row.emplace_back(i % 50 == 0 ? Value{std::string(70, 'x')} : Value{Null{}});
    }
    builder_.Add(table);
    builder_.Rows("t", {row});
    const std::string path = builder_.Finish();
    EXPECT_TRUE(ReadRows(*jet::Database::Open(path), "t").front() == row);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

}  // namespace
}  // namespace tavrel::testing
