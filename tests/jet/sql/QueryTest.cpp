// What queries answer, over tables in memory.
#include <gmock/gmock.h>

#include "db/AdoCodes.h"
#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

using namespace jet::sql;

void Fill(MemoryDatabase& database) {
    for (const char* statement : {
             "CREATE TABLE item (code VARCHAR(6), name VARCHAR(20), qty LONG, price DOUBLE, cost CURRENCY, "
             "made DATE,"
             " sold BIT, grp SMALLINT, CONSTRAINT pk PRIMARY KEY (code))",
             "INSERT INTO item VALUES ('0001','사과',10,1.5,2.25,'2024-01-02 03:04:05',True,1)",
             "INSERT INTO item VALUES ('0002','배',NULL,2.5,1,#2/3/2024#,False,1)",
             "INSERT INTO item VALUES ('0010','Pear',30,NULL,NULL,NULL,NULL,2)",
             "INSERT INTO item VALUES ('A1','apple  ',5,0.1,3.3333,'2023-12-31',Yes,NULL)",
             "CREATE TABLE grp (code SMALLINT PRIMARY KEY, title VARCHAR(10))",
             "INSERT INTO grp VALUES (1,'one')",
             "INSERT INTO grp VALUES (2,'two')",
             "INSERT INTO grp VALUES (3,'three')",
         }) {
        database.Run(statement);
    }
}

struct Answer {
    std::string statement, expected;
    friend void PrintTo(const Answer& it, std::ostream* out) { *out << Words(it.statement); }
};

class Answers : public ::testing::TestWithParam<Answer> {};

TEST_P(Answers, AreThese) {
    MemoryDatabase database;
    Fill(database);
    EXPECT_EQ(database.Run(GetParam().statement), GetParam().expected) << GetParam().statement;
}

INSTANTIATE_TEST_SUITE_P(
    Filters, Answers,
    ::testing::Values(Answer{"SELECT code FROM item WHERE qty > 5", "0001;0010"},
                      Answer{"SELECT code FROM item WHERE qty <> 5", "0001;0010"},
                      Answer{"SELECT code FROM item WHERE NOT qty > 5", "A1"},
                      Answer{"SELECT code FROM item WHERE qty IS NULL", "0002"},
                      Answer{"SELECT code FROM item WHERE qty = NULL", ""},
                      Answer{"SELECT code FROM item WHERE qty <> NULL", "0001;0010;A1"},
                      Answer{"SELECT code FROM item WHERE qty > 5 OR price > 2", "0001;0002;0010"},
                      Answer{"SELECT code FROM item WHERE qty > 5 XOR grp = 1", "0010"},
                      Answer{"SELECT code FROM item WHERE name = 'APPLE'", "A1"},
                      Answer{"SELECT code FROM item WHERE name LIKE 'p%'", "0010"},
                      Answer{"SELECT code FROM item WHERE name NOT LIKE '%p%'", "0001;0002"},
                      Answer{"SELECT code FROM item WHERE qty IN (5, 30, NULL)", "0010;A1"},
                      Answer{"SELECT code FROM item WHERE qty NOT IN (5, NULL)", ""},
                      Answer{"SELECT code FROM item WHERE qty NOT IN (5)", "0001;0010"},
                      Answer{"SELECT code FROM item WHERE qty BETWEEN 5 AND 10", "0001;A1"},
                      Answer{"SELECT code FROM item WHERE qty NOT BETWEEN 5 AND 10", "0010"},
                      Answer{"SELECT code FROM item WHERE sold", "0001;A1"},
                      Answer{"SELECT code FROM item WHERE sold = 0", "0002;0010"},
                      Answer{"SELECT code FROM item WHERE made > #2024-01-31#", "0002"},
                      Answer{"SELECT code FROM item WHERE made = 45325", "0002"},
                      Answer{"SELECT code FROM item WHERE price = cost - 0.75", "0001"},
                      Answer{"SELECT code FROM item WHERE LEN(code) = 4 AND ISNUMERIC(code)",
                             "0001;0002;0010"},
                      Answer{"SELECT code FROM item WHERE code IN ('0010', 'a1', '0010')", "0010;A1"},
                      Answer{"SELECT code FROM item WHERE code >= '0002' AND code < 'a'", "0002;0010"},
                      Answer{"SELECT code FROM item WHERE code BETWEEN '0001' AND '0002'", "0001;0002"},
                      Answer{"SELECT 1 WHERE 1 = 2", ""}, Answer{"SELECT code FROM item WHERE NULL", ""}));

