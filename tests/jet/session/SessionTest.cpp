// Statements over a file: each leaves a sound database, and what it says can be read back.
#include <gtest/gtest.h>

#include "jet/session/SessionBench.h"

namespace tavrel::testing {
namespace {

struct Step {
    const char* statement;
    const char* result;
};

/// The life of two tables, a statement at a time; the checkers look at the file after each.
constexpr Step kLife[] = {
    {"CREATE TABLE 고객 (번호 COUNTER CONSTRAINT pk PRIMARY KEY, 이름 TEXT(50) NOT NULL, 메모 MEMO, 금액 "
     "CURRENCY "
     "DEFAULT 0, 등록 DATETIME, 사용 YESNO)",
     "0"},
    {"INSERT INTO 고객 (이름, 메모) VALUES ('홍길동', 'first')", "1"},
    {"INSERT INTO 고객 (이름, 금액, 사용) VALUES ('임꺽정', 1234.5, TRUE)", "1"},
    {"SELECT 번호, 이름, 메모, 금액, 사용 FROM 고객 ORDER BY 번호",
     "1|홍길동|first|0|0;2|임꺽정|~|1234.5|-1"},
    {"UPDATE 고객 SET 메모 = '고침', 금액 = 금액 + 1 WHERE 이름 = '홍길동'", "1"},
    {"SELECT 메모, 금액 FROM 고객 WHERE 번호 = 1", "고침|1"},
    {"CREATE INDEX 이름순 ON 고객 (이름)", "0"},
    {"SELECT 번호 FROM 고객 WHERE 이름 = '임꺽정'", "2"},
    {"ALTER TABLE 고객 ADD COLUMN 나이 LONG DEFAULT 7", "0"},
    {"SELECT 나이 FROM 고객", "~;~"},
    {"INSERT INTO 고객 (이름) VALUES ('세번째')", "1"},
    {"SELECT 나이 FROM 고객 WHERE 번호 = 3", "7"},
    {"ALTER TABLE 고객 ALTER COLUMN 나이 TEXT(10)", "0"},
    {"SELECT 나이 FROM 고객 WHERE 번호 = 3", "7"},
    {"ALTER TABLE 고객 ALTER COLUMN 이름 TEXT(80)", "0"},
    {"CREATE TABLE 주문 (주문번호 LONG, 고객번호 LONG, 품목 TEXT(20))", "0"},
    {"ALTER TABLE 주문 ADD CONSTRAINT 주문키 PRIMARY KEY (주문번호)", "0"},
    {"ALTER TABLE 주문 ADD CONSTRAINT 주문고객 FOREIGN KEY (고객번호) REFERENCES 고객 (번호) ON DELETE "
     "CASCADE",
     "0"},
    {"INSERT INTO 주문 VALUES (1, 2, 'a')", "1"},
    {"INSERT INTO 주문 VALUES (2, 3, 'b')", "1"},
    {"DELETE FROM 고객 WHERE 번호 = 2", "1"},
    {"SELECT 주문번호 FROM 주문", "2"},
    {"BEGIN TRANSACTION", "0"},
    {"DROP INDEX 이름순 ON 고객", "0"},
    {"UPDATE 고객 SET 이름 = 'x'", "2"},
    {"ROLLBACK", "0"},
    {"SELECT 번호 FROM 고객 WHERE 이름 = '세번째'", "3"},
    {"BEGIN TRANSACTION", "0"},
    {"DROP INDEX 이름순 ON 고객", "0"},
    {"UPDATE 고객 SET 이름 = 'x'", "2"},
    {"COMMIT", "0"},
    {"SELECT 번호 FROM 고객 WHERE 이름 = 'x' ORDER BY 번호", "1;3"},
    {"ALTER TABLE 주문 DROP CONSTRAINT 주문고객", "0"},
    {"ALTER TABLE 고객 DROP COLUMN 메모", "0"},
    {"DROP TABLE 고객", "0"},
    {"DROP TABLE 주문", "0"},
};

TEST(Session, EveryStatementLeavesASoundFile) {
    SessionBench bench;
    bool inTransaction = false;
    for (const Step& step : kLife) {
        SCOPED_TRACE(step.statement);
        const std::string_view statement = step.statement;
        inTransaction = (inTransaction && statement != "COMMIT" && statement != "ROLLBACK") ||
                        statement.starts_with("BEGIN");
        ASSERT_EQ(bench.Run(statement), step.result);
        const bool defines = statement.starts_with("ALTER") || statement.find(" INDEX ") != statement.npos;
        ASSERT_EQ(defines && !inTransaction ? bench.AllFindings() : bench.Findings(), "");
    }
    bench.Reopen();
    EXPECT_EQ(bench.AllFindings(), "");
}

TEST(Session, TransactionsNest) {
    SessionBench bench;
    bench.Run("CREATE TABLE t (a LONG)");
    const auto rows = [&] { return bench.Run("SELECT a FROM t ORDER BY a"); };
    bench.Run("BEGIN TRANSACTION");
    bench.Run("INSERT INTO t VALUES (1)");
    bench.Run("BEGIN TRANSACTION");
    bench.Run("INSERT INTO t VALUES (2)");
    bench.Run("CREATE TABLE u (a LONG)");
    bench.Run("BEGIN TRANSACTION");
    bench.Run("DELETE FROM t");
    bench.Run("ROLLBACK");
    EXPECT_EQ(rows(), "1;2");
    bench.Run("COMMIT");
    bench.Run("BEGIN TRANSACTION");
    bench.Run("UPDATE t SET a = a + 10");
    bench.Run("COMMIT TRANSACTION");
    EXPECT_EQ(rows(), "11;12");
    EXPECT_EQ(ReadRows(*jet::Database::Open(bench.Path()), "t").size(), 0U);
    bench.Run("COMMIT");
    EXPECT_EQ(ReadRows(*jet::Database::Open(bench.Path()), "t").size(), 2U);
    EXPECT_EQ(bench.Failure("COMMIT"), errors::kNoTransaction);
    EXPECT_EQ(bench.Failure("ROLLBACK"), errors::kNoTransaction);

    for (int depth = 0; depth < 5; ++depth) {
        bench.Run("BEGIN TRANSACTION");
        bench.Run("INSERT INTO t VALUES (" + std::to_string(depth) + ")");
    }
    EXPECT_EQ(bench.Failure("BEGIN TRANSACTION"), errors::kTooManyTransactions);
    bench.Reopen();  // a session that ends takes back what was not committed
    EXPECT_EQ(rows(), "11;12");
    EXPECT_EQ(bench.AllFindings(), "");
}

TEST(Session, TextOfFixedLengthIsFilledUpWithBlanks) {
    SessionBench bench;
    bench.Run("CREATE TABLE t (a CHAR(5), b LONG, c VARCHAR(5), d NATIONAL CHARACTER VARYING(7))");
    bench.Run("CREATE INDEX i ON t (a)");
    bench.Run("INSERT INTO t VALUES ('ab', 1, 'ab', 'x')");
    bench.Run("INSERT INTO t (b) VALUES (2)");
    EXPECT_EQ(bench.Failure("INSERT INTO t (a) VALUES ('abcdef')"), errors::kFieldTooSmall);
    EXPECT_EQ(bench.Run("SELECT a, LEN(a), LEN(c) FROM t WHERE a = 'AB'"), "ab   |5|2");
    bench.Run("ALTER TABLE t ALTER COLUMN a VARCHAR(3)");
    bench.Run("ALTER TABLE t ALTER COLUMN c CHAR(9)");
    EXPECT_EQ(bench.Run("SELECT a, LEN(c), b FROM t"), "ab |9|1;~|~|2");
    EXPECT_EQ(bench.AllFindings(), "");
    std::string columns = "a CHAR(255)";
    for (int i = 0; i < 8; ++i) {
        columns += ", c" + std::to_string(i) + " CHAR(255)";
    }
    EXPECT_EQ(bench.Failure("CREATE TABLE wide (" + columns + ")"), errors::kRecordTooLarge);
}

TEST(Session, ReadersOfTheSameProcessSeeWhatWasCommitted) {
    SessionBench bench;
    bench.Run("CREATE TABLE t (a LONG CONSTRAINT pk PRIMARY KEY, b MEMO)");
    bench.Run("INSERT INTO t VALUES (1, 'before')");
    EXPECT_EQ(ErrorOf([&] { jet::EditSession::Open(bench.Path()); }), errors::kFileInUse);

    const auto reader = jet::Database::Open(bench.Path());
    bench.Run("BEGIN TRANSACTION");
    bench.Run("UPDATE t SET b = 'after'");
    bench.Run("CREATE TABLE u (a LONG)");
    EXPECT_EQ(ReadRows(*jet::Database::Open(bench.Path()), "t")[0][1], jet::Value("before"));
    bench.Run("COMMIT");
    for (int i = 2; i < 400; ++i) {
        bench.Run("INSERT INTO t VALUES (" + std::to_string(i) + ", 'more')");
    }
    bench.Run("DROP TABLE u");

    // Each reader has the database as it was when it was opened, wherever else it is looked for.
    EXPECT_EQ(ReadRows(*reader, "t").size(), 1U);
    EXPECT_EQ(reader->Catalog().FindTable("u"), nullptr);
    EXPECT_EQ(SessionBench::FindingsOf(*reader), "");
    const std::string folder = std::filesystem::path(bench.Path()).parent_path().string();
    const auto late = jet::Database::Open(folder + "/./session.mdb");
    EXPECT_EQ(ReadRows(*late, "t").size(), 399U);
    EXPECT_EQ(SessionBench::FindingsOf(*late), "");

    // A reader outlives the session.
    bench.Close();
    EXPECT_EQ(ReadRows(*jet::Database::Open(bench.Path()), "t").size(), 399U);
    EXPECT_EQ(ReadRows(*reader, "t").size(), 1U);
}

}  // namespace
}  // namespace tavrel::testing
