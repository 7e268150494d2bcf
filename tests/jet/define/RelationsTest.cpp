// Relations of every kind, on both sides of the definition and in the engine's tables.
#include <algorithm>

#include <gtest/gtest.h>

#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using namespace std::string_literals;
using jet::Null;

jet::RelationInfo Relation(const std::string& name, const std::string& child,
                           const std::vector<std::string>& columns, const std::string& parent,
                           const std::vector<std::string>& referenced) {
    jet::RelationInfo relation;
    relation.name = name;
    relation.table = child;
    relation.columns = columns;
    relation.referencedTable = parent;
    relation.referencedColumns = referenced;
    return relation;
}

class Relations : public ::testing::Test {
  protected:
    Relations() {
        builder_.Add(Table("고객").Long("번호").Text("코드", 10).Key({"번호"}).Unique("코드", {"코드"}));
        builder_.Add(Table("주문")
                         .Long("번호")
                         .Long("고객번호")
                         .Text("코드", 20)
                         .Key({"번호"})
                         .Index("고객", {"고객번호"}));
        builder_.Add(Table("품목")
                         .Long("주문")
                         .Long("줄")
                         .Column("짧은", jet::ColumnType::Integer)
                         .Key({"주문", "줄"}));
        builder_.Add(Table("품목 메모").Long("줄").Long("주문").Memo("글").Index("줄 주문", {"줄", "주문"}));
    }
    [[nodiscard]] const jet::TableDefinition& Definition(const std::string& table) {
        auto& catalog = builder_.Database().Catalog();
        return catalog.Definition(catalog.FindTable(table)->DefinitionPage());
    }
    [[nodiscard]] const jet::LogicalIndex& Index(const std::string& table, const std::string& name) {
        const auto& indexes = Definition(table).logicalIndexes;
        return *std::ranges::find(indexes, name, &jet::LogicalIndex::name);
    }
    void ExpectSound() {
        const std::string path = builder_.Finish();
        TAVREL_NEEDS_JET_TOOLS();
        EXPECT_EQ(StrictFindings(path), "");
    }
    TemporaryFolder folder_;
    DatabaseBuilder builder_{folder_.File("a.mdb")};
};

TEST_F(Relations, EveryKindIsSoundAndComesBack) {
    builder_.Rows("고객", {{Int(1), "A"s}, {Int(2), "B"s}});
    builder_.Rows("주문", {{Int(10), Int(1), "b"s}, {Int(11), Int(1), Null{}}, {Int(12), Null{}, "A"s}});

    std::vector<jet::RelationInfo> all;
    all.push_back(Relation("가 공유", "주문", {"고객번호"}, "고객", {"번호"}));
    all.back().updateCascade = true;
    all.push_back(Relation("나 새 인덱스", "주문", {"코드"}, "고객", {"코드"}));
    all.back().deleteCascade = true;
    all.push_back(Relation("다 두 열", "품목 메모", {"줄", "주문"}, "품목", {"줄", "주문"}));
    all.back().updateCascade = all.back().deleteCascade = true;
    all.push_back(Relation("라 일대일", "주문", {"번호"}, "고객", {"번호"}));
    all.back().enforced = false;
    all.back().oneToOne = true;
    all.push_back(Relation("마 자기 자신", "주문", {"고객번호"}, "주문", {"번호"}));
    all.back().enforced = false;
    for (const jet::RelationInfo& relation : all) {
        builder_.Relate(relation);
    }
    // The first shares the child's index and the parent's key; the second needed an index of its own.
    EXPECT_EQ(Index("주문", "가 공유").real, Index("주문", "고객").real);
    EXPECT_EQ(Index("고객", ".rC").real, Index("고객", "PrimaryKey").real);
    EXPECT_EQ(Definition("주문").realIndexes.size(), 3U);
    // The pairs follow the parent's key, so that the index over (줄, 주문) does not serve.
    EXPECT_EQ(Definition("품목 메모").realIndexes.size(), 2U);

    const std::string path = builder_.Finish();
    const std::vector<jet::RelationInfo> seen = jet::Database::Open(path)->Relations();
    ASSERT_EQ(seen.size(), all.size());
    TAVREL_NEEDS_JET_TOOLS();
    EXPECT_EQ(StrictFindings(path), "");
    const nlohmann::json dump = DumpOf(path)["relations"];
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(seen[i].oneToOne, all[i].oneToOne);
        EXPECT_EQ(dump[i], (nlohmann::json{{"name", all[i].name},
                                           {"table", all[i].table},
                                           {"referenced_table", all[i].referencedTable},
                                           {"columns", all[i].columns},
                                           {"referenced_columns", all[i].referencedColumns},
                                           {"update_cascade", all[i].updateCascade},
                                           {"delete_cascade", all[i].deleteCascade},
                                           {"enforced", all[i].enforced}}));
    }
}

