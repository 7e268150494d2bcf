// Every type and every length: what went in comes out, by our own cursor and by the independent reader.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"
#include "text/Format.h"
#include "text/Utf.h"

namespace tavrel::testing {
namespace {

using namespace std::string_literals;
using jet::Null;
using jet::Value;

jet::Guid GuidOf(std::uint8_t first) {
    jet::Guid guid;
    for (std::uint8_t& byte : guid.bytes) {
        byte = first++;
    }
    return guid;
}

/// A value as the independent reader prints it.
nlohmann::json JsonOf(const Value& value) {
    struct Visitor {
        nlohmann::json operator()(const Null&) const { return nullptr; }
        nlohmann::json operator()(bool truth) const { return truth; }
        nlohmann::json operator()(std::int64_t number) const { return number; }
        nlohmann::json operator()(float number) const { return static_cast<double>(number); }
        nlohmann::json operator()(double number) const { return number; }
        nlohmann::json operator()(const jet::Currency& c) const { return text::FormatScaled(c.scaled, 4); }
        nlohmann::json operator()(const jet::Date& date) const { return date.days; }
        nlohmann::json operator()(const std::string& text) const { return text; }
        nlohmann::json operator()(const jet::ByteVector& bytes) const { return {{"hex", text::Hex(bytes)}}; }
        nlohmann::json operator()(const jet::Guid& guid) const { return jet::GuidText(guid); }
        nlohmann::json operator()(const jet::Decimal& decimal) const { return jet::DecimalText(decimal); }
    };
    return std::visit(Visitor{}, value);
}

/// The file is sound and its table `t` holds these rows, in this order.
void ExpectRows(const std::string& path, const std::vector<std::vector<Value>>& rows) {
    EXPECT_TRUE(ReadRows(*jet::Database::Open(path), "t") == rows);
    if (!HaveJetTools()) {
        return;
    }
    EXPECT_EQ(StrictFindings(path), "");
    const std::vector<nlohmann::json> seen = RowsOf(path, "t");
    ASSERT_EQ(seen.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t c = 0; c < rows[i].size(); ++c) {
            EXPECT_EQ(seen[i]["c" + std::to_string(c)], JsonOf(rows[i][c])) << "row " << i << " column " << c;
        }
    }
}

TEST(RowValues, EveryTypeAtItsLimits) {
    using enum jet::ColumnType;
    using Int32 = std::numeric_limits<std::int32_t>;
    using Int64 = std::numeric_limits<std::int64_t>;
    const std::uint32_t all = 0xFFFFFFFF;
    Table table("t");
    const jet::ColumnType types[] = {Boolean, Byte, Integer, Long, Currency, Single,  Double, Date,
                                     Binary,  Text, Ole,     Memo, Guid,     Numeric, Numeric};
    for (std::size_t i = 0; i < std::size(types); ++i) {
        table.Column("c" + std::to_string(i), types[i]);
    }
    table.Digits(38, 3);
    const std::vector<std::vector<Value>> rows = {
        {true, Int(255), Int(32767), Int(Int32::max()), jet::Currency{Int64::max()},
         std::numeric_limits<float>::max(), std::numeric_limits<double>::max(), jet::Date{2958465.75},
         jet::ByteVector(255, 0xFF), std::string(255, 'x'), jet::ByteVector{0}, "메모"s, GuidOf(1),
         jet::Decimal{{0, 0, 232, 3567587327}, false, 0},
         jet::Decimal{{1262177448, 1518781562, 3, all}, true, 3}},
        {false, Int(0), Int(-32768), Int(Int32::min()), jet::Currency{Int64::min()},
         std::numeric_limits<float>::denorm_min(), -std::numeric_limits<double>::min(), jet::Date{-657434},
         jet::ByteVector{}, ""s, jet::ByteVector{}, ""s, GuidOf(0xF8), jet::Decimal{},
         jet::Decimal{{0, 0, 0, 5}, true, 3}},
        {false, Null{}, Null{}, Null{}, Null{}, Null{}, Null{}, Null{}, Null{}, Null{}, Null{}, Null{},
         Null{}, Null{}, Null{}},
        {true, Int(1), Int(-1), Int(-1), jet::Currency{-1}, -0.0F, 0.1, jet::Date{-0.5}, jet::ByteVector{0},
         "ab"s, jet::ByteVector{0xFF, 0xFE}, "abc"s, GuidOf(0x70), jet::Decimal{{0, 0, 0, 7}, true, 0},
         jet::Decimal{{0, 0, 0, 0}, false, 3}},
    };
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(table);
    builder.Rows("t", rows);
    ExpectRows(builder.Finish(), rows);
}

TEST(RowValues, TextsOfEveryKindComeBack) {
    const std::vector<std::string> texts = {"",
                                            " ",
                                            "a",
                                            "ab",
                                            "abc",
                                            "가",
                                            "가나다",
                                            "한글abc한글abc",
                                            "é",
                                            "ÿÿÿ",
                                            "Āabc",
                                            "一二三",
                                            "a\0b"s,
                                            "줄\r\n바꿈",
                                            "😀 surrogates",
                                            "\n\t",
                                            std::string(255, 'z'),
                                            text::Utf8FromUtf16(std::u16string(255, u'힣'))};
    std::vector<std::vector<Value>> rows;
    for (const std::string& text : texts) {
        rows.push_back({text, text, text, text});
    }
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(Table("t").Text("c0").Text("c1").Uncompressed().Memo("c2").Memo("c3").Uncompressed());
    builder.Rows("t", rows);
    ExpectRows(builder.Finish(), rows);
}

TEST(RowValues, TextsThatLookCompressedOrAreNoUnicodeComeBack) {
    const std::vector<std::vector<Value>> rows = {{"\uFEFFabc"s, "\uFEFF본문"s},
                                                  {"\uFEFF"s, "\uFEFF" + std::string(5000, 'x')},
                                                  {"\xED\xA0\x80 lone"s, "\xED\xBF\xBF"s}};
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(Table("t").Text("c0").Memo("c1"));
    builder.Rows("t", rows);
    EXPECT_EQ(ReadRows(*jet::Database::Open(builder.Finish()), "t"), rows);
}

TEST(RowValues, LongValuesOfEveryForm) {
    std::vector<std::vector<Value>> rows;
    for (const std::size_t length : {0U, 1U, 31U, 32U, 33U, 64U, 65U, 1907U, 1908U, 3815U, 3816U, 4000U,
                                     4072U, 4073U, 8144U, 100000U, 5000000U}) {
        jet::ByteVector bytes(length);
        for (std::size_t i = 0; i < length; ++i) {
            bytes[i] = static_cast<std::uint8_t>(i * 7 + length);
        }
        rows.push_back({std::string(length, 'm'), std::string(length, 'p'),
                        text::Utf8FromUtf16(std::u16string(length, u'글')), std::move(bytes)});
    }
    rows.push_back({Null{}, Null{}, Null{}, Null{}});
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(
        Table("t").Memo("c0").Memo("c1").Uncompressed().Memo("c2").Column("c3", jet::ColumnType::Ole));
    builder.Rows("t", rows);
    ExpectRows(builder.Finish(), rows);
}

TEST(RowValues, ManyLongValuesShareTheirPages) {
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(Table("t").Memo("c0"));
    std::vector<std::vector<Value>> rows;
    for (int i = 0; i < 400; ++i) {
        rows.push_back({std::string(100, static_cast<char>('a' + i % 26))});
    }
    builder.Rows("t", rows);
    builder.Rows("t", rows);  // goes on where the first writer stopped
    const std::string path = builder.Finish();
    const std::vector<std::vector<Value>> once = rows;
    rows.insert(rows.end(), once.begin(), once.end());
    ExpectRows(path, rows);
    // 800 values of 102 bytes, and 800 rows of some 20.
    EXPECT_LT(jet::Database::Open(path)->FileBytes(), (22 + 6 + 20) * jet::kPageSize);
}

TEST(RowValues, NumbersOfOneTypeGoIntoColumnsOfAnother) {
    using enum jet::ColumnType;
    struct Case {
        jet::ColumnType type;
        Value given;
        Value stored;
        unsigned precision = 18;
        unsigned scale = 0;
    };
    const Case cases[] = {
        {Long, 2.5, Int(2)},
        {Long, 3.5, Int(4)},
        {Integer, true, Int(-1)},
        {Long, jet::Currency{-25000}, Int(-2)},
        {Currency, Int(-7), jet::Currency{-70000}},
        {Currency, 0.00005, jet::Currency{0}},
        {Double, 1.5F, 1.5},
        {Single, 0.1, 0.1F},
        {Date, Int(3), jet::Date{3}},
        {Boolean, Int(7), true},
        {Numeric, 1.25, jet::Decimal{{0, 0, 0, 12}, false, 1}, 5, 1},
        {Numeric, jet::Currency{-12345678}, jet::Decimal{{0, 0, 0, 123457}, true, 2}, 10, 2},
        {Numeric, jet::Decimal{{0, 0, 0, 25}, false, 1}, jet::Decimal{{0, 0, 0, 2}, false, 0}, 10, 0},
        {Numeric, jet::Decimal{{0, 0, 0, 251}, false, 2}, jet::Decimal{{0, 0, 0, 3}, false, 0}, 10, 0},
        {Numeric, Int(-3), jet::Decimal{{0, 0, 0, 300}, true, 2}, 10, 2},
    };
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    Table table("t");
    std::vector<Value> given;
    std::vector<Value> stored;
    for (const Case& c : cases) {
        table.Column("c" + std::to_string(given.size()), c.type).Digits(c.precision, c.scale);
        given.push_back(c.given);
        stored.push_back(c.stored);
    }
    builder.Add(table);
    builder.Rows("t", {given});
    ExpectRows(builder.Finish(), {stored});
}

TEST(RowValues, CountersGoOnFromTheHighestNumber) {
    const TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("a.mdb"));
    builder.Add(Table("t").Counter("c0").Long("c1").Key({"c0"}));
    builder.Rows("t", {{Null{}, Int(10)}, {Int(7), Int(20)}, {Int(-3), Int(30)}, {Null{}, Int(40)}});
    builder.Rows("t", {{Null{}, Int(50)}});
    ExpectRows(
        builder.Finish(),
        {{Int(1), Int(10)}, {Int(7), Int(20)}, {Int(-3), Int(30)}, {Int(8), Int(40)}, {Int(9), Int(50)}});
}

}  // namespace
}  // namespace tavrel::testing
