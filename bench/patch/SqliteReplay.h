// SQLite doing what the session did.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Statements.h"
#include "Stopwatch.h"
#include "Translation.h"

struct sqlite3;

namespace tavrel::bench {

class SqliteReplay {
  public:
    /// Opens or makes the database; rollback journal (journal_mode DELETE), synchronous OFF.
    explicit SqliteReplay(const std::string& path);
    ~SqliteReplay();
    SqliteReplay(const SqliteReplay&) = delete;
    SqliteReplay& operator=(const SqliteReplay&) = delete;

    /// Sends a statement as it stands.  Throws std::runtime_error.
    void Execute(const std::string& statement);
    /// Sends each statement translated, each a transaction of its own, and fetches what the session fetches.
    /// What SQLite refuses is noted and passed over.
    void Replay(const SentStatements& statements, NewColumns newColumns);
    /// First column of the first row, as a text.
    std::string Value(const std::string& query);

    // ---- of the last Replay
    std::map<std::int16_t, Cost> steps;  ///< without the translating
    Cost whole;
    std::uint64_t withoutCounterpart = 0;
    std::uint64_t missingColumns = 0;  ///< questions whether a column is there, answered no by a refusal
    std::vector<std::string> refused;  ///< other refusals: beginning of the statement, and reason

  private:
    bool Send(const std::string& statement, bool firstRowOnly);
    void Note(const SentStatement& statement);

    sqlite3* database_ = nullptr;
};

}  // namespace tavrel::bench
