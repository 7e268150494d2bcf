// The session's helpers: what they send, what they answer, and who hears of a failure.
#include <fstream>

#include "db/SessionFixture.h"

namespace tavrel::testing {
namespace {

using namespace modDBsub;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int32_t kNoTable = -2147217865;
constexpr std::int32_t kSyntax = -2147217900;
constexpr std::int32_t kUnresolved = -2147217904;
constexpr std::int32_t kUnspecified = -2147467259;

class Session : public SessionFixture {};

TEST_F(Session, GivesTheFirstValueOrTheEmptyText) {
    Run({"CREATE TABLE t (id LONG, name VARCHAR(10))", "INSERT INTO t VALUES (2, NULL)",
         "INSERT INTO t VALUES (1, '가')"});
    EXPECT_EQ(DBGetValue("SELECT name FROM t WHERE id = 1"), jet::Value(std::string("가")));
    EXPECT_EQ(DBGetValue("SELECT MAX(id) FROM t"), Int(2));
    EXPECT_EQ(DBGetValue("SELECT name FROM t WHERE id = 2"), jet::Value(std::string())) << "Null";
    EXPECT_EQ(DBGetValue("SELECT name FROM t WHERE id = 3"), jet::Value(std::string())) << "no row";
    EXPECT_EQ(ErrorOf([] { DBGetValue("SELECT x FROM t"); }), kUnresolved);
    EXPECT_EQ(ErrorOf([] { DBGetValue("DELETE FROM t WHERE id = 2"); }), db::adoErrors::kObjectClosed);
    EXPECT_EQ(DBCount("t", ""), 1) << "what is no query runs all the same";
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST(NullToStr, WritesValuesAsText) {
    EXPECT_EQ(DBNullToStr(jet::Null{}), "");
    EXPECT_EQ(DBNullToStr(std::string(" a ")), " a ");
    EXPECT_EQ(DBNullToStr(Int(-12)), "-12");
    EXPECT_EQ(DBNullToStr(0.5), "0.5");
    EXPECT_EQ(DBNullToStr(true), "True");
    EXPECT_EQ(DBNullToStr(jet::Currency{125000}), "12.5");
    EXPECT_EQ(DBNullToStr(jet::Date{38017.5}), "2004-01-31 12:00:00");
    EXPECT_EQ(ErrorOf([] { DBNullToStr(jet::ByteVector{1}); }), db::adoErrors::kTypeMismatch);
}

TEST_F(Session, ExecutesAndCountsTheRowsAffected) {
    EXPECT_EQ(DBExecute("CREATE TABLE payment (id LONG)"), 0);
    for (int id = 0; id < 3; ++id) {
        EXPECT_EQ(DBExecute("INSERT INTO payment VALUES (" + std::to_string(id) + ")"), 1);
    }
    EXPECT_EQ(DBExecute("UPDATE payment SET id = id WHERE id > 0"), 2);
    TakeSent();
    EXPECT_EQ(ErrorOf([] { DBExecute("truncate payment"); }), kSyntax);
    EXPECT_EQ(ErrorOf([] { DBExecute(" TRUNCATE payment"); }), kSyntax);
    EXPECT_EQ(DBCount("payment", ""), 3);
    EXPECT_EQ(DBExecute("TRUNCATE payment"), 3);
    EXPECT_THAT(TakeSent(),
                ElementsAre("execute: truncate payment", "execute:  TRUNCATE payment",
                            "count: SELECT COUNT(*) FROM payment", "execute: DELETE FROM payment"));
}

TEST_F(Session, CountsRowsUnderACondition) {
    Run({"CREATE TABLE t (id LONG)", "INSERT INTO t VALUES (1)", "INSERT INTO t VALUES (2)"});
    TakeSent();
    EXPECT_EQ(DBCount("t", "id > 1"), 1);
    EXPECT_THAT(sent, ElementsAre("count: SELECT COUNT(*) FROM t WHERE id > 1"));
    EXPECT_EQ(ErrorOf([] { DBCount("missing", ""); }), kNoTable);
}

TEST_F(Session, FindsTheNextCode) {
    Run({"CREATE TABLE t (code VARCHAR(40), kind LONG)"});
    EXPECT_EQ(DBNextCode("t", "code", 4, "", false), "0001");
    Run({"INSERT INTO t VALUES ('0099', 1)", "INSERT INTO t VALUES ('99999', 1)",
         "INSERT INTO t VALUES ('zzzz', 1)", "INSERT INTO t VALUES ('0500', 2)",
         "INSERT INTO t VALUES (NULL, 1)"});
    TakeSent();
    EXPECT_EQ(DBNextCode("t", "code", 4, "kind = 1", false), "0100");
    EXPECT_EQ(DBNextCode("t", "code", 4, "", true), "051");
    EXPECT_EQ(DBNextCode("t", "code", 5, "", false), "100000");
    EXPECT_EQ(DBNextCode("t", "code", 6, "", true), "00001");
    EXPECT_THAT(
        TakeSent(),
        ElementsAre("value: SELECT MAX(code) FROM t WHERE LEN(code) = 4 AND ISNUMERIC(code) AND kind = 1",
                    "value: SELECT MAX(LEFT(code, 3)) FROM t WHERE LEN(code) = 4 AND ISNUMERIC(code)",
                    "value: SELECT MAX(code) FROM t WHERE LEN(code) = 5 AND ISNUMERIC(code)",
                    "value: SELECT MAX(LEFT(code, 5)) FROM t WHERE LEN(code) = 6 AND ISNUMERIC(code)"));
    EXPECT_EQ(ErrorOf([] { DBNextCode("t", "nocode", 4, "", false); }), kUnresolved);
}

TEST_F(Session, CountsOnFromUnusualCodes) {
    struct Case {
        const char* highest;
        int length;
        const char* next;
    };
    const Case cases[] = {{"9999", 4, "10000"},
                          {"1E05", 4, "100001"},
                          {" 7.5", 4, "0009"},
                          {"-005", 4, "-0004"},
                          {"12345678901234567899", 20, "12345678901234567900"},
                          {"00000000000000000000099", 23, "00000000000000000000100"}};
    for (const Case& c : cases) {
        DBExecute("CREATE TABLE t (code VARCHAR(40))");
        DBExecute(std::string("INSERT INTO t VALUES ('") + c.highest + "')");
        EXPECT_EQ(DBNextCode("t", "code", static_cast<std::int16_t>(c.length), "", false), c.next);
        DBExecute("DROP TABLE t");
    }
}

TEST_F(Session, OpensResultSetsOfKnownLength) {
    Run({"CREATE TABLE t (id LONG, name VARCHAR(10))", "INSERT INTO t VALUES (1, 'a')",
         "INSERT INTO t VALUES (2, NULL)"});
    TakeSent();
    std::unique_ptr<db::Recordset> rows;
    EXPECT_EQ(DBOpenRs(rows, "SELECT id, name FROM t ORDER BY id", 0, 1, 1), 2);
    EXPECT_EQ(rows->Fields(1).Value, jet::Value(std::string("a")));
    // What is fetched stays as it was, and holds nothing that a definition would have to wait for.
    Run({"DROP TABLE t", "CREATE TABLE t (id LONG)"});
    rows->MoveNext();
    EXPECT_EQ(rows->Fields("ID").Value, Int(2));
    EXPECT_EQ(rows->Fields(1).Value, jet::Value(jet::Null{}));
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }), db::adoErrors::kNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(rows->Fields(0)); }), db::adoErrors::kNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(rows->Fields(2)); }), db::adoErrors::kItemNotFound);
    EXPECT_EQ(DBOpenRs(rows, "SELECT id FROM t", 0, 1, 1), 0) << "the handle is used again";
    EXPECT_TRUE(rows->Eof());
    DBCloseRs(rows);
    EXPECT_EQ(rows, nullptr);
    DBCloseRs(rows);
    EXPECT_THAT(sent, ::testing::Contains("open: SELECT id FROM t"));
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(Session, TellsWhyAResultSetCannotBeOpened) {
    Run({"CREATE TABLE t (id LONG)"});
    std::unique_ptr<db::Recordset> rows;
    const std::string kBroken = "SELECT id FROM";
    const std::string kMissing = "SELECT id FROM missing";
    EXPECT_EQ(DBOpenRs(rows, kBroken, 0, 1, 1), -1);
    EXPECT_EQ(DBOpenRs(rows, kMissing, 0, 1, 1), -1);
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->State(), db::adStateClosed);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(rows->Eof()); }), db::adoErrors::kObjectClosed);
    EXPECT_EQ(DBOpenRs(rows, "DELETE FROM t", 0, 1, 1), -1) << "no query, no message";
    ASSERT_THAT(messages.shown, SizeIs(2));
    EXPECT_EQ(messages.shown[0].title, "Error");
    EXPECT_EQ(
        messages.shown[0].text,
        "입력된 DB 데이터 중 특수문자 또는 지원하지 않는 언어(일본어, 기타 외국어 등)가 존재하거나, 기타 "
        "실행오류 입니다. ");
    EXPECT_EQ(messages.shown[1].title, "ERROR");
    EXPECT_EQ(messages.shown[1].text,
              MakeError(errors::kNoSuchTable, {"missing"}).Description() + "\r" + kMissing);
    for (const platform::Message& message : messages.shown) {
        EXPECT_EQ(message.icon, platform::MessageIcon::Information);
    }
}