INSTANTIATE_TEST_SUITE_P(
    Expressions, Answers,
    ::testing::Values(
        Answer{"SELECT 1 + 2 * 3, -2 + 1, 7 / 2, 7 \\ 2, 7 MOD 4, -7 \\ 2", "7|-1|3.5|3|3|-3"},
        Answer{"SELECT 'a' & 1 & NULL, NULL & NULL, 'a' + 'b', 'a' + NULL, '2' + 3, '2' * '3'",
               "a1|~|ab|~|5|6"},
        Answer{"SELECT 0000, 0012, 1E2, &HFF, .5, TRUE, OFF", "0|12|100|255|0.5|-1|0"},
        Answer{"SELECT LEFT('가나다', 2), RIGHT('abc', 5), MID('abcdef', 2, 3), MID('abc', 3), LEN('가나'), "
               "LEN(123), LEFT(1234, 2)",
               "가나|abc|bcd|c|2|3|12"},
        Answer{"SELECT LEFT('', 2), LEFT(NULL, 2), LEN(NULL), ISNUMERIC(NULL), ISNUMERIC('1E05'), "
               "ISNUMERIC(''), ISNUMERIC(5), ISNUMERIC(TRUE)",
               "|~|~|0|-1|0|-1|-1"},
        Answer{"SELECT TRIM('  a '), LTRIM(' a'), RTRIM('a '), UCASE('aé'), LCASE('AB'), INSTR('abcB', 'B'), "
               "INSTR(3, 'abcb', 'B'), INSTR('a', 'x')",
               "a|a|a|AÉ|ab|2|4|0"},
        Answer{"SELECT VAL('12abc'), VAL('x'), STR(5), STR(-5), CSTR(1.5), CLNG('2.5'), CINT(3.5), "
               "CDBL('1,000')",
               "12|0| 5|-5|1.5|2|4|1000"},
        Answer{"SELECT ABS(-5), INT(-2.5), FIX(-2.5), ROUND(2.5), ROUND(3.5), ROUND(1.25, 1), SGN(-3)",
               "5|-3|-2|2|4|1.2|-1"},
        Answer{"SELECT IIF(1 = 1, 'y', 1/0), NZ(NULL, 3), NZ('a', 'b'), ISNULL(NULL)", "y|3|a|-1"},
        Answer{"SELECT FORMAT(7, '0000'), FORMAT(1234567.891, '#,##0.00'), FORMAT(0.5, '0%'), FORMAT(-0.001, "
               "'0.0'), FORMAT(#2024-03-04 05:06:07#, 'yyyy/mm/dd hh:mm:ss'), FORMAT(#15:06#, 'AMPM hh:mm'),"
               " FORMAT(#0:06#, 'h:nn am/pm')",
               "0007|1,234,567.89|50%|0.0|2024/03/04 05:06:07|오후 03:06|12:06 AM"},
        Answer{"SELECT NOW(), DATE(), TIME(), YEAR(#2024-03-04#), MONTH('2024-03-04'), DAY(#2024-03-04#)",
               "2023-03-15 12:00:00|2023-03-15|12:00:00|2024|3|4"},
        Answer{"SELECT #2024-01-31# + 1, #2024-01-02# - #2024-01-01#, CDATE('2024-01-02')",
               "2024-02-01|1|2024-01-02"},
        Answer{"SELECT cost * 2, cost + 0.5, cost / 2 FROM item WHERE code = 'A1'", "6.6666|3.8333|1.66665"},
        Answer{"SELECT TRUE AND NULL, FALSE AND NULL, TRUE OR NULL, NOT NULL, NULL XOR TRUE", "~|0|-1|~|~"},
        Answer{"SELECT 2147483647 + 0, 2147483648 + 1, 1 = 1.0, 'A' = 'a ', 'a' < 'b'",
               "2147483647|2147483649|-1|-1|-1"}));

