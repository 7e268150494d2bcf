// What definition statements ask for, and how mistakes are numbered.
#include <gmock/gmock.h>

#include "db/AdoCodes.h"
#include "jet/sql/syntax/Parser.h"
#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

using namespace jet::sql;

struct Definition {
    std::string statement, expected;
    friend void PrintTo(const Definition& it, std::ostream* out) { *out << Words(it.statement); }
};

class Definitions : public ::testing::TestWithParam<Definition> {};

TEST_P(Definitions, AskForWhatIsWritten) {
    MemoryDatabase database;
    database.Run("CREATE TABLE t (a LONG, b VARCHAR(10), PRIMARY KEY (a))");
    database.log.clear();
    database.Run(GetParam().statement);
    EXPECT_EQ(database.log, GetParam().expected) << GetParam().statement;
}

INSTANTIATE_TEST_SUITE_P(
    Tables, Definitions,
    ::testing::Values(
        Definition{
            "CREATE TABLE `invn_move`( `code` AUTOINCREMENT, `ocode_o`  SMALLINT  DEFAULT 1  NOT NULL,"
            " `pcode` VARCHAR(6) DEFAULT \"\" NOT NULL, `planmemo` TEXT DEFAULT '' NULL, PRIMARY KEY(code))",
            "table invn_move: code 4 counter, ocode_o 3 =1 NN, pcode 10(6) =\"\" NN, planmemo 12 ='' NULL,;"
            "primary (code) on invn_move;"},
        Definition{
            "CREATE TABLE [x y] (a INT IDENTITY, b COUNTER(5, 2), c NUMERIC(10,2), d DECIMAL, e BIT, f GUID)",
            "table x y: a 4 counter, b 4 counter(5,2), c 20(10,2), d 20(18,0), e 1, f 15,;"},
        Definition{
            "create table n (a national character varying(7), b double precision, c timestamp, d text(0),"
            " e varchar, f binary(20), g text(30) with compression, h memo)",
            "table n: a 10(7), b 7, c 8, d 10(255), e 10(255), f 9(20), g 10(30) compressed, h 12,;"},
        Definition{"CREATE TABLE c (a LONG CONSTRAINT pk PRIMARY KEY, b LONG UNIQUE, c LONG REFERENCES t (a),"
                   " CONSTRAINT uq UNIQUE (a, b), FOREIGN KEY NO INDEX (b) REFERENCES t ON DELETE SET NULL)",
                   "table c: a 4, b 4, c 4,;primary pk(a) on c;unique (b) on c;unique uq(a,b) on c;"
                   "relation  c(c)->t(a);relation  c(b)->t() deletenull noindex;"},
        Definition{
            "CREATE TABLE d (a DATE DEFAULT Now(), b LONG NOT NULL DEFAULT -1, c VARCHAR(5) DEFAULT "
            "\"00:00\","
            " d VARCHAR(4) DEFAULT '0000', e LONG DEFAULT NULL, f LONG DEFAULT (1 + 2), g BIT DEFAULT No)",
            "table d: a 8 =Now(), b 4 =-1 NN, c 10(5) =\"00:00\", d 10(4) ='0000', e 4 =NULL, f 4 =(1 + 2),"
            " g 1 =No,;"}));