TEST_F(Session, ProbesWithoutReadingOrTelling) {
    Run({"CREATE TABLE t (id LONG, [two words] LONG)"});
    TakeSent();
    EXPECT_TRUE(DBChkExistence(kTableKind, "t", ""));
    EXPECT_TRUE(DBChkExistence(kColumnKind, "T", "ID"));
    EXPECT_TRUE(DBChkExistence(kColumnKind, "t", "[two words]"));
    EXPECT_FALSE(DBChkExistence(kTableKind, "missing", ""));
    EXPECT_FALSE(DBChkExistence(kColumnKind, "missing", "id"));
    EXPECT_FALSE(DBChkExistence(kColumnKind, "t", "missing"));
    EXPECT_FALSE(DBChkExistence(kColumnKind, "t", "select"));
    EXPECT_FALSE(DBChkExistence(kColumnKind, "t", "words id"));
    EXPECT_FALSE(DBChkExistence(kTableKind, "two words more", ""));
    EXPECT_THAT(messages.shown, IsEmpty());
    EXPECT_EQ(sent[0], "value: SELECT * FROM t");
    EXPECT_EQ(sent[1], "value: SELECT ID FROM T");
    EXPECT_THAT(sent, SizeIs(9));
    TakeSent();
    // What the query would take for something else than a name is none.
    for (const char* column :
         {"id words",   "id AS words", "id, id",   "t.id",       "*",
          "t.*",        "1",           "'id'",     "(id)",       "-id",
          "COUNT(*)",   "id & id",     "True",     "NULL",       "Now()",
          "@@IDENTITY", "DISTINCT id", "TOP 1 id", "(SELECT 1)", "id FROM t UNION SELECT id"}) {
        EXPECT_FALSE(DBChkExistence(kColumnKind, "t", column)) << column;
    }
    for (const char* table : {"t x", "t AS x", "t, t AS x", "t WHERE 1 = 1", "t;", "(SELECT id FROM t)",
                              "t INNER JOIN t AS x ON t.id = x.id"}) {
        EXPECT_FALSE(DBChkExistence(kTableKind, table, "")) << table;
        EXPECT_FALSE(DBChkExistence(kColumnKind, table, "t.id")) << table;
    }
    EXPECT_TRUE(DBChkExistence(kColumnKind, "`T`", " id "));
    EXPECT_THAT(messages.shown, IsEmpty());
    // Any other failure is told and taken for existence.
    EXPECT_TRUE(DBChkExistence(kColumnKind, "t", "id = 'x'"));
    ASSERT_THAT(messages.shown, SizeIs(1));
    EXPECT_EQ(messages.shown[0].text, "Error -2147217913 (" + MakeError(3464).Description() +
                                          ") in procedure DBChkExistence of Module modDBUpdate_ADO");
    EXPECT_EQ(messages.shown[0].title, platform::kProgramTitle);
    EXPECT_EQ(messages.shown[0].icon, platform::MessageIcon::None);
}

