// Statements that fail: the number that says why, and a file that is what it was.
#include <gtest/gtest.h>

#include "db/AdoCodes.h"
#include "jet/session/SessionBench.h"

namespace tavrel::testing {
namespace {

constexpr const char* kStatementsBefore[] = {
    "CREATE TABLE p (id LONG CONSTRAINT pk PRIMARY KEY, code TEXT(4), twice LONG, s SHORT)",
    "CREATE TABLE c (id COUNTER, pid LONG, n TEXT(10) NOT NULL, sid SHORT, m MEMO)",
    "CREATE TABLE nokey (a LONG)",
    "CREATE UNIQUE INDEX uc ON p (code)",
    "CREATE INDEX ic ON c (n)",
    "ALTER TABLE c ADD CONSTRAINT r FOREIGN KEY (pid) REFERENCES p (id)",
    "INSERT INTO p VALUES (1, 'a', 5, 1)",
    "INSERT INTO p VALUES (2, 'b', 5, NULL)",
    "INSERT INTO c (pid, n, sid) VALUES (1, 'x', 9)",
};

struct Refusal {
    std::int32_t number;
    const char* statement;
};
constexpr Refusal kRefusals[] = {
    {3010, "CREATE TABLE P (a LONG)"},
    {3191, "CREATE TABLE t (a LONG, A TEXT(3))"},
    {3090, "CREATE TABLE t (a COUNTER, b COUNTER)"},
    {3283, "CREATE TABLE t (a LONG PRIMARY KEY, b LONG, PRIMARY KEY (b))"},
    {3409, "CREATE TABLE t (a LONG, PRIMARY KEY (b))"},
    {3371, "CREATE TABLE t (a LONG, CONSTRAINT x FOREIGN KEY (a) REFERENCES nowhere (a))"},
    {3382, "CREATE TABLE t (a TEXT(300))"},
    {3388, "CREATE TABLE t (a LONG DEFAULT nofunction())"},
    {3371, "ALTER TABLE nowhere ADD COLUMN a LONG"},
    {3380, "ALTER TABLE p ADD COLUMN CODE LONG"},
    {3090, "ALTER TABLE c ADD COLUMN other COUNTER"},
    {3371, "ALTER TABLE nowhere ALTER COLUMN a LONG"},
    {3381, "ALTER TABLE p ALTER COLUMN nothing LONG"},
    {3720, "ALTER TABLE p ALTER COLUMN id DOUBLE"},
    {3720, "ALTER TABLE c ALTER COLUMN pid TEXT(5)"},
    {3283, "ALTER TABLE p ALTER COLUMN code LONG PRIMARY KEY"},
    {3282, "ALTER TABLE p ALTER COLUMN twice COUNTER"},
    {3381, "ALTER TABLE p DROP COLUMN nothing"},
    {3280, "ALTER TABLE p DROP COLUMN code"},
    {3303, "ALTER TABLE c DROP COLUMN pid"},
    {3303, "ALTER TABLE p DROP COLUMN id"},
    {3371, "CREATE INDEX i ON nowhere (a)"},
    {3409, "CREATE INDEX i ON p (nothing)"},
    {3375, "CREATE INDEX UC ON p (twice)"},
    {3022, "CREATE UNIQUE INDEX i ON p (twice)"},
    {3283, "CREATE INDEX i ON p (code) WITH PRIMARY"},
    {3058, "CREATE INDEX i ON p (s) WITH DISALLOW NULL"},
    {3371, "DROP INDEX nothing ON p"},
    {3281, "DROP INDEX pk ON p"},
    {3281, "ALTER TABLE p DROP CONSTRAINT pk"},
    {3371, "ALTER TABLE p DROP CONSTRAINT nothing"},
    {3376, "DROP TABLE nowhere"},
    {3281, "DROP TABLE p"},
    {3368, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (sid) REFERENCES p (id)"},
    {3368, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (pid, n) REFERENCES p (id)"},
    {3609, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (pid) REFERENCES p (twice)"},
    {3373, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (pid) REFERENCES nokey"},
    {3378, "ALTER TABLE c ADD CONSTRAINT r FOREIGN KEY (pid) REFERENCES p (id)"},
    {3379, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (n) REFERENCES p (code)"},
    {3206, "ALTER TABLE p ADD CONSTRAINT x FOREIGN KEY (id) REFERENCES p (id)"},
    {3289, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (pid) REFERENCES p (id) ON UPDATE SET NULL"},
    {3314, "INSERT INTO c (pid) VALUES (1)"},
    {3163, "INSERT INTO c (n) VALUES ('far too long for it')"},
    {3201, "INSERT INTO c (pid, n) VALUES (77, 'y')"},
    {3022, "INSERT INTO p (id) VALUES (1)"},
    {3058, "INSERT INTO p (code) VALUES ('z')"},
    {3192, "INSERT INTO nowhere VALUES (1)"},
    {3200, "DELETE FROM p"},
    {3200, "UPDATE p SET id = id + 10"},
    {3022, "UPDATE p SET code = 'same'"},
    {3201, "UPDATE c SET pid = 3"},
    {3113, "UPDATE c SET id = 9"},
    {3464, "UPDATE p SET twice = 'abc'"},
    {3027, "DELETE FROM MSysObjects"},
    {3027, "UPDATE MSysACEs SET ACM = 0"},
    {3371, "ALTER TABLE MSysObjects ADD COLUMN x LONG"},
    {3371, "ALTER TABLE c ADD CONSTRAINT x FOREIGN KEY (pid) REFERENCES MSysObjects (Id)"},
    {3376, "DROP TABLE MSysACEs"},
};

TEST(Refusals, HaveTheirNumberAndLeaveTheFileAsItWas) {
    SessionBench bench;
    for (const char* statement : kStatementsBefore) {
        bench.Run(statement);
    }
    const std::string before = ReadWholeFile(bench.Path());
    for (const Refusal& refusal : kRefusals) {
        EXPECT_EQ(bench.Failure(refusal.statement), refusal.number) << refusal.statement;
        EXPECT_TRUE(ReadWholeFile(bench.Path()) == before) << refusal.statement;
    }
    EXPECT_EQ(bench.AllFindings(), "");
    // The same inside a transaction: what went before stays.
    bench.Run("BEGIN TRANSACTION");
    bench.Run("INSERT INTO nokey VALUES (1)");
    for (const Refusal& refusal : kRefusals) {
        EXPECT_EQ(bench.Failure(refusal.statement), refusal.number) << refusal.statement;
    }
    bench.Run("COMMIT");
    EXPECT_EQ(bench.Run("SELECT a FROM nokey"), "1");
    EXPECT_EQ(bench.AllFindings(), "");
}

TEST(Refusals, ColumnsOfLooseRelationsStay) {
    TemporaryFolder folder;
    DatabaseBuilder builder(folder.File("loose.mdb"));
    builder.Add(Table("p").Long("id").Long("x"));
    builder.Add(Table("c").Long("pid").Long("x"));
    builder.Relate({.name = "loose",
                    .table = "c",
                    .referencedTable = "p",
                    .columns = {"pid"},
                    .referencedColumns = {"id"},
                    .enforced = false});
    const std::string path = builder.Finish();
    SessionBench bench(jet::EditSession::Open(path, {}), path);
    EXPECT_EQ(bench.Failure("ALTER TABLE c DROP COLUMN PID"), 3303);
    EXPECT_EQ(bench.Failure("ALTER TABLE p DROP COLUMN id"), 3303);
    bench.Run("ALTER TABLE p DROP COLUMN x");
    bench.Run("ALTER TABLE c DROP CONSTRAINT loose");
    bench.Run("ALTER TABLE c DROP COLUMN pid");
    EXPECT_EQ(bench.AllFindings(), "");
}

TEST(Refusals, TablesHaveTheirLimits) {
    SessionBench bench;
    bench.Run("CREATE TABLE p (id LONG CONSTRAINT pk PRIMARY KEY)");
    bench.Run("CREATE TABLE t (a LONG, b LONG)");
    for (int i = 0; i < 31; ++i) {
        bench.Run("CREATE INDEX i" + std::to_string(i) + " ON t (a)");
    }
    bench.Run("ALTER TABLE t ADD CONSTRAINT r0 FOREIGN KEY (a) REFERENCES p (id)");
    EXPECT_EQ(bench.Failure("CREATE INDEX more ON t (b)"), errors::kTooManyIndexes);
    EXPECT_EQ(bench.Failure("ALTER TABLE t ADD CONSTRAINT r1 FOREIGN KEY (b) REFERENCES p (id)"),
              errors::kTooManyIndexes);
    bench.Run("CREATE TABLE wide (a LONG)");
    for (int i = 1; i < 255; ++i) {
        bench.Run("ALTER TABLE wide ADD COLUMN c" + std::to_string(i) + " VARCHAR(5)");
    }
    EXPECT_EQ(bench.Failure("ALTER TABLE wide ADD COLUMN c LONG"), errors::kTooManyFields);
    bench.Run("ALTER TABLE wide DROP COLUMN c7");
    EXPECT_EQ(bench.Failure("ALTER TABLE wide ADD COLUMN c LONG"),
              errors::kTooManyFields);  // numbers are used up
    EXPECT_EQ(bench.AllFindings(), "");
}

/// What callers test for.
TEST(Refusals, TheProviderHasItsOwnNumbers) {
    SessionBench bench;
    bench.Run("CREATE TABLE t (a LONG)");
    const std::pair<const char*, std::int32_t> kCases[] = {
        {"SELECT nothing FROM t", db::adoNumbers::kParameterMissing},
        {"SELECT a FROM t WHERE nothing = 1", db::adoNumbers::kParameterMissing},
        {"SELECT * FROM nowhere", db::adoNumbers::kNoTable},
        {"UPDATE nowhere SET a = 1", db::adoNumbers::kNoTable},
        {"SELECT FROM t", db::adoNumbers::kErrorsInCommand},
        {"ALTER TABLE t ADD COLUMN a LONG", db::adoNumbers::kErrorsOccurred},
        {"ALTER TABLE nowhere ADD COLUMN a LONG", db::adoNumbers::kNoTable},
        {"CREATE TABLE t (a LONG)", db::adoNumbers::kErrorsInCommand},
    };
    for (const auto& [statement, number] : kCases) {
        try {
            bench.Session().Execute(statement);  // without asking for a row
            ADD_FAILURE() << statement;
        } catch (const Error& error) {
            EXPECT_EQ(db::AdoNumber(error), number) << statement;
        }
    }
}

}  // namespace
}  // namespace tavrel::testing
