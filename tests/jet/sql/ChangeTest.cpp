// INSERT, UPDATE, DELETE: conversions, defaults, rules, all or nothing.
#include <gmock/gmock.h>

#include "db/AdoCodes.h"
#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

using namespace jet::sql;

struct Change : ::testing::Test {
    Change() {
        database.Run(
            "CREATE TABLE t (id COUNTER, name VARCHAR(4) DEFAULT \"\" NOT NULL, n SMALLINT DEFAULT 0,"
            " d DATE DEFAULT Now(), ok BIT, money CURRENCY, b TINYINT, dec NUMERIC(6,2), note TEXT,"
            " PRIMARY KEY (id))");
        database.Run("INSERT INTO t (name, n) VALUES ('one', 1)");
        database.Run("INSERT INTO t (name, n) VALUES ('two', 2)");
        database.Run("INSERT INTO t (name, n, d) VALUES ('', NULL, NULL)");
    }
    std::string All(const std::string& columns) {
        return database.Run("SELECT " + columns + " FROM t ORDER BY id");
    }

    MemoryDatabase database;
};

TEST_F(Change, InsertFillsInDefaultsAndNumbers) {
    EXPECT_EQ(All("id, name, n, d, ok, money"),
              "1|one|1|2023-03-15 12:00:00|0|~;2|two|2|2023-03-15 12:00:00|0|~;3||~|~|0|~");
    EXPECT_EQ(database.Run("SELECT @@IDENTITY"), "3");
    EXPECT_EQ(database.Affect("INSERT INTO t (id, name) VALUES (10, 'ten')"), 1);
    EXPECT_EQ(database.Affect("INSERT INTO t (n) VALUES (5)"), 1);
    EXPECT_EQ(database.Run("SELECT id, name, n FROM t WHERE id > 3"), "10|ten|0;11||5");
}

TEST_F(Change, DefaultsAreExpressions) {
    database.Run(
        "CREATE TABLE u (k LONG, a VARCHAR(10) DEFAULT 0, b VARCHAR(10) DEFAULT '0000-00-00',"
        " c VARCHAR(8) DEFAULT \"00:00\", d DATE DEFAULT '1900-01-01 00:00:00', e BIT DEFAULT Yes,"
        " f LONG DEFAULT (2 + 3), g DOUBLE DEFAULT -1, h LONG DEFAULT NULL, i DATE DEFAULT Date())");
    database.Table("u").columns[1].defaultValue = "=\"x\" & 1";  // as the designer would write it
    database.Run("INSERT INTO u (k) VALUES (1)");
    EXPECT_EQ(database.Run("SELECT a, b, c, d, e, f, g, h, i FROM u"),
              "x1|0000-00-00|00:00|1900-01-01|-1|5|-1|~|2023-03-15");
    EXPECT_EQ(database.Affect("CREATE TABLE v (a LONG DEFAULT Foo())"), -3388);
    EXPECT_EQ(database.Affect("CREATE TABLE v (a LONG DEFAULT foo)"), -3388);
    EXPECT_EQ(database.Affect("ALTER TABLE u ADD COLUMN x LONG DEFAULT (1 + )"), -3075);
}

TEST_F(Change, UpdateConvertsAndCounts) {
    EXPECT_EQ(database.Affect("UPDATE t SET name = 12 WHERE n IS NULL"), 1);
    EXPECT_EQ(database.Affect("UPDATE t SET n = '2.5', money = '1,234.56785', b = 3.5, ok = 7"), 3);
    EXPECT_EQ(All("name, n, money, b, ok"), "one|2|1234.5678|4|-1;two|2|1234.5678|4|-1;12|2|1234.5678|4|-1");
    EXPECT_EQ(database.Affect("UPDATE t SET d = '2024-05-06 07:08:09', dec = 1.005, note = d WHERE id = 1"),
              1);
    EXPECT_EQ(database.Run("SELECT d, dec, note FROM t WHERE id = 1"),
              "2024-05-06 07:08:09|1|2023-03-15 12:00:00");
    EXPECT_EQ(database.Affect("UPDATE `t` SET `n` = 0 WHERE `n` IS NULL"), 0);
    EXPECT_EQ(database.Affect("UPDATE t SET n = n + id, name = LEFT(name, 1) & n"), 3);
    EXPECT_EQ(All("n, name"), "3|o2;4|t2;5|12");
}

