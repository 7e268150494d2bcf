// Table definitions of every size, and their refusals.
#include <gtest/gtest.h>

#include "jet/database/Database.h"
#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using namespace std::string_literals;
using jet::Null;
using jet::Value;

class Tables : public ::testing::Test {
  protected:
    [[nodiscard]] jet::TableInfo Describe(jet::Database& database, const std::string& name) const {
        return database.Describe(*database.Catalog().FindTable(name));
    }
    TemporaryFolder folder_;
    DatabaseBuilder builder_{folder_.File("a.mdb")};
};

TEST_F(Tables, PropertiesIndexesAndNamesComeBack) {
    builder_.Add(Table("고객 목록")
                     .Counter("번호")
                     .Text("이름", 50)
                     .Required()
                     .ZeroLength(false)
                     .Default("\"무명\"")
                     .Describe("고객의 이름")
                     .Text("비고")
                     .ZeroLength(true)
                     .Column("가격", jet::ColumnType::Currency)
                     .Default("0")
                     .Column("id", jet::ColumnType::Guid)
                     .Index("나중", {"비고"})
                     .IgnoreNulls()
                     .Key({"번호"})
                     .Unique("이름과 가격", {"이름", "가격"})
                     .Index("내림", {"가격"})
                     .Descending()
                     .NoNulls());
    const std::string path = builder_.Finish();

    const auto database = jet::Database::Open(path);
    const jet::TableInfo info = Describe(*database, "고객 목록");
    ASSERT_EQ(info.fields.size(), 5U);
    EXPECT_TRUE(info.fields[0].autonumber);
    EXPECT_EQ(info.fields[1].name, "이름");
    EXPECT_EQ(info.fields[1].size, 50U);
    EXPECT_EQ(info.fields[1].defaultValue, "\"무명\"");
    EXPECT_TRUE(info.fields[1].required);
    EXPECT_FALSE(info.fields[1].allowZeroLength);
    EXPECT_TRUE(info.fields[2].allowZeroLength);
    EXPECT_EQ(info.fields[2].size, 255U);
    EXPECT_EQ(info.fields[3].defaultValue, "0");
    ASSERT_EQ(info.indexes.size(), 4U);
    EXPECT_TRUE(info.indexes[0].primary);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    const nlohmann::json table = TableOf(DumpOf(path), "고객 목록");
    EXPECT_EQ(table["columns"][1], (nlohmann::json{{"name", "이름"},
                                                   {"ordinal", 1},
                                                   {"dao_type", 10},
                                                   {"size", 50},
                                                   {"default", "\"무명\""},
                                                   {"required", true},
                                                   {"allow_zero_length", false},
                                                   {"autonumber", false}}));
    const auto index = [](const std::string& name, bool primary, bool unique, bool ignoreNulls, bool required,
                          const nlohmann::json& fields) {
        return nlohmann::json{{"name", name},     {"primary", primary},          {"unique", unique},
                              {"foreign", false}, {"ignore_nulls", ignoreNulls}, {"required", required},
                              {"fields", fields}};
    };
    const auto field = [](const std::string& name, bool descending = false) {
        return nlohmann::json{{"name", name}, {"descending", descending}};
    };
    EXPECT_EQ(table["indexes"],
              (nlohmann::json{
                  index("PrimaryKey", true, true, false, true, nlohmann::json::array({field("번호")})),
                  index("나중", false, false, true, false, nlohmann::json::array({field("비고")})),
                  index("내림", false, false, false, true, nlohmann::json::array({field("가격", true)})),
                  index("이름과 가격", false, true, false, false, {field("이름"), field("가격")})}));
}

TEST_F(Tables, DefinitionsOverSeveralPages) {
    Table wide("넓은 표");
    std::vector<Value> row;
    for (int i = 0; i < 255; ++i) {
        const std::string name = std::to_string(i) + std::string(61, 'n');
        switch (i % 5) {
            case 0:
                wide.Text(name, 10).Default("\"" + std::string(100, 'd') + "\"").Required();
                row.emplace_back("v" + std::to_string(i));
                break;
            case 1:
                wide.Memo(name);
                row.emplace_back(Null{});
                break;
            case 2:
                wide.Column(name, jet::ColumnType::Boolean);
                row.emplace_back(i % 2 == 0);
                break;
            default:
                wide.Long(name);
                row.push_back(Int(i));
        }
        if (i < 32) {
            wide.Index("인덱스 " + std::to_string(i), {name});
        }
    }
    builder_.Add(wide);
    builder_.Rows("넓은 표", {row, row});
    const std::string path = builder_.Finish();
    const auto database = jet::Database::Open(path);
    EXPECT_TRUE(ReadRows(*database, "넓은 표") == (std::vector<std::vector<Value>>{row, row}));
    EXPECT_EQ(Describe(*database, "넓은 표").fields[250].defaultValue, "\"" + std::string(100, 'd') + "\"");
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    const nlohmann::json table = TableOf(DumpOf(path), "넓은 표");
    EXPECT_EQ(table["columns"].size(), 255U);
    EXPECT_EQ(table["indexes"].size(), 32U);
}

