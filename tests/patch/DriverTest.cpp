// The version gate, and what is left after a failure.
#include <gmock/gmock.h>

#include "PatchBench.h"

namespace tavrel::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr const char* kDriverMessage =
    "Error -?[0-9]+ \\(.*\\) in procedure ChkDBpatch of Module modMain_dbPatch";

struct VersionCase {
    const char* what;
    const char* statement;  ///< sets the version
    int runsFrom;           ///< the version as which it counts
};

constexpr const char* kTextVersion = "ALTER TABLE dbversion ADD COLUMN t VARCHAR(20)";

// Product C from whatever stands in the version's row; step 14 is the only one that is counted.
TEST(Driver, ReadsTheVersionAsANumber) {
    for (const VersionCase& c : {VersionCase{"no row", "DELETE FROM dbversion", 0},
                                 VersionCase{"another row", "UPDATE dbversion SET dbid = 'other'", 0},
                                 VersionCase{"Null", "UPDATE dbversion SET ver = NULL", 0},
                                 VersionCase{"text", "UPDATE dbversion SET ver = 'abc'", 0},
                                 VersionCase{"empty", "UPDATE dbversion SET ver = ''", 0},
                                 VersionCase{"number in front", "UPDATE dbversion SET ver = ' 13.2b7'", 13},
                                 VersionCase{"half to even", "UPDATE dbversion SET ver = '12.5'", 12},
                                 VersionCase{"half to even", "UPDATE dbversion SET ver = '13.5'", 14},
                                 VersionCase{"exponent", "UPDATE dbversion SET ver = '1.2E1'", 12},
                                 VersionCase{"negative", "UPDATE dbversion SET ver = '-3'", 0}}) {
        SCOPED_TRACE(c.what + std::string(" ") + c.statement);
        PatchBench bench(kNorb, c.runsFrom);
        PatchBench::Run("DROP TABLE dbversion");
        PatchBench::Run("CREATE TABLE dbversion (dbid VARCHAR(10), ver VARCHAR(20))");
        PatchBench::Run("INSERT INTO dbversion (dbid) VALUES ('main')");
        PatchBench::Run(c.statement);
        EXPECT_TRUE(bench.Patch());
        EXPECT_THAT(bench.messages, IsEmpty());
        const std::string stored = PatchBench::Value("SELECT ver FROM dbversion WHERE dbid = 'main'");
        if (c.runsFrom == 14) {
            EXPECT_EQ(bench.sent.size(), 1U);
        } else {
            EXPECT_EQ(bench.sent.back().sql, "UPDATE dbversion SET ver = 14 WHERE dbid = 'main'");
            EXPECT_EQ(stored, stored.empty() ? "" : "14");
        }
    }
}

TEST(Driver, ReportsAVersionThatDoesNotFit) {
    PatchBench bench(kBrelt, 140);
    for (const char* version : {"32768", "-32769", "2147483647"}) {
        bench.Store(version);
        EXPECT_FALSE(bench.Patch());
        ASSERT_EQ(bench.messages.size(), 1U);
        EXPECT_TRUE(bench.messages[0].starts_with("Error 6 (")) << bench.messages[0];
        EXPECT_THAT(bench.messages[0], MatchesRegex(kDriverMessage));
        EXPECT_EQ(bench.sent.size(), 1U);
        EXPECT_EQ(PatchBench::Value("SELECT ver FROM dbversion"), version);
    }
    bench.Store("32767");
    EXPECT_TRUE(bench.Patch());
    EXPECT_EQ(PatchBench::Value("SELECT ver FROM dbversion"), std::to_string(kBrelt.target));
}

TEST(Driver, ReportsADatabaseWithoutVersionTable) {
    for (const ProductUnderTest& product : {kBrelt, kKilm, kKilmPro, kNorb}) {
        PatchBench bench(product, 1);
        PatchBench::Run("DROP TABLE dbversion");
        EXPECT_FALSE(bench.Patch());
        EXPECT_THAT(bench.messages, ElementsAre(MatchesRegex(kDriverMessage)));
    }
}

