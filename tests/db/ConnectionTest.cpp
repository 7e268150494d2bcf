// Connections and result sets by themselves: connection strings, reading without write access, fetched rows.
#include <filesystem>

#include "db/ConnectionString.h"
#include "db/SessionFixture.h"

namespace tavrel::testing {
namespace {

using namespace db;

TEST(ConnectionString, IsTakenApart) {
    struct Case {
        const char* text;
        const char* provider;
        const char* dataSource;
        const char* password;
        bool readOnly;
    };
    const Case cases[] = {
        {"", "", "", "", false},
        {";;=;= ;", "", "", "", false},
        {"no clause at all", "", "", "", false},
        {"Provider=P;Data Source=a.mdb", "P", "a.mdb", "", false},
        {" data source =a b.mdb ; PROVIDER = P ;", "P", "a b.mdb ", "", false},
        {"Data Source=a;b=c;d.mdb;Provider=P", "P", "a;b=c;d.mdb", "", false},
        {"Data Source=a.mdb;Mode= read;User ID=Admin;Password=x", "", "a.mdb", "", true},
        {"Data Source=a.mdb;Mode=Read|Write", "", "a.mdb", "", false},
        {"Data Source=a.mdb;Jet OLEDB:Database Password= x;Mode=Read;", "", "a.mdb", " x;Mode=Read;", false},
        {"Jet OLEDB:Database Password=", "", "", "", false},
        {"Data Source=a.mdb;Data Source=b.mdb", "", "b.mdb", "", false},
        {"Data Source=", "", "", "", false}};
    for (const Case& c : cases) {
        const ConnectionSettings settings = ParseConnectionString(c.text);
        EXPECT_EQ(settings.provider, c.provider) << c.text;
        EXPECT_EQ(settings.dataSource, c.dataSource) << c.text;
        EXPECT_EQ(settings.password, c.password) << c.text;
        EXPECT_EQ(settings.readOnly, c.readOnly) << c.text;
    }
    const ConnectionSettings hard = ParseConnectionString(ConnectionStringFor("C:\\a;b\\c=d.mdb", "p;=w "));
    EXPECT_EQ(hard.provider, kJetProvider);
    EXPECT_EQ(hard.dataSource, "C:\\a;b\\c=d.mdb");
    EXPECT_EQ(hard.password, "p;=w ");
}

class Connections : public SessionFixture {
  protected:
    Connections() { modDBsub::gDBConn.reset(); }
    std::string Source() { return ConnectionStringFor(path, ""); }
};

TEST_F(Connections, OpenAndCloseOnce) {
    Connection connection;
    EXPECT_EQ(connection.State(), adStateClosed);
    EXPECT_EQ(ErrorOf([&] { connection.Execute("SELECT 1"); }), adoErrors::kObjectClosed);
    EXPECT_EQ(ErrorOf([&] { connection.Open("Provider=Other;Data Source=" + path); }),
              adoErrors::kProviderNotFound);
    connection.ConnectionString = Source();
    connection.Open();
    EXPECT_EQ(connection.State(), adStateOpen);
    EXPECT_EQ(ErrorOf([&] { connection.Open(); }), adoErrors::kObjectOpen);
    Connection second;
    try {
        second.Open(Source());
        ADD_FAILURE() << "two connections would change one file";
    } catch (const ProviderError& error) {
        EXPECT_EQ(error.Number(), -2147467259);
        EXPECT_EQ(error.EngineNumber(), errors::kFileInUse);
    }
    connection.Close();
    EXPECT_EQ(ErrorOf([&] { connection.Close(); }), adoErrors::kObjectClosed);
    second.Open(Source());
    Recordset rows;
    EXPECT_EQ(ErrorOf([&] { rows.Open("SELECT 1", &connection); }), adoErrors::kConnectionUnusable);
    EXPECT_EQ(ErrorOf([&] { rows.Open("SELECT 1", nullptr); }), adoErrors::kObjectNotSet);
    rows.Open("SELECT 1", &second);
    EXPECT_EQ(ErrorOf([&] { rows.Open("SELECT 1", &second); }), adoErrors::kObjectOpen);
    rows.Close();
    EXPECT_EQ(ErrorOf([&] { rows.Close(); }), adoErrors::kObjectClosed);
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(rows.RecordCount()); }), adoErrors::kObjectClosed);
}

