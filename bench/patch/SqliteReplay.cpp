#include "SqliteReplay.h"

#include <sqlite3.h>
#include <stdexcept>
#include <string_view>

namespace tavrel::bench {

using modDBsub::StatementKind;

SqliteReplay::SqliteReplay(const std::string& path) {
    if (sqlite3_open(path.c_str(), &database_) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
    }
    Execute("PRAGMA journal_mode = DELETE");
    Execute("PRAGMA synchronous = OFF");
}

SqliteReplay::~SqliteReplay() {
    sqlite3_close(database_);
}

void SqliteReplay::Execute(const std::string& statement) {
    if (!Send(statement, false)) {
        throw std::runtime_error(statement + ": " + sqlite3_errmsg(database_));
    }
}

void SqliteReplay::Replay(const SentStatements& statements, NewColumns newColumns) {
    steps.clear();
    refused.clear();
    withoutCounterpart = missingColumns = 0;
    whole = {};
    for (const SentStatement& statement : statements) {
        const auto translated = Translate(statement.text, newColumns);
        const Stopwatch watch;
        if (!translated) {
            ++withoutCounterpart;
        } else if (!Send(*translated, statement.kind == StatementKind::Value)) {
            Note(statement);
        }
        const Cost cost = watch.Read();
        steps[statement.step] += cost;
        whole += cost;
    }
}

std::string SqliteReplay::Value(const std::string& query) {
    sqlite3_stmt* prepared = nullptr;
    std::string value;
    if (sqlite3_prepare_v2(database_, query.c_str(), -1, &prepared, nullptr) == SQLITE_OK &&
        sqlite3_step(prepared) == SQLITE_ROW && sqlite3_column_type(prepared, 0) != SQLITE_NULL) {
        value = reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0));
    }
    sqlite3_finalize(prepared);
    return value;
}

bool SqliteReplay::Send(const std::string& statement, bool firstRowOnly) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database_, statement.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
        return false;
    }
    const int columns = sqlite3_column_count(prepared);
    while (sqlite3_step(prepared) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            sqlite3_column_text(prepared, column);
        }
        if (firstRowOnly) {
            break;
        }
    }
    return sqlite3_finalize(prepared) == SQLITE_OK;
}

void SqliteReplay::Note(const SentStatement& statement) {
    const std::string reason = sqlite3_errmsg(database_);
    if (statement.kind == StatementKind::Value && reason.starts_with("no such column")) {
        ++missingColumns;
    } else {
        constexpr std::size_t kShown = 70;
        refused.push_back(statement.text.substr(0, kShown) + ": " + reason);
    }
}

}  // namespace tavrel::bench