struct FailureCase {
    const ProductUnderTest& product;
    int version;
    const char* obstacle;  ///< what makes a step fail
    const char* message;
    const char* kept;  ///< a query that succeeds because an earlier step has run
};

// The list ends at the item that fails; what ran before stays, and the version too.
TEST(Driver, StopsAtTheFirstFailure) {
    constexpr const char* kListMessage =
        "Error -?[0-9]+ \\(.*\\) in procedure ChkDBpatch_SUB of Module FrmDBUpdate";
    for (const FailureCase& c : {FailureCase{kBrelt, 5, "CREATE TABLE saletype (code LONG)", kListMessage,
                                             "SELECT qcode FROM product_m"},
                                 FailureCase{kBrelt, 111, "ALTER TABLE vanindata ADD COLUMN vat DOUBLE",
                                             kListMessage, "SELECT data_updater FROM workshift"},
                                 FailureCase{kBrelt, 85, "CREATE TABLE office_store (x LONG)", kListMessage,
                                             "SELECT h_num FROM holiday1_d"},
                                 FailureCase{kBrelt, 128, "DROP TABLE invn_edit", kListMessage,
                                             "SELECT price_back_novat FROM invn_move"},
                                 FailureCase{kKilm, 66, "ALTER TABLE product_m ADD stockuseup INTEGER",
                                             kDriverMessage, "SELECT ver FROM dbversion"},
                                 FailureCase{kKilmPro, 7, "ALTER TABLE ordbook_d DROP COLUMN workordno",
                                             kDriverMessage, "SELECT ver FROM dbversion"},
                                 FailureCase{kNorb, 1, "ALTER TABLE office ADD COLUMN email TEXT(50)",
                                             kDriverMessage, "SELECT etax FROM taxlist_m"}}) {
        SCOPED_TRACE(c.obstacle);
        PatchBench bench(c.product, c.version);
        PatchBench::Run(c.obstacle);
        EXPECT_FALSE(bench.Patch());
        EXPECT_THAT(bench.messages, ElementsAre(MatchesRegex(c.message)));
        EXPECT_EQ(PatchBench::Value("SELECT ver FROM dbversion"), std::to_string(c.version));
        EXPECT_NO_THROW(PatchBench::Value(c.kept));
        EXPECT_EQ(bench.Findings(), "");
    }
}

// Columns and tables of other steps are found where B and B-Pro differ from A.
TEST(Driver, SpeaksOfEachProduct) {
    PatchBench pro(kKilmPro, 1);
    EXPECT_TRUE(pro.Patch());
    EXPECT_EQ(PatchBench::Value("SELECT COUNT(*) FROM officegroup"), "1");
    EXPECT_EQ(PatchBench::Value("SELECT name FROM officegroup WHERE code = 1"), "미지정");
    PatchBench a(kBrelt, 1);
    EXPECT_TRUE(a.Patch());
    EXPECT_EQ(PatchBench::Value("SELECT bigo FROM qlty WHERE code = 1 AND name = ''"), "시스템 기본자료");
    EXPECT_EQ(PatchBench::Value("SELECT name FROM saletype WHERE code = 5"), "자가소비");
    EXPECT_EQ(PatchBench::Value("SELECT COUNT(*) FROM holiday1_m"), "11");
    EXPECT_EQ(PatchBench::Value("SELECT COUNT(*) FROM holiday1_m WHERE yn_moon = 1 AND h_num > 8"), "3");
    // The relation cascades: a group takes its customers along.
    PatchBench::Run("INSERT INTO customer (code, gcode) VALUES ('C00001', 1)");
    PatchBench::Run("DELETE FROM custgroup WHERE code = 1");
    EXPECT_EQ(PatchBench::Value("SELECT COUNT(*) FROM customer"), "0");
}

}  // namespace
}  // namespace tavrel::testing