/// A probe that read the whole table would meet the page that cannot be read.
TEST_F(Session, ProbesTheFirstRowAlone) {
    Run({"CREATE TABLE t (id LONG, c VARCHAR(250))", "BEGIN TRANSACTION"});
    for (int id = 0; id < 400; ++id) {
        DBExecute("INSERT INTO t VALUES (" + std::to_string(id) + ", 'LAST" + std::string(200, 'x') + "')");
    }
    Run({"COMMIT"});
    gDBConn.reset();
    std::string bytes = ReadWholeFile(path);
    const std::string marker("L\0A\0S\0T\0", 8);
    const std::size_t page = bytes.rfind(marker) / jet::kPageSize * jet::kPageSize;
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page), 16, '\xEE');
    const std::string damaged = folder.File("damaged.mdb");
    std::ofstream(damaged, std::ios::binary) << bytes;
    DBOpenADO(damaged, "");
    EXPECT_TRUE(DBChkExistence(kTableKind, "t", ""));
    EXPECT_TRUE(DBChkExistence(kColumnKind, "t", "c"));
    EXPECT_EQ(DBGetValue("SELECT id FROM t"), Int(0));
    EXPECT_THAT(messages.shown, IsEmpty());
    std::unique_ptr<db::Recordset> rows;
    EXPECT_EQ(DBOpenRs(rows, "SELECT id FROM t", 0, 1, 1), -1) << "the page is damaged indeed";
}