INSTANTIATE_TEST_SUITE_P(
    Groups, Answers,
    ::testing::Values(
        Answer{"SELECT COUNT(*), COUNT(qty), SUM(qty), AVG(qty), MIN(qty), MAX(name), SUM(cost), "
               "FIRST(code), LAST(code) FROM item",
               "4|3|45|15|5|Pear|6.5833|0001|A1"},
        Answer{"SELECT COUNT(*), MAX(qty), SUM(qty) FROM item WHERE code = 'none'", "0|~|~"},
        Answer{"SELECT MAX(LEFT(code, 3)) FROM item WHERE LEN(code) = 4 AND ISNUMERIC(code)", "001"},
        Answer{"SELECT grp, COUNT(*), SUM(qty) FROM item GROUP BY grp", "~|1|5;1|2|10;2|1|30"},
        Answer{"SELECT COUNT(*) FROM item GROUP BY grp HAVING COUNT(*) > 1", "2"},
        Answer{"SELECT item.grp + 1 AS g FROM item GROUP BY grp + 1 ORDER BY g DESC", "3;2;~"},
        Answer{"SELECT grp FROM item GROUP BY item.grp ORDER BY COUNT(*) DESC, 1", "1;~;2"},
        Answer{"SELECT grp FROM item WHERE 1 = 2 GROUP BY grp", ""},
        // A query is one and the same wherever it is repeated.
        Answer{
            "SELECT (SELECT title FROM grp WHERE code = item.grp) AS t, COUNT(*) FROM item GROUP BY (SELECT "
            "title FROM grp WHERE code = item.grp) ORDER BY (SELECT title FROM grp WHERE code = item.grp)",
            "~|1;one|2;two|1"},
        Answer{
            "SELECT grp IN (SELECT g.code FROM grp AS g WHERE g.title LIKE 'o%'), MAX(qty) FROM item WHERE "
            "grp IS NOT NULL GROUP BY Grp IN (SELECT G.Code FROM GRP AS g WHERE g.title LIKE 'o%')",
            "-1|10;0|30"},
        Answer{
            "SELECT 1 + SUM((SELECT MAX(code) FROM grp)) FROM item HAVING SUM((SELECT MAX(code) FROM grp)) "
            "> 0",
            "13"},
        Answer{"SELECT COUNT(*) + 1 FROM item HAVING COUNT(*) > 3", "5"},
        Answer{"SELECT DISTINCT grp FROM item", "~;1;2"},
        Answer{"SELECT DISTINCT sold, grp FROM item ORDER BY grp DESC, sold", "0|2;-1|1;0|1;-1|~"},
        Answer{"SELECT LEN(code), COUNT(*) FROM item GROUP BY LEN(code)", "2|1;4|3"},
        Answer{"SELECT made, COUNT(*) FROM item GROUP BY made HAVING made > #2024-01-01#",
               "2024-01-02 03:04:05|1;2024-02-03|1"}));

INSTANTIATE_TEST_SUITE_P(
    Order, Answers,
    ::testing::Values(Answer{"SELECT name FROM item ORDER BY name", "배;사과;apple  ;Pear"},
                      Answer{"SELECT code FROM item ORDER BY qty DESC", "0010;0001;A1;0002"},
                      Answer{"SELECT code, qty AS q FROM item ORDER BY q, 1", "0002|~;A1|5;0001|10;0010|30"},
                      Answer{"SELECT code FROM item ORDER BY price * -1", "0010;0002;0001;A1"},
                      Answer{"SELECT TOP 2 code FROM item", "0001;0002"},
                      Answer{"SELECT TOP 1 code FROM item ORDER BY grp DESC", "0010"},
                      Answer{"SELECT TOP 2 code FROM item ORDER BY grp DESC", "0010;0001;0002"},
                      Answer{"SELECT TOP 50 PERCENT code FROM item ORDER BY code DESC", "A1;0010"},
                      Answer{"SELECT TOP 1 PERCENT code FROM item", "0001"},
                      Answer{"SELECT TOP 0 code FROM item", ""},
                      Answer{"SELECT TOP 1 code FROM item ORDER BY code", "0001"},
                      Answer{"SELECT DISTINCT TOP 2 grp FROM item ORDER BY grp DESC", "2;1"}));

