// How much is read: indexes are used, joins are no nested scans, probes read nothing.
#include <gmock/gmock.h>

#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

struct Plans : ::testing::Test {
    static constexpr int kRows = 2000;

    Plans() {
        database.Run("CREATE TABLE big (id LONG, grp LONG, name VARCHAR(20), when_ DATE)");
        database.Run("CREATE TABLE small (id LONG, title VARCHAR(10))");
        for (int i = 0; i < kRows; ++i) {
            database.Table("big").rows.push_back(MemoryTable::Row{
                std::int64_t{i}, std::int64_t{i % 50}, "name" + std::to_string(i), jet::Date{40000.0 + i}});
        }
        for (int i = 0; i < 40; ++i) {
            database.Table("small").rows.push_back(
                MemoryTable::Row{std::int64_t{i}, "t" + std::to_string(i)});
        }
        database.Run("CREATE UNIQUE INDEX id ON big (id)");
        database.Run("CREATE INDEX both ON big (grp, id)");
        database.Run("CREATE INDEX name ON big (name)");
        database.ForgetCounts();
    }
    /// Runs a query; returns how many rows of the big table it read.
    std::size_t Reads(const std::string& statement, const std::string& expected) {
        database.ForgetCounts();
        EXPECT_EQ(database.Run(statement), expected) << statement;
        return database.Table("big").rowsRead;
    }

    MemoryDatabase database;
};

TEST_F(Plans, LookUpIndexes) {
    EXPECT_EQ(Reads("SELECT name FROM big WHERE id = 77", "name77"), 1U);
    EXPECT_EQ(Reads("SELECT name FROM big WHERE 77 = id AND grp < 100", "name77"), 1U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE name = 'NAME9'", "9"), 1U);
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM big WHERE grp = 3", "40"), 40U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE grp = 3 AND id BETWEEN 100 AND 200 ORDER BY id", "103;153"),
              2U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE grp = 3 AND id > 1903 ORDER BY id", "1953"), 1U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE id IN (5, 7, 5, 9.5, 70000) ORDER BY id", "5;7"), 2U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE id >= 1997.5", "1998;1999"), 2U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE id = 5.5", ""), 0U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE id = 1E10", ""), 0U);
    EXPECT_EQ(Reads("SELECT id FROM big WHERE id = NULL", ""), 0U);
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM big WHERE name IS NULL", "0"), 0U);
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM big WHERE when_ = #2009-07-06#", "1"), std::size_t{kRows});
}

TEST_F(Plans, ScanWhereAKeyCannotBeMade) {
    database.Table("big").refusesSeeks = true;
    EXPECT_EQ(Reads("SELECT id FROM big WHERE name = 'name9'", "9"), std::size_t{kRows});
    Reads("SELECT id FROM big WHERE id IN (5, 7) ORDER BY id", "5;7");
    Reads("SELECT id FROM big WHERE id > 1997 ORDER BY id", "1998;1999");
    Reads("SELECT COUNT(*) FROM small, big WHERE small.id = big.id", "40");
}

TEST_F(Plans, ReadNothingWhereNothingIsAsked) {
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM big", "2000"), 0U);
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM big WHERE 0 = 1", "0"), 0U);
    EXPECT_EQ(Reads("SELECT * FROM big WHERE 0 = 1", ""), 0U);
    EXPECT_EQ(Reads("SELECT TOP 1 grp FROM big", "0"), 1U);
    EXPECT_EQ(Reads("SELECT id FROM small WHERE id = 1 AND EXISTS (SELECT * FROM big)", "1"), 1U);
}

TEST_F(Plans, JoinWithoutNestedScans) {
    database.workspace.maxRowVisits = 20000;
    EXPECT_LE(Reads("SELECT COUNT(*) FROM big AS a, big AS b WHERE a.when_ = b.when_", "2000"), 4000U);
    EXPECT_LE(
        Reads("SELECT COUNT(*) FROM big AS a LEFT JOIN big b ON a.when_ = b.when_ WHERE b.id IS NULL", "0"),
        4000U);
    EXPECT_LE(Reads("SELECT COUNT(*) FROM small RIGHT JOIN big ON small.id = big.grp", "2000"), 2000U);
    EXPECT_LE(Reads("SELECT COUNT(*) FROM small s INNER JOIN big b ON s.title = 't' & b.id", "40"), 2000U);
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM small, big WHERE small.id = big.id AND small.id < 3", "3"), 3U);
    EXPECT_EQ(Reads("SELECT COUNT(*) FROM small LEFT JOIN big ON small.id = big.id AND big.grp > 10", "40"),
              40U);
}

TEST_F(Plans, KeepTheTopOfManyRowsAndItsEquals) {
    Reads("SELECT TOP 3 big.id, small.id FROM big, small ORDER BY big.id DESC, small.id",
          "1999|0;1999|1;1999|2");
    Reads(
        "SELECT COUNT(*), MIN(g) FROM (SELECT TOP 1 big.grp AS g FROM big, small ORDER BY big.grp DESC) AS x",
        "1600|49");
    Reads(
        "SELECT COUNT(*), MIN(g) FROM (SELECT TOP 10 PERCENT big.grp AS g FROM big, small ORDER BY grp DESC) "
        "AS x",
        "8000|45");
}

TEST_F(Plans, StopAtTheLimitOfVisits) {
    database.workspace.maxRowVisits = 100000;
    EXPECT_EQ(database.Failure("SELECT COUNT(*) FROM big a, big b, big c, big d"), 3035);
    EXPECT_EQ(database.Failure("SELECT COUNT(*) FROM big a, big b WHERE a.grp < b.id"), 3035);
}

}  // namespace
}  // namespace tavrel::test
