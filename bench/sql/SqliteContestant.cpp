#include <sqlite3.h>
#include <stdexcept>

#include "Contestant.h"

namespace tavrel::bench {

namespace {

class SqliteContestant : public Contestant {
  public:
    SqliteContestant(const std::string& path, Safety safety) {
        Check(sqlite3_open(path.c_str(), &database_));
        Execute("PRAGMA journal_mode = DELETE");
        Execute(safety == Safety::Synced ? "PRAGMA synchronous = FULL" : "PRAGMA synchronous = OFF");
    }
    ~SqliteContestant() override { sqlite3_close(database_); }
    SqliteContestant(const SqliteContestant&) = delete;
    SqliteContestant& operator=(const SqliteContestant&) = delete;

    void Execute(const std::string& statement) override {
        Check(sqlite3_exec(database_, statement.c_str(), nullptr, nullptr, nullptr));
    }

    std::uint64_t Fetch(const std::string& query) override {
        sqlite3_stmt* statement = nullptr;
        Check(sqlite3_prepare_v2(database_, query.c_str(), -1, &statement, nullptr));
        std::uint64_t rows = 0;
        const int columns = sqlite3_column_count(statement);
        for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
            for (int column = 0; column < columns; ++column) {
                sqlite3_column_text(statement, column);
            }
        }
        Check(sqlite3_finalize(statement));
        return rows;
    }

  private:
    void Check(int result) const {
        if (result != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database_));
        }
    }

    sqlite3* database_ = nullptr;
};

}  // namespace

std::unique_ptr<Contestant> MakeSqlite(const std::string& path, Safety safety) {
    return std::make_unique<SqliteContestant>(path, safety);
}

}  // namespace tavrel::bench