INSTANTIATE_TEST_SUITE_P(
    Changes, Definitions,
    ::testing::Values(
        Definition{"ALTER TABLE `t`  ADD COLUMN `boxqnt` DOUBLE DEFAULT 0 NOT NULL",
                   "add t: boxqnt 7 =0 NN;"},
        Definition{"ALTER TABLE `t`  ADD COLUMN `d` DATE DEFAULT '1900-01-01 00:00:00' NOT NULL;",
                   "add t: d 8 ='1900-01-01 00:00:00' NN;"},
        Definition{"ALTER TABLE t ADD COLUMN x     BYTE   DEFAULT 1    NOT NULL", "add t: x 2 =1 NN;"},
        Definition{"ALTER TABLE `t` ADD `stockuseup` INTEGER DEFAULT 0 NOT NULL",
                   "add t: stockuseup 4 =0 NN;"},
        Definition{"ALTER TABLE t ADD c LONG CONSTRAINT u UNIQUE", "add t: c 4;unique u(c) on t;"},
        Definition{"ALTER TABLE `t`  ALTER COLUMN `b` VARCHAR(200) DEFAULT \"\" NOT NULL",
                   "alter t: b 10(200) =\"\" NN;"},
        Definition{"ALTER TABLE t ALTER b SET DEFAULT 'x'", "default t.b ='x';"},
        Definition{"ALTER TABLE t ALTER COLUMN b DROP DEFAULT", "default t.b =;"},
        Definition{
            "ALTER TABLE product_m ADD CONSTRAINT fk_pd_qlty FOREIGN KEY (qcode) REFERENCES qlty (code)"
            " ON DELETE CASCADE ON UPDATE CASCADE",
            "relation fk_pd_qlty product_m(qcode)->qlty(code) delete update;"},
        Definition{"ALTER TABLE t ADD CONSTRAINT r FOREIGN KEY (a,b) REFERENCES p ON UPDATE CASCADE ON "
                   "DELETE NO ACTION",
                   "relation r t(a,b)->p() update;"},
        Definition{"ALTER TABLE t ADD PRIMARY KEY (b)", "primary (b) on t;"},
        Definition{"ALTER TABLE t DROP COLUMN b", "drop column t.b;"},
        Definition{"ALTER TABLE t DROP b", "drop column t.b;"},
        Definition{"ALTER TABLE t DROP CONSTRAINT pk", "drop constraint t.pk;"},
        Definition{"CREATE INDEX idx_t_b ON t(b)", "index idx_t_b(b) on t;"},
        Definition{"CREATE UNIQUE INDEX i ON t (a DESC, b ASC) WITH DISALLOW NULL",
                   "unique i(a desc,b) required on t;"},
        Definition{"CREATE INDEX i ON t (a) WITH IGNORE NULL", "index i(a) ignorenulls on t;"},
        Definition{"CREATE INDEX i ON t (a) WITH PRIMARY", "primary i(a) on t;"},
        Definition{"DROP TABLE `t`", "drop table t;"}, Definition{"DROP INDEX i ON t", "drop index t.i;"},
        Definition{"BEGIN TRANSACTION", "begin;"}, Definition{"COMMIT", "commit;"},
        Definition{"ROLLBACK WORK;", "rollback;"}));

struct Mistake {
    std::string statement;
    std::int32_t number;
};

/// Number and provider's number of what parsing raises; 0 when it raises nothing.
std::pair<std::int32_t, std::int32_t> Parsing(const std::string& statement) {
    try {
        ParseStatement(statement);
        return {0, 0};
    } catch (const Error& error) {
        return {error.Number(), db::AdoNumber(error)};
    }
}

TEST(Parser, NumbersMistakesByTheirClause) {
    const Mistake mistakes[] = {
        {"", 3129},
        {"TRUNCATE sale", 3129},
        {"truncate table sale", 3129},
        {"SELECT * FROM t; SELECT 1", 3142},
        {"SELECT FROM t", 3141},
        {"SELECT a, FROM t", 3141},
        {"SELECT a b c FROM t", 3075},
        {"SELECT a FROM t WHERE a = 1 b", 3075},
        {"SELECT a FROM t WHERE name = 'O'Brien'", 3075},
        {"SELECT a FROM t WHERE name = 'open", 3075},
        {"SELECT a FROM t WHERE (a = 1", 3075},
        {"SELECT a FROM t WHERE a NOT 5", 3075},
        {"SELECT a FROM", 3131},
        {"SELECT a FROM order", 3131},
        {"SELECT a FROM t u v", 3131},
        {"SELECT a FROM t JOIN u ON t.a = u.a", 3131},
        {"SELECT a FROM t LEFT JOIN u", 3135},
        {"INSERT INTO t (a) VALUES (1", 3134},
        {"INSERT INTO t (a) VALUES ('O'Brien')", 3075},
        {"INSERT t VALUES (1)", 3134},
        {"UPDATE t SET", 3144},
        {"UPDATE t SET a = , b = 1", 3144},
        {"UPDATE t a = 1", 3144},
        {"UPDATE billnote SET outbigo = 'O'Neil' WHERE code = '1'", 3075},
        {"DELETE t WHERE a = 1", 3130},
        {"DELETE FROM t a = 1", 3130},
        {"CREATE TABLE t", 3290},
        {"CREATE TABLE t (a LONG", 3290},
        {"CREATE TABLE t (a LONG(4))", 3292},
        {"CREATE TABLE t (a MEMO(4))", 3292},
        {"CREATE TABLE t (a NOTYPE)", 3292},
        {"ALTER TABLE `t`  ADD COLUMN `c`  DEFAULT 0 NOT NULL", 3292},
        {"CREATE TABLE t (a VARCHAR(256))", 3382},
        {"CREATE TABLE t (a LONG NULL NOT NULL)", 3806},
        {"CREATE TABLE t (a LONG, PRIMARY (a))", 3289},
        {"CREATE TABLE t (a LONG REFERENCES u ON DELETE CASCADE ON DELETE CASCADE)", 3289},
        {"CREATE INDEX i t(a)", 3291},
        {"ALTER TABLE t RENAME a", 3293},
        {"ALTER TABLE t ADD COLUMN a LONG, b LONG", 3293},
        {"DROP TABLE t, u", 3295},
        {"BEGIN TRANS", 3708},
        {"SELECT * FROM t WHERE d = #2024-13-45#", 3075},
    };
    for (const Mistake& mistake : mistakes) {
        EXPECT_EQ(Parsing(mistake.statement).first, mistake.number) << mistake.statement;
    }
    EXPECT_EQ(Parsing("SELECT * FROM t WHERE d = #2024-13-45#").second, db::adoNumbers::kCannotConvert);
    EXPECT_EQ(Parsing("SELECT * FROM t WHERE d = 'x").second, db::adoNumbers::kErrorsInCommand);
}