INSTANTIATE_TEST_SUITE_P(
    Joins, Answers,
    ::testing::Values(
        Answer{"SELECT i.code, g.title FROM item AS i, grp g WHERE i.grp = g.code ORDER BY 1",
               "0001|one;0002|one;0010|two"},
        Answer{"SELECT i.code, title FROM item i INNER JOIN grp ON i.grp = grp.code ORDER BY 1",
               "0001|one;0002|one;0010|two"},
        Answer{"SELECT i.code, title FROM item i LEFT JOIN grp ON i.grp = grp.code ORDER BY 1",
               "0001|one;0002|one;0010|two;A1|~"},
        Answer{"SELECT title, i.code FROM item i RIGHT JOIN grp ON i.grp = grp.code ORDER BY grp.code, 2",
               "one|0001;one|0002;two|0010;three|~"},
        Answer{"SELECT item.grp FROM item LEFT JOIN grp ON item.grp = grp.code WHERE grp.code IS NULL GROUP "
               "BY item.grp",
               "~"},
        Answer{"SELECT a.code, b.code FROM grp a, grp b WHERE a.code < b.code ORDER BY 1, 2", "1|2;1|3;2|3"},
        Answer{"SELECT a.code, b.code FROM grp a LEFT JOIN grp b ON a.code > b.code ORDER BY 1, 2",
               "1|~;2|1;3|1;3|2"},
        Answer{
            "SELECT g.code, i.code FROM grp g LEFT JOIN item i ON (g.code = i.grp AND i.qty > 5) ORDER BY 1",
            "1|0001;2|0010;3|~"},
        Answer{
            "SELECT g.code, i.code FROM grp g LEFT JOIN item i ON g.code = i.grp AND g.code = 2 ORDER BY 1",
            "1|~;2|0010;3|~"},
        Answer{"SELECT COUNT(*) FROM item, grp", "12"},
        Answer{"SELECT COUNT(*) FROM (item AS i INNER JOIN grp g ON i.grp = g.code) LEFT JOIN grp AS h ON "
               "h.code = g.code + 2",
               "3"},
        Answer{"SELECT x.n FROM (SELECT grp, COUNT(*) AS n FROM item GROUP BY grp) AS x INNER JOIN grp ON "
               "grp.code = x.grp ORDER BY grp.code",
               "2;1"},
        Answer{"SELECT o.code, s.code FROM grp AS o, grp AS s WHERE o.code = 1", "1|1;1|2;1|3"}));

INSTANTIATE_TEST_SUITE_P(
    Inner, Answers,
    ::testing::Values(
        Answer{"SELECT code FROM grp WHERE code IN (SELECT grp FROM item)", "1;2"},
        Answer{"SELECT code FROM grp WHERE code NOT IN (SELECT grp FROM item)", ""},
        Answer{"SELECT code FROM grp WHERE code NOT IN (SELECT grp FROM item WHERE grp IS NOT NULL)", "3"},
        Answer{"SELECT code FROM grp WHERE EXISTS (SELECT * FROM item WHERE item.grp = grp.code)", "1;2"},
        Answer{"SELECT code FROM grp g WHERE NOT EXISTS (SELECT code FROM item WHERE grp = g.code)", "3"},
        Answer{"SELECT code, (SELECT COUNT(*) FROM item WHERE item.grp = grp.code) FROM grp", "1|2;2|1;3|0"},
        Answer{"SELECT code FROM item WHERE qty = (SELECT MAX(qty) FROM item)", "0010"},
        Answer{"SELECT (SELECT title FROM grp WHERE code = 9)", "~"},
        Answer{"SELECT grp, (SELECT title FROM grp WHERE grp.code = item.grp) FROM item GROUP BY grp",
               "~|~;1|one;2|two"},
        Answer{"SELECT code FROM grp WHERE 1 IN (SELECT COUNT(*) FROM item WHERE item.grp = grp.code)", "2"},
        Answer{"SELECT code FROM grp UNION SELECT grp FROM item", "~;1;2;3"},
        Answer{"SELECT code FROM grp WHERE code < 3 UNION ALL SELECT grp FROM item ORDER BY 1 DESC",
               "2;2;1;1;1;~"},
        Answer{"SELECT code FROM grp WHERE code = 1 UNION SELECT code FROM item WHERE code = '0001'",
               "0001;1"},
        Answer{"SELECT n FROM (SELECT COUNT(*) AS n FROM grp UNION ALL SELECT 7) AS x WHERE n > 3", "7"}));

TEST(Query, NamesAndTypesItsColumns) {
    MemoryDatabase database;
    Fill(database);
    const auto result = Execute(
        "SELECT CODE, qty AS q, COUNT(*), qty + 1, name & 'x', NULL, ISNUMERIC(code) FROM item GROUP BY "
        "code, qty, name",
        database.workspace);
    std::string seen;
    for (const ResultColumn& column : result.rows->Columns()) {
        seen += column.name + " " + std::to_string(jet::DaoType(column.type)) + ";";
    }
    EXPECT_EQ(seen, "code 10;q 4;Expr1002 4;Expr1003 4;Expr1004 10;Expr1005 10;Expr1006 3;");
    const auto joined = Execute("SELECT o.code, s.code, s.title FROM grp AS o, grp AS s", database.workspace);
    EXPECT_EQ(joined.rows->Columns()[0].name, "o.code");
    EXPECT_EQ(joined.rows->Columns()[1].name, "s.code");
    EXPECT_EQ(joined.rows->Columns()[2].name, "title");
}

