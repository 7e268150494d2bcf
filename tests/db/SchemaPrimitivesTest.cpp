// The schema-change primitives: statements to the letter, and what they leave in real files.
#include "db/DBEngine.h"
#include "db/SessionFixture.h"

namespace tavrel::testing {
namespace {

using namespace modDBsub;
using namespace modDBsub_ADO;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Primitives : public SessionFixture {
  protected:
    /// A field as the comparison will read it.  Closes the session for it.
    db::Field FieldOf(const std::string& table, const std::string& name) {
        gDBConn.reset();
        const auto file = db::DBEngine::Instance().OpenDatabase(path);
        for (db::TableDef& definition : file->TableDefs()) {
            for (const db::Field& field : definition.Fields()) {
                if (definition.Name() == table && field.Name == name) {
                    return field;
                }
            }
        }
        ADD_FAILURE() << "no field " << name;
        return {};
    }
    static std::string TwoLines(std::int32_t number, const std::string& description) {
        return "오류번호 : " + std::to_string(number) + "\r\n오류내용 : " + description;
    }
};

struct ColumnCase {
    ColType type;
    std::int32_t size;
    ColumnDefault value;
    std::string followUp;
    std::string declaration;  ///< behind the column's name
    std::string fill;         ///< empty: no statement follows
    std::int16_t daoType;     ///< 0: the engine refuses the statement
    std::string stored;       ///< default
    std::string filled;       ///< value of the row that was there
};

TEST_F(Primitives, AddColumns) {
    const ColumnCase cases[] = {
        {ColType::SmallInt, 0, 1, kDefUpdate, "SMALLINT DEFAULT 1", "1", 3, "1", "1"},
        {ColType::Long, 0, 16777215, kDefUpdate, "LONG DEFAULT 16777215", "16777215", 4, "16777215",
         "16777215"},
        {ColType::Long, 0, "Null text", "", "LONG DEFAULT Null text", "", 0, "", ""},
        {ColType::Double, 0, 0.5, kDefUpdate, "DOUBLE DEFAULT 0.5", "0.5", 7, "0.5", "0.5"},
        {ColType::Double, 0, jet::Null{}, kDefUpdate, "DOUBLE DEFAULT NULL", "NULL", 7, "NULL", ""},
        {ColType::VarChar, 0, "", kDefUpdate, "VARCHAR(255) DEFAULT \"\"", "''", 10, "\"\"", ""},
        {ColType::VarChar, 20, "\"\"\"", "", "VARCHAR(20) DEFAULT \"\"", "", 10, "\"\"", ""},
        {ColType::VarChar, 19, "'0000-00-00'", kDefUpdate, "VARCHAR(19) DEFAULT '0000-00-00'", "''", 10,
         "'0000-00-00'", ""},
        {ColType::VarChar, 5, jet::Null{}, "", "VARCHAR(5) DEFAULT NULL", "", 10, "NULL", ""},
        {ColType::VarChar, 5, 7, "", "VARCHAR(5) DEFAULT 7", "", 10, "7", ""},
        {ColType::Text, 9, "", kDefUpdate, "TEXT DEFAULT \"\"", "''", 12, "\"\"", ""},
        {ColType::Date, 0, "Now()", "", "DATE DEFAULT Now()", "", 8, "Now()", ""},
        {ColType::TinyInt, 0, 0, kDefUpdate, "TINYINT DEFAULT 0", "0", 2, "0", "0"},
        {ColType{8}, 0, 0, "", " DEFAULT 0", "", 0, "", ""},
    };
    for (const ColumnCase& c : cases) {
        Run({"CREATE TABLE t (id LONG)", "INSERT INTO t VALUES (1)"});
        TakeSent();
        const std::int32_t failure =
            ErrorOf([&] { EXPECT_TRUE(DBAddColumn("t", "c", c.type, c.size, c.value, c.followUp)); });
        std::vector<std::string> expected = {
            "value: SELECT c FROM t",
            "execute: ALTER TABLE `t`  ADD COLUMN `c` " + c.declaration + " NOT NULL"};
        if (!c.fill.empty()) {
            expected.push_back("execute: UPDATE `t` SET `c` = " + c.fill + " WHERE `c` IS NULL");
        }
        EXPECT_EQ(TakeSent(), expected);
        // Filling with Null is refused by the column itself.
        EXPECT_EQ(failure != 0, c.daoType == 0 || c.fill == "NULL") << c.declaration << " " << failure;
        if (c.daoType != 0) {
            EXPECT_EQ(Text("SELECT c FROM t"), c.filled) << c.declaration;
            const db::Field field = FieldOf("t", "c");
            EXPECT_EQ(field.Type, c.daoType) << c.declaration;
            EXPECT_EQ(field.DefaultValue, c.stored);
            EXPECT_TRUE(field.Required);
            EXPECT_EQ(field.Size, c.daoType == 10 ? (c.size == 0 ? 255 : c.size) : field.Size);
            DBOpenADO(path, "");
        }
        DBExecute("DROP TABLE t");
    }
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(Primitives, LeaveExistingColumnsAlone) {
    Run({"CREATE TABLE t (id LONG)", "INSERT INTO t VALUES (1)"});
    TakeSent();
    EXPECT_TRUE(DBAddColumn("t", "ID", ColType::VarChar, 9, "", "DELETE FROM t"));
    EXPECT_THAT(sent, ElementsAre("value: SELECT ID FROM t"));
    EXPECT_EQ(DBCount("t", ""), 1);
}

TEST_F(Primitives, AddColumnsWhoseNamesQueriesWouldTakeForOthers) {
    Run({"CREATE TABLE t (a LONG)"});
    EXPECT_TRUE(DBAddColumn("t", "a b", ColType::Long, 0, 1, ""));
    EXPECT_TRUE(DBAddColumn("t", "True", ColType::Long, 0, 1, ""));
    EXPECT_TRUE(DBChkExistence(kColumnKind, "t", "[a b]"));
    EXPECT_TRUE(DBChkExistence(kColumnKind, "t", "[True]"));
}

TEST_F(Primitives, FillOnlyWhereNothingStands) {
    Run({"CREATE TABLE t (id LONG)", "INSERT INTO t VALUES (7)"});
    EXPECT_TRUE(DBAddColumn("t", "path", ColType::VarChar, 9, "", "UPDATE t SET path = '0101' & id"));
    EXPECT_EQ(Text("SELECT path FROM t"), "01017");
    // A failing follow-up reaches the caller; the column stays.
    EXPECT_EQ(ErrorOf([] { DBAddColumn("t", "n", ColType::Long, 0, 1, "UPDATE nowhere SET n = 1"); }),
              -2147217865);
    EXPECT_TRUE(DBChkExistence(kColumnKind, "t", "n"));
    EXPECT_EQ(ErrorOf([] { DBAddColumn("nowhere", "n", ColType::Long, 0, 1, ""); }), -2147217865);
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(Primitives, AlterColumns) {
    Run({"CREATE TABLE t (id LONG, c VARCHAR(4) DEFAULT 'x')", "INSERT INTO t VALUES (1, '12')"});
    TakeSent();
    EXPECT_TRUE(DBAlterColumn("t", "c", ColType::VarChar, 30, "\""));
    EXPECT_EQ(Text("SELECT c FROM t"), "12");
    EXPECT_TRUE(DBAlterColumn("t", "c", ColType::Text, 0, "''"));
    EXPECT_TRUE(DBAlterColumn("t", "c", ColType::Double, 0, 0));
    EXPECT_EQ(ErrorOf([] { DBAlterColumn("t", "c", ColType::Date, 0, "Now()"); }), -2147217900);
    EXPECT_EQ(ErrorOf([] { DBAlterColumn("t", "none", ColType::SmallInt, 0, 0); }), -2147217900);
    EXPECT_THAT(TakeSent(),
                ElementsAre("execute: ALTER TABLE `t`  ALTER COLUMN `c` VARCHAR(30) DEFAULT \"\" NOT NULL",
                            "value: SELECT c FROM t",
                            "execute: ALTER TABLE `t`  ALTER COLUMN `c` TEXT DEFAULT '' NOT NULL",
                            "execute: ALTER TABLE `t`  ALTER COLUMN `c` DOUBLE DEFAULT 0 NOT NULL",
                            "execute: ALTER TABLE `t`  ALTER COLUMN `c`  DEFAULT Now() NOT NULL",
                            "execute: ALTER TABLE `t`  ALTER COLUMN `none` SMALLINT DEFAULT 0 NOT NULL"));
    EXPECT_EQ(DBGetValue("SELECT c FROM t"), jet::Value(12.0));
    const db::Field field = FieldOf("t", "c");
    EXPECT_EQ(field.Type, 7);
    EXPECT_EQ(field.DefaultValue, "0");
    EXPECT_TRUE(field.Required);
}

TEST_F(Primitives, AddRelationsByCascadeMode) {
    const char* const cascades[] = {"", " ON DELETE CASCADE", " ON UPDATE CASCADE",
                                    " ON DELETE CASCADE ON UPDATE CASCADE", ""};
    for (std::int32_t mode = 0; mode < 5; ++mode) {
        Run({"CREATE TABLE p (code VARCHAR(4), CONSTRAINT pk PRIMARY KEY (code))",
             "CREATE TABLE c (pcode VARCHAR(4))", "INSERT INTO p VALUES ('a')", "INSERT INTO p VALUES ('b')",
             "INSERT INTO c VALUES ('A')"});
        TakeSent();
        EXPECT_TRUE(DBAddRelation("fk", "p", "c", "code", "pcode", mode));
        EXPECT_THAT(TakeSent(),
                    ElementsAre("open: SELECT c.pcode FROM c LEFT JOIN p ON c.pcode = p.code"
                                " WHERE p.code IS NULL GROUP BY c.pcode",
                                "execute: ALTER TABLE c ADD CONSTRAINT fk FOREIGN KEY (pcode) REFERENCES p "
                                "(code)" +
                                    std::string(cascades[mode])));
        const bool deletes = mode == 1 || mode == 3;
        const bool updates = mode == 2 || mode == 3;
        EXPECT_EQ(ErrorOf([] { DBExecute("UPDATE p SET code = 'z' WHERE code = 'a'"); }) == 0, updates);
        EXPECT_EQ(Text("SELECT pcode FROM c"), updates ? "z" : "A");
        EXPECT_EQ(ErrorOf([] { DBExecute("DELETE FROM p"); }) == 0, deletes);
        EXPECT_EQ(DBCount("c", ""), deletes ? 0 : 1);
        Run({"DROP TABLE c", "DROP TABLE p"});
    }
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(Primitives, StopBeforeOrphans) {
    Run({"CREATE TABLE p (code VARCHAR(4), CONSTRAINT pk PRIMARY KEY (code))",
         "CREATE TABLE c (pcode VARCHAR(4))", "INSERT INTO c VALUES ('x')"});
    EXPECT_FALSE(DBAddRelation("fk", "p", "c", "code", "pcode", 3));
    EXPECT_EQ(DBCount("c", ""), 1);
    // A child without a key is listed by the query as well.
    Run({"DELETE FROM c", "INSERT INTO c VALUES (NULL)"});
    TakeSent();
    EXPECT_FALSE(DBAddRelation("fk", "p", "c", "code", "pcode", 3));
    EXPECT_THAT(sent, SizeIs(1)) << "nothing but the query";
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(Primitives, TellWhyARelationCannotBeAdded) {
    Run({"CREATE TABLE p (code VARCHAR(4), CONSTRAINT pk PRIMARY KEY (code))",
         "CREATE TABLE c (pcode VARCHAR(4))"});
    // A query that cannot be opened: its own message, then that of the reading that fails.
    EXPECT_FALSE(DBAddRelation("fk", "p", "nowhere", "code", "pcode", 0));
    ASSERT_THAT(messages.shown, SizeIs(2));
    EXPECT_EQ(messages.shown[0].title, "ERROR");
    EXPECT_EQ(messages.shown[1].text, TwoLines(3704, db::AdoError(3704).Description()));
    messages.shown.clear();
    EXPECT_TRUE(DBAddRelation("fk", "p", "c", "code", "pcode", 0));
    EXPECT_FALSE(DBAddRelation("fk", "p", "c", "code", "pcode", 0));
    ASSERT_THAT(messages.shown, SizeIs(1));
    EXPECT_EQ(messages.shown[0].text, TwoLines(-2147217900, MakeError(3378, {"fk"}).Description()));
    EXPECT_EQ(messages.shown[0].title, platform::kProgramTitle);
    EXPECT_EQ(messages.shown[0].icon, platform::MessageIcon::None);
}

TEST_F(Primitives, AddIndexes) {
    Run({"CREATE TABLE t (a LONG, b LONG)", "INSERT INTO t VALUES (1, 1)", "INSERT INTO t VALUES (1, 2)"});
    TakeSent();
    EXPECT_TRUE(DBAddIndex("t", "b", "u", true));
    EXPECT_TRUE(DBAddIndex("t", "a, b", "i", false));
    EXPECT_THAT(messages.shown, IsEmpty());
    EXPECT_FALSE(DBAddIndex("t", "a", "i", false)) << "name taken";
    EXPECT_FALSE(DBAddIndex("t", "a", "d", true)) << "duplicates";
    EXPECT_THAT(sent,
                ElementsAre("execute: CREATE UNIQUE INDEX u ON t(b)", "execute: CREATE INDEX i ON t(a, b)",
                            "execute: CREATE INDEX i ON t(a)", "execute: CREATE UNIQUE INDEX d ON t(a)"));
    ASSERT_THAT(messages.shown, SizeIs(2));
    EXPECT_EQ(messages.shown[0].text, TwoLines(-2147217900, MakeError(3375, {"t", "i"}).Description()));
    EXPECT_EQ(messages.shown[1].text,
              TwoLines(-2147467259, MakeError(errors::kDuplicateKey, {}, "t").Description()));
    EXPECT_NE(ErrorOf([] { DBExecute("INSERT INTO t VALUES (2, 2)"); }), 0) << "the unique one is there";
}

}  // namespace
}  // namespace tavrel::testing