TEST_F(Tables, ManyTablesKeepTheCatalogRight) {
    constexpr int kTables = 300;
    for (int i = 0; i < kTables; ++i) {
        const std::string name = "표 " + std::to_string(i * 37 % kTables);
        builder_.Add(Table(name).Counter("a").Text("b").Key({"a"}).Index("b", {"b"}));
        builder_.Rows(name, {{Null{}, "값"s}});
        if (i == 100) {
            builder_.Database().Flush();  // the catalog's indexes are built, and built again later
        }
    }
    const std::string path = builder_.Finish();
    EXPECT_EQ(jet::Database::Open(path)->Catalog().Objects().size(), 8U + kTables);
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    EXPECT_EQ(DumpOf(path)["tables"].size(), std::size_t{kTables});
}

TEST_F(Tables, AReplicationIdIsGivenByItself) {
    builder_.Add(Table("t").Column("id", jet::ColumnType::Guid).Long("a"));
    jet::NewTable table = Table("u").Column("id", jet::ColumnType::Guid).Unique("k", {"id"});
    table.columns[0].autonumber = true;
    builder_.Add(table);
    builder_.Rows("u", {{Null{}}, {Null{}}, {Null{}}});
    const std::string path = builder_.Finish();
    const auto database = jet::Database::Open(path);
    EXPECT_TRUE(Describe(*database, "u").fields[0].autonumber);
    EXPECT_EQ(Describe(*database, "u").fields[0].defaultValue, "GenGUID()");
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

TEST_F(Tables, DefinitionsThatAreRefused) {
    using enum jet::ColumnType;
    builder_.Add(Table("있음").Long("a"));
    const std::string before = Describe(builder_.Database(), "있음").name;
    Table tooMany("t");
    Table tooManyIndexes("t");
    tooManyIndexes.Long("a");
    for (int i = 0; i < 256; ++i) {
        tooMany.Long("c" + std::to_string(i));
    }
    for (int i = 0; i < 33; ++i) {
        tooManyIndexes.Index("i" + std::to_string(i), {"a"});
    }
    const auto named = [](const std::string& name) { return Table(name).Long("a"); };
    const struct {
        jet::NewTable table;
        int error;
    } cases[] = {
        {named("있음"), 3010},
        {named("MSysObjects"), 3010},
        {named(""), 3125},
        {named(std::string(65, 'x')), 3125},
        {named("a.b"), 3125},
        {named("a!b"), 3125},
        {named("a`b"), 3125},
        {named("[a]"), 3125},
        {named(" a"), 3125},
        {named("a\tb"), 3125},
        {named("漢字"), 3990},
        {Table("t").Long("a]"), 3125},
        {Table("t").Long("a").Index("i.j", {"a"}), 3125},
        {Table("t"), 3264},
        {tooMany, 3190},
        {Table("t").Long("a").Long("A"), 3191},
        {Table("t").Counter("a").Counter("b"), 3090},
        {Table("t").Text("a", 256), 3382},
        {Table("t").Column("a", Binary, 511), 3382},
        {Table("t").Column("a", FixedBinary, 10), 3409},
        {Table("t").Column("a", Numeric).Digits(5, 6), 3409},
        {Table("t").Long("a").Key({"a"}).Key({"a"}, "k"), 3283},
        {Table("t").Long("a").Index("i", {"a"}).Index("I", {"a"}), 3375},
        {Table("t").Long("a").Index("i", {"b"}), 3409},
        {Table("t").Long("a").Index("i", {"a", "a"}), 3409},
        {Table("t").Long("a").Index("i", {}), 3409},
        {Table("t").Column("a", Ole).Index("i", {"a"}), 3409},
        {Table("t").Long("a").Index("i", std::vector<std::string>(11, "a")), 3277},
        {tooManyIndexes, 3626},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ErrorOf([&] { builder_.Add(c.table); }), c.error) << c.table.name;
    }
    // Names that differ in what the sort order does not see are one name.
    EXPECT_EQ(ErrorOf([&] { builder_.Add(named("있음 ")); }), 3010);
    EXPECT_EQ(builder_.Database().Catalog().Objects().size(), 9U);
    const std::string path = builder_.Finish();
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

TEST_F(Tables, KoreanNamesNeedAKoreanSortOrder) {
    jet::CreateOptions general;
    general.sortOrder = jet::kSortGeneral;
    DatabaseBuilder builder(folder_.File("general.mdb"), general);
    EXPECT_EQ(ErrorOf([&] { builder.Add(Table("고객").Long("a")); }), errors::kUnknownSortWeight);
    // Column and index names stand in no index.
    builder.Add(
        Table("t").Long("번호").Text("이름").Index("이름별", {"번호"}).Index("b", {"번호"}).Key({"번호"}));
    builder.Rows("t", {{Int(1), "홍길동"s}});
    const std::string path = builder.Finish();
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
}

}  // namespace
}  // namespace tavrel::testing
