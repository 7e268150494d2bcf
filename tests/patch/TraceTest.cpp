// What the drivers send, against the independent reading of the lists, from version to version.
#include <gmock/gmock.h>

#include "ExpectedTrace.h"

namespace tavrel::testing {
namespace {

using ::testing::IsEmpty;

struct TraceCase {
    const ProductUnderTest& product;
    std::vector<int> versions;  ///< beside those around the latest
};

class Trace : public ::testing::TestWithParam<TraceCase> {};

TEST_P(Trace, IsTheOneThatTheListsDemand) {
    const ProductUnderTest& product = GetParam().product;
    std::vector<int> versions = GetParam().versions;
    for (const int beside : {-1, 0, 1}) {
        versions.push_back(product.target + beside);
    }
    for (const int version : versions) {
        SCOPED_TRACE("from version " + std::to_string(version));
        PatchBench bench(product, version);
        EXPECT_TRUE(bench.Patch());
        EXPECT_THAT(bench.messages, IsEmpty());
        EXPECT_EQ(ExpectedTrace(product.name, version).DifferenceFrom(bench.sent), "");
        EXPECT_EQ(PatchBench::Value("SELECT ver FROM dbversion"), std::to_string(product.target));
        // Once there, the version is read and nothing else.
        EXPECT_TRUE(bench.Patch());
        EXPECT_EQ(bench.sent.size(), 1U);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Products, Trace,
    ::testing::Values(TraceCase{kBrelt, {0, 1, 5, 9, 10, 12, 14, 15, 56, 86, 96, 127, 133, 135, 137}},
                      TraceCase{kKilm, {0, 1, 5, 7, 8, 9, 12, 13, 19, 52, 66, 129, 131}},
                      TraceCase{kKilmPro, {0, 1, 2, 9, 23, 50, 51, 52, 66}},
                      TraceCase{kNorb, {0, 1, 2, 8, 9, 10, 11, 12}}),
    [](const auto& info) { return info.param.product.name; });

// A table that is in the way of a procedure which reports its own error does not end the list.
TEST(Trace, GoesOnAfterAProcedureThatTraps) {
    PatchBench bench(kBrelt, 85);
    PatchBench::Run("CREATE TABLE holiday1_m (h_num LONG)");
    EXPECT_TRUE(bench.Patch());
    ASSERT_EQ(bench.messages.size(), 1U);
    EXPECT_TRUE(bench.messages[0].starts_with("Error -2147217900 (")) << bench.messages[0];
    EXPECT_TRUE(bench.messages[0].ends_with(") in procedure CreateTBL_holiday1 of Module modMain_dbPatch"));
    EXPECT_FALSE(modDBsub::DBChkExistence(modDBsub::kTableKind, "holiday1_d", ""));
    EXPECT_EQ(PatchBench::Value("SELECT ver FROM dbversion"), std::to_string(kBrelt.target));
}

TEST(Trace, LeavesARelationOutWhenOrphansStandInItsWay) {
    PatchBench bench(kBrelt, 49);
    PatchBench::Run("INSERT INTO customer (code) VALUES ('C00001')");
    PatchBench::Run("INSERT INTO ordbook_m (code, ccode) VALUES ('O1', 'C00001')");
    EXPECT_TRUE(bench.Patch());
    EXPECT_THAT(bench.messages, IsEmpty());
    EXPECT_EQ(ExpectedTrace("brelt", 49).DifferenceFrom(bench.sent), "");
    for (const SentStatement& statement : bench.sent) {
        EXPECT_EQ(statement.sql.find("ord_ucode_fk"), std::string::npos);
    }
}

// Relations and indexes report their own failures, and the list goes on.
TEST(Trace, GoesOnAfterAnIndexThatIsThere) {
    PatchBench bench(kBrelt, 76);
    PatchBench::Run("CREATE INDEX idx_pclass_fullpath ON pclass(code)");
    EXPECT_TRUE(bench.Patch());
    ASSERT_EQ(bench.messages.size(), 1U);
    EXPECT_TRUE(bench.messages[0].starts_with("오류번호 : -2147217900\r\n오류내용 : ")) << bench.messages[0];
    EXPECT_EQ(ExpectedTrace("brelt", 76).DifferenceFrom(bench.sent), "");
}

}  // namespace
}  // namespace tavrel::testing