TEST_F(Session, ReplacesTheConnectionEvenByOneThatFails) {
    EXPECT_EQ(gDBConn->ConnectionString, "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
    EXPECT_EQ(gDBConn->ConnectionTimeout, 30);
    EXPECT_EQ(gDBConn->CursorLocation, 3);
    jet::CreateOptions options;
    options.password = "b;c =d ";
    const std::string other = DatabaseBuilder(folder.File("b;c.mdb"), options).Finish();
    EXPECT_TRUE(DBOpenADO(path, "ignored where there is none"));
    EXPECT_EQ(ErrorOf([&] { DBOpenADO(other, "B;c =d "); }), -2147217843);
    EXPECT_EQ(gDBConn->ConnectionString, "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + other +
                                             ";Jet OLEDB:Database Password=B;c =d ");
    EXPECT_EQ(ErrorOf([] { DBExecute("SELECT 1"); }), db::adoErrors::kObjectClosed);
    std::unique_ptr<db::Recordset> rows;
    EXPECT_EQ(DBOpenRs(rows, "SELECT 1", 0, 1, 1), -1);
    EXPECT_THAT(messages.shown.at(0).text, HasSubstr("연결"));
    EXPECT_TRUE(DBOpenADO(path, "")) << "nobody holds it any more";
    EXPECT_TRUE(DBOpenADO(path, "")) << "not even the session itself";
    EXPECT_TRUE(DBOpenADO(other, "b;c =d "));
    EXPECT_EQ(ErrorOf([&] { DBOpenADO(folder.File("none.mdb"), ""); }), kUnspecified);
}

TEST_F(Session, SaysThatNothingWasOpened) {
    gDBConn.reset();
    EXPECT_EQ(ErrorOf([] { DBGetValue("SELECT 1"); }), 91);
    EXPECT_EQ(ErrorOf([] { DBExecute("SELECT 1"); }), 91);
    EXPECT_EQ(ErrorOf([] { DBCount("t", ""); }), 91);
    std::unique_ptr<db::Recordset> rows;
    EXPECT_EQ(DBOpenRs(rows, "SELECT 1", 0, 1, 1), -1);
    EXPECT_TRUE(DBChkExistence(kTableKind, "t", ""));
    EXPECT_THAT(sent, IsEmpty());
    ASSERT_THAT(messages.shown, SizeIs(2));
    EXPECT_EQ(messages.shown[0].title, "MDB 오류");
    EXPECT_EQ(messages.shown[0].text, "Data Base MDB가 선언되지 않았습니다.\rSELECT 1");
    EXPECT_THAT(messages.shown[1].text, HasSubstr("Error 91 ("));
}

}  // namespace
}  // namespace tavrel::testing