TEST_F(Connections, ReadWithoutWriteAccess) {
    Connection changing;
    changing.Open(Source());
    changing.Execute("CREATE TABLE t (id LONG CONSTRAINT pk PRIMARY KEY)");
    changing.Execute("INSERT INTO t VALUES (1)");
    changing.Close();
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    Connection reading;
    reading.Open(Source() + ";Mode=Read");
    EXPECT_EQ(reading.Execute("SELECT * FROM t WHERE id = 1").RecordCount(), 1);
    for (const char* statement :
         {"INSERT INTO t VALUES (2)", "DELETE FROM t", "UPDATE t SET id = 3", "DROP TABLE t",
          "CREATE TABLE u (id LONG)", "ALTER TABLE t ADD COLUMN c LONG", "CREATE INDEX i ON t (id)"}) {
        try {
            reading.Execute(statement);
            ADD_FAILURE() << statement;
        } catch (const ProviderError& error) {
            EXPECT_EQ(error.EngineNumber(), errors::kReadOnly) << statement;
        }
    }
    EXPECT_EQ(reading.Execute("SELECT * FROM t").RecordCount(), 1);
    reading.Close();
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

// Five deep, open for changing or for reading.
TEST_F(Connections, KnowTheirDepth) {
    for (const char* mode : {"", "Mode=Read;"}) {
        Connection connection;
        EXPECT_EQ(connection.TransactionDepth(), 0U);
        connection.Open(mode + Source());
        for (unsigned depth = 1; depth <= 5; ++depth) {
            connection.Execute("BEGIN TRANSACTION");
            EXPECT_EQ(connection.TransactionDepth(), depth) << mode;
        }
        EXPECT_NE(ErrorOf([&] { connection.Execute("BEGIN TRANSACTION"); }), 0);
        connection.Execute("COMMIT");
        connection.Execute("ROLLBACK");
        EXPECT_EQ(connection.TransactionDepth(), 3U) << mode;
        connection.Close();
    }
}

TEST_F(Connections, FetchEveryKindOfValue) {
    // Enough rows, and some of them long, to fill several blocks.
    constexpr int kRows = 3000;
    Connection connection;
    connection.Open(Source());
    connection.Execute(
        "CREATE TABLE t (id LONG, b YESNO, y BYTE, s SINGLE, d DOUBLE, m CURRENCY, w DATETIME, c "
        "VARCHAR(200),"
        " n MEMO)");
    connection.Execute("BEGIN TRANSACTION");
    const std::string longText(9000, 'x');
    for (int id = 0; id < kRows; ++id) {
        connection.Execute("INSERT INTO t VALUES (" + std::to_string(id) + ", TRUE, " +
                           std::to_string(id % 256) + ", 0.5, 1E300, 12.3456, #2004-01-31 12:00#, '가" +
                           std::string(static_cast<std::size_t>(id % 190), 'a') + "', " +
                           (id % 1000 == 7 ? "'" + longText + "'" : "NULL") + ")");
    }
    connection.Execute("COMMIT");
    Recordset rows;
    rows.Open("SELECT * FROM t ORDER BY id", &connection);
    EXPECT_EQ(rows.RecordCount(), kRows);
    EXPECT_EQ(rows.FieldCount(), 9);
    EXPECT_EQ(rows.FieldName(7), "c");
    for (int pass = 0; pass < 2; ++pass, rows.MoveFirst()) {
        for (int id = 0; id < kRows; ++id, rows.MoveNext()) {
            const std::vector<jet::Value> expected = {
                Int(id),
                true,
                Int(id % 256),
                0.5F,
                1E300,
                jet::Currency{123456},
                jet::Date{38017.5},
                "가" + std::string(static_cast<std::size_t>(id % 190), 'a'),
                id % 1000 == 7 ? jet::Value(longText) : jet::Value(jet::Null{})};
            for (std::int32_t column = 8; column >= 0; --column) {
                ASSERT_EQ(rows.Fields(column).Value, expected[static_cast<std::size_t>(column)])
                    << id << " " << rows.FieldName(column);
            }
        }
        EXPECT_TRUE(rows.Eof());
    }
    Recordset none = connection.ExecuteFirstRow("SELECT id FROM t WHERE id < 0");
    EXPECT_TRUE(none.Eof());
    EXPECT_EQ(connection.ExecuteFirstRow("SELECT id FROM t").RecordCount(), 1);
}

}  // namespace
}  // namespace tavrel::testing