/// What a text becomes in columns of three types; empty: out of range.
TEST_F(Change, TextsAndDecimalsKeepAllTheirDigits) {
    struct Case {
        const char *text, *currency, *whole;
    };
    const Case cases[] = {
        {"12345678901234.5678", "12345678901234.5678", ""},
        {"-12345678901234.56785", "-12345678901234.5678", ""},
        {"-12345678901234.56785000000001", "-12345678901234.5679", ""},
        {"922337203685477.5807", "922337203685477.5807", ""},
        {"922337203685477.58074999999", "922337203685477.5807", ""},
        {"922337203685477.58075", "", ""},
        {"-922337203685477.5808", "-922337203685477.5808", ""},
        {"-922337203685477.5809", "", ""},
        {"9.223372036854775807E14", "922337203685477.5807", ""},
        {"18446744073709551616.5", "", ""},
        {"0.00004999999999999999999999", "0", "0"},
        {"0.00005", "0", "0"},
        {"0.00015", "0.0002", "0"},
        {"9E-300", "0", "0"},
        {"1E300", "", ""},
        {"1.4999999999999999999999", "1.5", "1"},
        {"2147483647.4999999999999", "2147483647.5", "2147483647"},
        {"2147483647.5", "2147483647.5", ""},
    };
    const auto converted = [&](const std::string& column, const std::string& value) {
        const std::int32_t failure = database.Failure("UPDATE v SET " + column + " = " + value);
        EXPECT_TRUE(failure == 0 || failure == 3349) << failure;
        return failure == 0 ? database.Run("SELECT " + column + " FROM v") : std::string();
    };
    database.Run("CREATE TABLE v (m CURRENCY, n LONG, x DECIMAL(28, 7))");
    database.Run("INSERT INTO v VALUES (0, 0, 0)");
    for (const Case& c : cases) {
        const std::string text = "'" + std::string(c.text) + "'";
        EXPECT_EQ(converted("m", text), c.currency) << text;
        EXPECT_EQ(converted("n", text), c.whole) << text;
        EXPECT_EQ(database.Failure("SELECT CCUR(" + text + ")") == 0, *c.currency != 0) << text;
        if (std::string_view(c.text).size() <= 22 && converted("x", text) != "") {
            EXPECT_EQ(converted("m", "x"), c.currency) << text;
            EXPECT_EQ(converted("n", "x"), c.whole) << text;
        }
    }
    // Whatever a Double holds goes back where it came from.
    EXPECT_EQ(converted("m", "CDBL('922337203685477.5807')"), "922337203685477.5807");
    EXPECT_EQ(converted("m", "CDBL('-922337203685477.5808')"), "-922337203685477.5808");
    EXPECT_EQ(converted("m", "922337203685477.75"), "");
    EXPECT_EQ(converted("x", "147573952589676412928"), "147573952589676412928");
    EXPECT_EQ(converted("x", "1E21"), "");
    EXPECT_EQ(converted("x", "1E300"), "");
}

TEST_F(Change, RightSidesSeeOldValues) {
    database.Run("UPDATE t SET n = id, b = n WHERE id < 3");
    EXPECT_EQ(All("n, b"), "1|1;2|2;~|~");
    database.Run(
        "UPDATE t SET n = (SELECT MAX(id) FROM t) - n, b = 0 WHERE id IN (SELECT id FROM t WHERE b = 1)");
    EXPECT_EQ(All("n, b"), "2|0;2|2;~|~");
}

TEST_F(Change, UpdatesThroughAJoin) {
    database.Run("CREATE TABLE u (id LONG, name VARCHAR(10))");
    database.Run("INSERT INTO u VALUES (2, 'zwei')");
    database.Run("INSERT INTO u VALUES (1, 'eins')");
    EXPECT_EQ(database.Affect("UPDATE t INNER JOIN u ON t.id = u.id SET t.name = u.name"), 2);
    EXPECT_EQ(All("name"), "eins;zwei;");
    EXPECT_EQ(database.Affect("UPDATE t LEFT JOIN u ON t.id = u.id SET u.name = 'x' WHERE u.id IS NOT NULL"),
              2);
    EXPECT_EQ(database.Affect("UPDATE t INNER JOIN u ON t.id = u.id SET t.n = 1, u.id = 1"), -3073);
}