TEST(Parser, AcceptsEveryQueryShape) {
    for (const char* statement : {
             "SELECT ver FROM dbversion WHERE dbid='main'",
             "SELECT MAX(LEFT(code, 3)) FROM t WHERE LEN(code) = 4 AND ISNUMERIC(code) AND (a=1)",
             "SELECT b.code, p.dealdate, c.compalias FROM billnote AS b, payment AS p, customer AS c"
             " WHERE p.subcode = b.code AND p.ccode = c.code AND b.part = 1 AND b.outtype = 0",
             "SELECT product_m.qcode FROM product_m LEFT JOIN qlty ON product_m.qcode = qlty.code"
             " WHERE qlty.code IS NULL GROUP BY product_m.qcode",
             "SELECT l.code, l.loginpwd FROM local_user AS l WHERE l.loginid <> ''",
             "SELECT DISTINCT TOP 5 PERCENT a, b AS [x y] FROM (t INNER JOIN u ON t.a=u.a) RIGHT OUTER JOIN "
             "v ON v.a=u.a"
             " WHERE NOT a IN (SELECT a FROM w) AND EXISTS (SELECT * FROM w) AND b NOT LIKE '%x_' AND c "
             "BETWEEN 1 AND 2"
             " GROUP BY a, b HAVING COUNT(*) > 1 ORDER BY 1, b DESC",
             "SELECT a FROM t UNION ALL SELECT b FROM u UNION SELECT c FROM v ORDER BY 1;",
             "SELECT x.a FROM (SELECT a FROM t) AS x, [u v] y",
             "SELECT name, code, type, memo, date, number, count, text FROM t",
             "SELECT Left(a, 2) & Right(a, 1) + -1 * 2 MOD 3 \\ 4, Date(), @@IDENTITY, t!a, &H1F, .5, 1., "
             "1E3",
             "update local_user set loginpwd2 = loginpwd where loginid <> ''",
             "UPDATE product_m SET color =  16777215",
             "DELETE * FROM child WHERE c = 'v'",
             "DELETE t.* FROM t",
         }) {
        EXPECT_EQ(Parsing(statement).first, 0) << statement;
    }
}

TEST(Parser, RefusesBottomlessNesting) {
    for (const std::size_t depth : {200U, 20000U}) {
        EXPECT_EQ(Parsing("SELECT " + std::string(depth, '(') + "1" + std::string(depth, ')')).first, 3035);
    }
    std::string sum = "SELECT 1";
    std::string queries = "SELECT 1";
    std::string joins = "SELECT 1 FROM t";
    for (int i = 0; i < 5000; ++i) {
        sum += "+1";
        queries = i < 150 ? "SELECT (" + queries + ")" : queries;
        joins += " INNER JOIN t ON 1=1";
    }
    EXPECT_EQ(Parsing(sum).first, 3035);
    EXPECT_EQ(Parsing(queries).first, 3035);
    EXPECT_EQ(Parsing(joins).first, 3035);
    EXPECT_EQ(Parsing("SELECT '" + std::string(100000, 'x')).first, 3035);
}

}  // namespace
}  // namespace tavrel::test