struct Refusal {
    std::string statement;
    std::int32_t number;
    std::int32_t ado;
};

TEST(Query, RefusesWithTheEnginesNumbers) {
    using namespace db::adoNumbers;
    const Refusal refusals[] = {
        {"SELECT nothing FROM item", 3061, kParameterMissing},
        {"SELECT x.code FROM item", 3061, kParameterMissing},
        {"SELECT * FROM item WHERE nothing = 1", 3061, kParameterMissing},
        {"SELECT code FROM item ORDER BY nothing", 3061, kParameterMissing},
        {"SELECT * FROM absent", 3078, kNoTable},
        {"SELECT code FROM item, grp", 3079, kUnspecified},
        {"SELECT FOO(code) FROM item", 3085, kErrorsInCommand},
        {"SELECT code FROM item WHERE code = 1", 3464, kCannotConvert},
        {"SELECT code FROM item WHERE qty = '1'", 3464, kCannotConvert},
        {"SELECT code FROM item WHERE made = '2024-01-02'", 3464, kCannotConvert},
        {"SELECT code FROM item WHERE qty IN (1, 'a')", 3464, kCannotConvert},
        {"SELECT code FROM item WHERE qty BETWEEN 1 AND 'a'", 3464, kCannotConvert},
        {"SELECT code FROM item WHERE qty IN (SELECT code FROM item)", 3464, kCannotConvert},
        {"SELECT * FROM item INNER JOIN grp ON item.code = grp.code", 3615, kCannotConvert},
        {"SELECT 'a' * 2", 3464, kCannotConvert},
        {"SELECT SUM(code) FROM item", 3464, kCannotConvert},
        {"SELECT code, COUNT(*) FROM item", 3122, kErrorsOccurred},
        {"SELECT * FROM item GROUP BY code", 3122, kErrorsOccurred},
        {"SELECT (SELECT MIN(code) FROM grp WHERE code > qty) FROM item GROUP BY (SELECT MAX(code) FROM grp "
         "WHERE code > qty)",
         3122, kErrorsOccurred},
        {"SELECT code FROM item GROUP BY code ORDER BY qty", 3122, kErrorsOccurred},
        {"SELECT grp, (SELECT COUNT(*) FROM grp WHERE grp.code = item.qty) FROM item GROUP BY grp", 3122,
         kErrorsOccurred},
        {"SELECT code FROM item WHERE COUNT(*) > 1", 3096, kErrorsOccurred},
        {"SELECT 2147483647 + 1", 3349, kDataOverflow},
        {"SELECT 1E308 * 10", 3349, kDataOverflow},
        {"SELECT 1 / 0", 11, kDataOverflow},
        {"SELECT LEFT('a', -1)", 5, kErrorsInCommand},
        {"SELECT LEFT('a')", 3075, kErrorsInCommand},
        {"SELECT (SELECT code FROM grp)", 3354, kUnspecified},
        {"SELECT (SELECT code, title FROM grp)", 3306, kErrorsInCommand},
        {"SELECT 1 UNION SELECT 1, 2", 3307, kErrorsInCommand},
    };
    MemoryDatabase database;
    Fill(database);
    for (const Refusal& refusal : refusals) {
        try {
            database.Run(refusal.statement);
            ADD_FAILURE() << "accepted: " << refusal.statement;
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), refusal.number) << refusal.statement;
            EXPECT_EQ(db::AdoNumber(error), refusal.ado) << refusal.statement;
            EXPECT_NE(FindErrorText(error.Number()), nullptr) << refusal.statement;
        }
    }
}

TEST(Query, ChecksNamesAndTypesBeforeAnyRow) {
    MemoryDatabase database;
    Fill(database);
    database.ForgetCounts();
    for (const char* statement : {"SELECT nothing FROM item", "SELECT code FROM item WHERE code = 1"}) {
        EXPECT_THROW(Execute(statement, database.workspace), Error);
    }
    Execute("SELECT name FROM item", database.workspace);
    EXPECT_EQ(database.Table("item").rowsRead, 0U);
}

TEST(Query, CountsMissingNamesOnce) {
    MemoryDatabase database;
    Fill(database);
    try {
        database.Run("SELECT foo, bar FROM item WHERE FOO = 1");
        FAIL();
    } catch (const Error& error) {
        EXPECT_THAT(error.Description(), ::testing::HasSubstr("2"));
    }
}

}  // namespace
}  // namespace tavrel::test
