// What definition statements leave behind: columns, properties, indexes, relations and the engine's own rows.
#include <gtest/gtest.h>

#include "jet/session/SessionBench.h"

namespace tavrel::testing {
namespace {

std::string Described(const jet::FieldInfo& field) {
    return field.name + " " + std::to_string(field.daoType) + "/" + std::to_string(field.size) +
           (field.defaultValue.empty() ? "" : " =" + field.defaultValue) +
           (field.required ? " required" : "") + (field.allowZeroLength ? " zero" : "") +
           (field.autonumber ? " auto" : "");
}

std::string Described(const jet::IndexInfo& index) {
    std::string text = index.name + ":" + (index.primary ? "P" : "") + (index.unique ? "U" : "") +
                       (index.foreign ? "F" : "") + (index.required ? "R" : "") +
                       (index.ignoreNulls ? "I" : "");
    for (const jet::IndexFieldInfo& field : index.fields) {
        text += " " + field.name + (field.descending ? "-" : "");
    }
    return text;
}

std::string Described(const jet::RelationInfo& relation) {
    return relation.name + ": " + relation.table + "." + relation.columns.at(0) + ">" +
           relation.referencedTable + "." + relation.referencedColumns.at(0) +
           (relation.updateCascade ? " update" : "") + (relation.deleteCascade ? " delete" : "") +
           (relation.deleteSetsNull ? " null" : "") + (relation.oneToOne ? " one" : "");
}

template <typename Items>
std::vector<std::string> Lines(const Items& items) {
    std::vector<std::string> lines;
    for (const auto& item : items) {
        lines.push_back(Described(item));
    }
    return lines;
}

jet::TableInfo InfoOf(SessionBench& bench, const std::string& table) {
    return bench.File().Describe(*bench.File().Catalog().FindTable(table));
}

using Strings = std::vector<std::string>;

TEST(SchemaDefinitions, ColumnsAreAsDeclared) {
    SessionBench bench;
    bench.Run(
        "CREATE TABLE t (id COUNTER, a VARCHAR(20) DEFAULT \"\" NOT NULL, b TEXT DEFAULT '' NULL, c SMALLINT "
        "DEFAULT  -1 , d LONG NOT NULL DEFAULT 0, e DOUBLE, f DATE DEFAULT Now(), g TINYINT, h BIT DEFAULT "
        "Yes, "
        "i CURRENCY, j SINGLE, k VARCHAR, l IMAGE, m GUID, n BINARY(16), o DECIMAL(10,2), PRIMARY KEY (id))");
    bench.Run("ALTER TABLE t ADD COLUMN p VARCHAR(255) DEFAULT '' NOT NULL");
    bench.Run("ALTER TABLE t ADD q DATE");
    bench.Run("ALTER TABLE t ALTER COLUMN c VARCHAR(30) DEFAULT ''");
    bench.Run("ALTER TABLE t ALTER COLUMN d DOUBLE NULL");
    bench.Run("ALTER TABLE t ALTER COLUMN e SET DEFAULT 7");
    bench.Run("ALTER TABLE t ALTER COLUMN h DROP DEFAULT");
    bench.Run("ALTER TABLE t DROP COLUMN j");
    const jet::TableInfo info = InfoOf(bench, "T");
    EXPECT_EQ(Lines(info.fields),
              (Strings{"id 4/4 auto", "a 10/20 =\"\" required zero", "b 12/0 ='' zero", "c 10/30 ='' zero",
                       "d 7/8 =0", "e 7/8 =7", "f 8/8 =Now()", "g 2/1", "h 1/1", "i 5/8", "k 10/255 zero",
                       "l 11/0", "m 15/16", "n 9/16", "o 20/16", "p 10/255 ='' required zero", "q 8/8"}));
    ASSERT_EQ(info.indexes.size(), 1U);
    EXPECT_TRUE(info.indexes[0].name.starts_with("Index_")) << info.indexes[0].name;
    EXPECT_EQ(bench.AllFindings(), "");
}

TEST(SchemaDefinitions, IndexesAndRelationsAreAsDeclared) {
    SessionBench bench;
    bench.Run("CREATE TABLE p (id LONG CONSTRAINT pk PRIMARY KEY, code TEXT(4) CONSTRAINT uq UNIQUE)");
    bench.Run("CREATE TABLE c (a LONG, b TEXT(9), d LONG, e LONG, CONSTRAINT k1 UNIQUE (a))");
    bench.Run("CREATE INDEX ib ON c (b DESC, d)");
    bench.Run("CREATE INDEX ie ON c (e) WITH IGNORE NULL");
    bench.Run("CREATE UNIQUE INDEX ix ON c (d) WITH DISALLOW NULL");
    bench.Run(
        "ALTER TABLE c ADD CONSTRAINT r1 FOREIGN KEY (e) REFERENCES p (id) ON UPDATE CASCADE ON DELETE "
        "CASCADE");
    bench.Run("ALTER TABLE c ADD CONSTRAINT r2 FOREIGN KEY NO INDEX (b) REFERENCES p (code)");
    bench.Run("ALTER TABLE c ADD CONSTRAINT r3 FOREIGN KEY (a) REFERENCES p ON DELETE SET NULL");
    EXPECT_EQ(Lines(InfoOf(bench, "p").indexes), (Strings{"pk:PUR id", "uq:U code"}));
    EXPECT_EQ(Lines(InfoOf(bench, "c").indexes),
              (Strings{"ib: b- d", "ie:I e", "ix:UR d", "k1:U a", "r1:F e", "r2:F b", "r3:F a"}));
    EXPECT_EQ(Lines(bench.File().Relations()),
              (Strings{"r1: c.e>p.id update delete", "r2: c.b>p.code", "r3: c.a>p.id null"}));
    EXPECT_EQ(bench.AllFindings(), "");

    bench.Run("INSERT INTO p VALUES (1, 'x')");
    bench.Run("INSERT INTO c VALUES (1, NULL, 5, NULL)");
    bench.Run("DELETE FROM p");
    EXPECT_EQ(bench.Run("SELECT a, d FROM c"), "~|5");

    bench.Run("ALTER TABLE c DROP CONSTRAINT r1");
    bench.Run("ALTER TABLE c DROP CONSTRAINT k1");
    bench.Run("DROP INDEX ib ON c");
    EXPECT_EQ(Lines(InfoOf(bench, "c").indexes), (Strings{"ie:I e", "ix:UR d", "r2:F b", "r3:F a"}));
    bench.Run("DROP TABLE c");
    EXPECT_EQ(bench.File().Relations().size(), 0U);
    bench.Run("DROP TABLE p");
    EXPECT_EQ(bench.AllFindings(), "");
}

std::size_t CountRows(SessionBench& bench, const std::string& query) {
    return std::stoul(bench.Run("SELECT COUNT(*) FROM " + query));
}

TEST(SchemaDefinitions, TheEngineTablesKnowTheNewObjects) {
    SessionBench bench;
    const std::size_t before = CountRows(bench, "MSysACEs");
    bench.Run("CREATE TABLE p (id LONG CONSTRAINT pk PRIMARY KEY)");
    bench.Run("CREATE TABLE c (id LONG, CONSTRAINT r FOREIGN KEY (id) REFERENCES p (id))");
    EXPECT_EQ(bench.Run("SELECT Name, Type, Flags, ParentId FROM MSysObjects WHERE Name IN ('p', 'c', 'r') "
                        "ORDER BY Name"),
              "c|1|0|251658241;p|1|0|251658241;r|8|0|251658243");
    EXPECT_EQ(CountRows(bench, "MSysObjects WHERE Name = 'c' AND LvProp IS NULL"), 1U);
    EXPECT_EQ(bench.Run("SELECT szRelationship, grbit, ccolumn, icolumn, szObject, szColumn, "
                        "szReferencedObject, szReferencedColumn FROM MSysRelationships"),
              "r|0|1|0|c|id|p|id");
    EXPECT_EQ(CountRows(bench, "MSysACEs"), before + 9);
    bench.Run("ALTER TABLE c ALTER COLUMN id LONG DEFAULT 5");
    EXPECT_EQ(CountRows(bench, "MSysObjects WHERE Name = 'c' AND LvProp IS NULL"), 0U);
    bench.Run("DROP TABLE c");
    bench.Run("DROP TABLE p");
    EXPECT_EQ(CountRows(bench, "MSysACEs"), before);
    EXPECT_EQ(CountRows(bench, "MSysRelationships"), 0U);
    EXPECT_EQ(CountRows(bench, "MSysObjects"), 8U);
}

/// Data pages of the file, by page number.
std::map<std::size_t, std::string> DataPages(const std::string& path, jet::PageNumber owner) {
    std::map<std::size_t, std::string> pages;
    const std::string bytes = ReadWholeFile(path);
    for (std::size_t at = 0; at < bytes.size(); at += jet::kPageSize) {
        const std::string page = bytes.substr(at, jet::kPageSize);
        const jet::ByteView view(reinterpret_cast<const std::uint8_t*>(page.data()), page.size());
        if (view[0] == jet::kPageTypeData && jet::U32(view, 4) == owner) {
            pages[at / jet::kPageSize] = page;
        }
    }
    return pages;
}

TEST(SchemaDefinitions, AddingAColumnTouchesNoRow) {
    SessionBench bench;
    bench.Run("CREATE TABLE t (a LONG, b TEXT(50))");
    bench.Run("BEGIN TRANSACTION");
    for (int i = 0; i < 3000; ++i) {
        bench.Run("INSERT INTO t VALUES (" + std::to_string(i) + ", 'some text')");
    }
    bench.Run("COMMIT");
    const jet::PageNumber owner = bench.File().Catalog().FindTable("t")->DefinitionPage();
    const auto before = DataPages(bench.Path(), owner);
    ASSERT_GT(before.size(), 10U);
    bench.Run("ALTER TABLE t ADD COLUMN c LONG DEFAULT 9 NOT NULL");
    bench.Run("ALTER TABLE t ADD COLUMN d MEMO DEFAULT ''");
    bench.Run("ALTER TABLE t ADD COLUMN e BIT DEFAULT Yes");
    bench.Run("ALTER TABLE t ALTER COLUMN b TEXT(80)");
    EXPECT_EQ(DataPages(bench.Path(), owner), before);
    EXPECT_EQ(CountRows(bench, "t WHERE c IS NULL AND d IS NULL AND NOT e"), 3000U);
    EXPECT_EQ(bench.Run("UPDATE t SET b = 'x' WHERE a = 5"), "1");  // what is not set is not looked at
    EXPECT_EQ(bench.Failure("UPDATE t SET c = NULL WHERE a = 5"), errors::kRequiredField);
    EXPECT_EQ(bench.Run("UPDATE t SET c = 1"), "3000");
    EXPECT_EQ(bench.AllFindings(), "");
}

struct Conversion {
    const char* from;
    const char* value;
    const char* to;
    const char* result;
};
constexpr Conversion kConversions[] = {
    {"LONG", "42", "VARCHAR(10)", "42"},
    {"LONG", "123456", "VARCHAR(3)", "123"},
    {"VARCHAR(9)", "'17'", "LONG", "17"},
    {"VARCHAR(9)", "'abc'", "LONG", "~"},
    {"VARCHAR(9)", "'abcdef'", "TEXT(2)", "ab"},
    {"VARCHAR(9)", "'가나다'", "MEMO", "가나다"},
    {"MEMO", "'long text'", "TEXT(4)", "long"},
    {"SHORT", "-7", "LONG", "-7"},
    {"LONG", "70000", "SHORT", "~"},
    {"LONG", "3", "DOUBLE", "3"},
    {"DOUBLE", "2.5", "LONG", "2"},
    {"DOUBLE", "3.5", "LONG", "4"},
    {"DOUBLE", "1.25", "VARCHAR(9)", "1.25"},
    {"BIT", "TRUE", "LONG", "-1"},
    {"LONG", "5", "BIT", "-1"},
    {"DATE", "#2001-02-03#", "DOUBLE", "36925"},
    {"CURRENCY", "1.5", "DOUBLE", "1.5"},
    {"LONG", "300", "BYTE", "~"},
    {"VARCHAR(9)", "NULL", "LONG", "~"},
    {"DECIMAL(9,2)", "12.34", "VARCHAR(9)", "12.34"},
};

TEST(SchemaDefinitions, AlteredColumnsKeepWhatCanBeKept) {
    SessionBench bench;
    int number = 0;
    for (const Conversion& conversion : kConversions) {
        SCOPED_TRACE(std::string(conversion.from) + " " + conversion.value + " to " + conversion.to);
        const std::string table = "t" + std::to_string(++number);
        bench.Run("CREATE TABLE " + table + " (k LONG, v " + conversion.from + ", w LONG)");
        bench.Run("INSERT INTO " + table + " VALUES (1, " + conversion.value + ", 2)");
        bench.Run("ALTER TABLE " + table + " ALTER COLUMN v " + conversion.to);
        EXPECT_EQ(bench.Run("SELECT * FROM " + table), "1|" + std::string(conversion.result) + "|2");
    }
    EXPECT_EQ(bench.AllFindings(), "");
}

TEST(SchemaDefinitions, CountersCountOn) {
    SessionBench bench;
    bench.Run("CREATE TABLE t (a LONG)");
    for (int i = 0; i < 3; ++i) {
        bench.Run("INSERT INTO t VALUES (7)");
    }
    bench.Run("ALTER TABLE t ADD COLUMN id COUNTER");
    bench.Run("INSERT INTO t (a) VALUES (8)");
    EXPECT_EQ(bench.Run("SELECT id FROM t ORDER BY id"), "1;2;3;4");
    bench.Run("INSERT INTO t (a, id) VALUES (9, 40)");
    bench.Run("INSERT INTO t (a) VALUES (9)");
    EXPECT_EQ(bench.Run("SELECT MAX(id) FROM t"), "41");
    EXPECT_EQ(bench.Run("SELECT @@IDENTITY"), "41");
    EXPECT_EQ(bench.Failure("ALTER TABLE t ALTER COLUMN a COUNTER"), 3282);
    bench.Run("ALTER TABLE t ALTER COLUMN id COUNTER(100, 5)");
    bench.Run("INSERT INTO t (a) VALUES (1)");
    bench.Run("INSERT INTO t (a) VALUES (1)");
    EXPECT_EQ(bench.Run("SELECT id FROM t WHERE a = 1 ORDER BY id"), "100;105");
    bench.Run("ALTER TABLE t ALTER COLUMN id LONG");
    bench.Run("INSERT INTO t (a) VALUES (2)");
    EXPECT_EQ(bench.Run("SELECT id FROM t WHERE a = 2"), "~");
    bench.Run("CREATE TABLE s (id COUNTER(10, 2), a LONG)");
    bench.Run("INSERT INTO s (a) VALUES (1)");
    bench.Run("INSERT INTO s (a) VALUES (1)");
    EXPECT_EQ(bench.Run("SELECT id FROM s"), "10;12");
    bench.Run("DELETE FROM s");
    EXPECT_EQ(bench.Failure("ALTER TABLE s ALTER COLUMN a COUNTER"), 3090);
    bench.Run("ALTER TABLE s ALTER COLUMN id LONG");
    bench.Run("ALTER TABLE s ALTER COLUMN a COUNTER");
    bench.Run("INSERT INTO s (id) VALUES (7)");
    EXPECT_EQ(bench.Run("SELECT a FROM s"), "1");
    // A step other than 1 is worth a note to the check, but no error.
    EXPECT_EQ(jet::CheckDatabase(bench.File()).Count(jet::Finding::Severity::Error), 0U);
}

}  // namespace
}  // namespace tavrel::testing