TEST_F(Relations, OneToOneAndSelfRelationsEnforced) {
    builder_.Add(Table("고객 상세").Long("번호").Key({"번호"}));
    auto detail = Relation("상세", "고객 상세", {"번호"}, "고객", {});  // nothing = the primary key
    detail.oneToOne = true;
    builder_.Relate(detail);
    EXPECT_NE(Index("고객 상세", "상세").real,
              Index("고객 상세", "PrimaryKey").real);  // a key is never shared
    EXPECT_TRUE(Definition("고객 상세").realIndexes[1].Unique());
    builder_.Relate(Relation("상위", "주문", {"고객번호"}, "주문", {"번호"}));
    EXPECT_EQ(Index("주문", ".rD").partner, Index("주문", "상위").number);
    // Rows of either table are held to both.
    builder_.Rows("주문", {{Int(1), Int(2), Null{}}, {Int(2), Null{}, Null{}}});
    EXPECT_EQ(ErrorOf([&] { builder_.Rows("주문", {{Int(3), Int(9), Null{}}}); }), errors::kNoParentRecord);
    EXPECT_EQ(ErrorOf([&] { builder_.Rows("고객 상세", {{Int(3)}}); }), errors::kNoParentRecord);
    EXPECT_EQ(ReadRows(builder_.Database(), "주문").size(), 2U);
    ExpectSound();
}

TEST_F(Relations, AParentTakesRelationsUntilItsIndexesAreUsedUp) {
    for (int i = 0; i < 30; ++i) {
        builder_.Relate(Relation("r" + std::to_string(i), i % 2 == 0 ? "주문" : "품목",
                                 {i % 2 == 0 ? "번호" : "줄"}, "고객", {"번호"}));
    }
    EXPECT_EQ(ErrorOf([&] { builder_.Relate(Relation("zu viel", "주문", {"번호"}, "고객", {"번호"})); }),
              3626);
    ExpectSound();
}

TEST_F(Relations, RefusalsChangeNothing) {
    builder_.Rows("고객", {{Int(1), "A"s}});
    builder_.Rows("주문", {{Int(10), Int(1), "A"s}, {Int(11), Int(7), "A"s}});
    builder_.Relate(Relation("있음", "주문", {"코드"}, "고객", {"코드"}));
    auto looseTwin = Relation("있음", "품목", {"줄"}, "고객", {"번호"});
    looseTwin.enforced = false;
    auto oneToOne = Relation("r", "주문", {"코드"}, "고객", {"코드"});
    oneToOne.oneToOne = true;
    const struct {
        jet::RelationInfo relation;
        int error;
    } cases[] = {
        {Relation("r.s", "주문", {"번호"}, "고객", {"번호"}), 3125},
        {Relation("漢", "주문", {"번호"}, "고객", {"번호"}), 3990},
        {Relation("r", "없음", {"번호"}, "고객", {"번호"}), 3371},
        {Relation("r", "주문", {"번호"}, "없음", {"번호"}), 3371},
        {Relation("r", "주문", {"없음"}, "고객", {"번호"}), 3409},
        {Relation("r", "주문", {"번호"}, "고객", {"없음"}), 3409},
        {Relation("r", "주문", {"번호"}, "품목 메모", {}), 3373},
        {Relation("r", "주문", {"번호", "코드"}, "고객", {"번호"}), 3368},
        {Relation("r", "품목", {"짧은"}, "고객", {"번호"}), 3368},
        {Relation("r", "주문", {"번호"}, "주문", {"번호"}), 3206},
        {Relation("r", "주문", {"번호"}, "품목", {"줄"}), 3609},
        {Relation("있음", "품목", {"줄"}, "고객", {"번호"}), 3378},
        {looseTwin, 3378},
        {Relation("고객", "주문", {"번호"}, "고객", {"번호"}), 3375},
        {Relation("r", "주문", {"고객번호"}, "고객", {"번호"}), 3379},
        {oneToOne, 3022},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ErrorOf([&] { builder_.Relate(c.relation); }), c.error) << c.relation.name << c.error;
    }
    EXPECT_EQ(builder_.Database().Relations().size(), 1U);
    ExpectSound();
}

}  // namespace
}  // namespace tavrel::testing
