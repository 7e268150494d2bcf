#include "Samples.h"

#include <sqlite3.h>
#include <stdexcept>

#include "jet/database/Database.h"
#include "jet/define/TableWriter.h"

namespace tavrel::bench {

namespace {

/// A number below `rows`, another one for each row.
int KeyOf(int row, int rows, KeyOrder order) {
    constexpr std::int64_t kStep = 700'001;  // a prime that divides no number of rows in use
    return order == KeyOrder::Ascending ? row : static_cast<int>(row * kStep % rows);
}

std::string NameOf(int key) {
    return "customer " + std::to_string(key * 7919L % 100'003);
}

std::string TextOf(int key) {
    return std::string(90, static_cast<char>('a' + key % 26)) + std::to_string(key);
}

void Run(sqlite3* database, const char* statement) {
    if (sqlite3_exec(database, statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
}

}  // namespace

void MakeMdb(const std::string& path, int rows, KeyOrder order) {
    const auto database = jet::Database::Create(path);
    jet::NewTable table{"orders", {}, {}};
    table.columns.resize(4);
    table.columns[0].name = "id";
    table.columns[1].name = "name";
    table.columns[1].type = jet::ColumnType::Text;
    table.columns[2].name = "amount";
    table.columns[3].name = "note";
    table.columns[3].type = jet::ColumnType::Text;
    table.indexes = {{"PrimaryKey", {{"id", false}}, true, true, false, true},
                     {"ByName", {{"name", false}}, false, false, false, false},
                     {"ByAmount", {{"amount", false}}, false, false, false, false}};
    database->CreateTable(table);
    const auto writer = database->Append("orders");
    for (int row = 0; row < rows; ++row) {
        const int key = KeyOf(row, rows, order);
        writer->Append({std::int64_t{key}, NameOf(key), std::int64_t{key % 1000}, TextOf(key)});
    }
    writer->Finish();
    database->Flush();
}

void MakeSqlite(const std::string& path, int rows, KeyOrder order) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    Run(database, "CREATE TABLE orders (id INTEGER, name TEXT, amount INTEGER, note TEXT)");
    Run(database, "BEGIN");
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(database, "INSERT INTO orders VALUES (?,?,?,?)", -1, &insert, nullptr);
    for (int row = 0; row < rows; ++row) {
        const int key = KeyOf(row, rows, order);
        const std::string name = NameOf(key);
        const std::string text = TextOf(key);
        sqlite3_bind_int(insert, 1, key);
        sqlite3_bind_text(insert, 2, name.c_str(), -1, SQLITE_STATIC);
        sqlite3_bind_int(insert, 3, key % 1000);
        sqlite3_bind_text(insert, 4, text.c_str(), -1, SQLITE_STATIC);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Run(database, "COMMIT");
    for (const char* index : {"CREATE UNIQUE INDEX a ON orders (id)", "CREATE INDEX b ON orders (name)",
                              "CREATE INDEX c ON orders (amount)"}) {
        Run(database, index);
    }
    sqlite3_close(database);
}

}  // namespace tavrel::bench