TEST_F(Change, FailuresLeaveEverythingAsItWas) {
    struct Failing {
        const char* statement;
        std::int32_t number, ado;
    };
    using namespace db::adoNumbers;
    const Failing failing[] = {
        {"UPDATE t SET name = name & 'xx'", 3163, kDataOverflow},
        {"UPDATE t SET n = 40000 * id", 3349, kDataOverflow},
        {"UPDATE t SET b = n - 2", 3349, kDataOverflow},
        {"UPDATE t SET dec = 10000", 3349, kDataOverflow},
        {"UPDATE t SET d = ''", 3464, kCannotConvert},
        {"UPDATE t SET d = '0000-00-00'", 3464, kCannotConvert},
        {"UPDATE t SET n = 'x'", 3464, kCannotConvert},
        {"UPDATE t SET name = NULL", 3314, kUnspecified},
        {"UPDATE t SET id = 5", 3113, kErrorsOccurred},
        {"UPDATE t SET n = nothing", 3061, kParameterMissing},
        {"UPDATE t SET nothing = 1", 3061, kParameterMissing},
        {"UPDATE absent SET a = 1", 3078, kNoTable},
        {"DELETE FROM absent", 3078, kNoTable},
        {"DELETE FROM t WHERE nothing = 1", 3061, kParameterMissing},
        {"INSERT INTO absent VALUES (1)", 3192, kNoTable},
        {"INSERT INTO t (nothing) VALUES (1)", 3127, kErrorsInCommand},
        {"INSERT INTO t (name, n) VALUES ('a')", 3346, kErrorsInCommand},
        {"INSERT INTO t VALUES (1, 'a')", 3346, kErrorsInCommand},
        {"INSERT INTO t (name) VALUES (name)", 3061, kParameterMissing},
        {"INSERT INTO t (id) VALUES (1)", 3022, kUnspecified},
        {"INSERT INTO t (name) VALUES ('가나다라마')", 3163, kDataOverflow},
        {"INSERT INTO t (name, n) VALUES (NULL, 1)", 3314, kUnspecified},
        {"INSERT INTO t (id, name) SELECT 13 - n, 'x' FROM t WHERE n > 0 UNION ALL SELECT 2, 'x'", 3022,
         kUnspecified},
    };
    const std::string before = All("id, name, n, d, b");
    for (const Failing& each : failing) {
        try {
            database.Run(each.statement);
            ADD_FAILURE() << "accepted: " << each.statement;
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), each.number) << each.statement;
            EXPECT_EQ(db::AdoNumber(error), each.ado) << each.statement;
        }
        ASSERT_EQ(All("id, name, n, d, b"), before) << each.statement;
    }
}

TEST_F(Change, RequiredIsCheckedWhereItIsWritten) {
    database.Table("t").columns[8].required = true;
    database.Table("t").columns[8].refusesEmptyText = true;
    EXPECT_EQ(database.Affect("UPDATE t SET n = 7"), 3);
    EXPECT_EQ(database.Affect("UPDATE t SET note = ''"), -3315);
    try {
        database.Run("INSERT INTO t (n) VALUES (1)");
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 3314);
        EXPECT_THAT(error.Description(), ::testing::HasSubstr("t.note"));
    }
}

TEST_F(Change, ReadsBeforeItWritesWhereItMust) {
    EXPECT_EQ(database.Affect("INSERT INTO t (name, n) SELECT name, n FROM t"), 3);
    EXPECT_EQ(database.Run("SELECT COUNT(*) FROM t"), "6");
    database.Run("CREATE INDEX i ON t (n)");
    for (const bool tolerates : {true, false}) {
        database.Table("t").toleratesChanges = tolerates;
        EXPECT_EQ(database.Affect("UPDATE t SET n = n + 1 WHERE n >= 1"), 4);
    }
    EXPECT_EQ(database.Run("SELECT n FROM t WHERE n > 0 ORDER BY n"), "3;3;4;4");
    EXPECT_EQ(database.Affect("DELETE * FROM t WHERE n = 3"), 2);
    EXPECT_EQ(database.Affect("DELETE FROM t"), 4);
    EXPECT_EQ(database.Run("SELECT COUNT(*) FROM t"), "0");
}

TEST_F(Change, SeveralDefinitionsOfOneStatementStandOrFallTogether) {
    EXPECT_EQ(database.Affect("ALTER TABLE t ADD COLUMN x LONG CONSTRAINT u UNIQUE REFERENCES u"), 0);
    EXPECT_EQ(database.Affect("CREATE TABLE v (a LONG, UNIQUE (nothing))"), -3409);
    EXPECT_EQ(database.Failure("SELECT * FROM v"), 3078);
}

}  // namespace
}  // namespace tavrel::test
